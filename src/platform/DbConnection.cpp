#include "platform/DbConnection.h"

// Stub: being written.
