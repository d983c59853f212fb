#include <quarry/CSysCfg.h>

// Stub: being written.
