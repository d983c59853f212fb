#pragma once

namespace quarry::service {

// The process of one request's dialog: reads the request from standard
// input, {"member": ..., "arguments": [...], "parent_window": XID or 0}
// (ComponentCall), shows its dialog over the host's window and writes the
// DialogAnswer on standard output. Returns the exit status: 0 when it
// answered, 2 when the request made no sense (said on standard error).
// A QApplication must exist.
int runRequestDialog();

} // namespace quarry::service
