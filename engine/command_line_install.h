// The whole install without a window: one plain loop over the payload.
#pragma once

// Disposes of every entry into HostFolder, in table order, and returns the exit status of the
// process: 0 with nothing written on either stream, or 1 after the first failure, with
// "Error: <text>" on the standard error stream. What was handled before it stays in place.
//
// It deliberately ends with the last entry: the host's preferences are not updated and old
// libraries not removed, and no archive is closed here, since the table ends in a plain file, whose
// writing has committed every archive before it.
int RunCommandLineInstall();
