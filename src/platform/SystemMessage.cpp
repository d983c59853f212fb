#include "platform/SystemMessage.h"

// Stub: being written.
