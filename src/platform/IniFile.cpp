#include "platform/IniFile.h"

// Stub: being written.
