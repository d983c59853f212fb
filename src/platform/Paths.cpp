#include "platform/Paths.h"

// Stub: being written.
