#include "platform/DbRecordSet.h"

// Stub: being written.
