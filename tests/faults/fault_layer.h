// The layer between a program and the C library's file operations: it counts each operation that
// touches a path below one folder, and can make the n-th one fail, or stop the process there, or
// put something else in a folder's place just before it. It stands in front of the program's own
// calls and of those of its shared libraries (libzip), at the level at which they make them:
// streams are opened, written, flushed and closed, not just system calls made. It never is part of
// the product: a test preloads it into a program, or links it and arms it itself.
//
// What it is to do comes from the environment, or from ArmFaultLayer:
//   FAULT_LAYER_ROOT    operations on paths below this folder, and on what was opened there, count
//   FAULT_LAYER_AT      the number of the operation to meet, from 1; absent or 0: only count
//   FAULT_LAYER_ON      in its place: the line of the report, as below; the first such operation
//   FAULT_LAYER_ACTION  fail (the default), kill or swap
//   FAULT_LAYER_ERROR   fail: the error number
//   FAULT_LAYER_FROM    swap: this path is renamed to itself with ".away" behind it ...
//   FAULT_LAYER_INSTEAD swap: ... and this one, if given, to FAULT_LAYER_FROM
//   FAULT_LAYER_REPORT  the file that gets the report when the process ends by itself
//
// The report has a line for each counted operation, "name path", the one met with "! " ahead of it;
// then one for each handle still open, "left path"; then one for each path outside the root that
// was opened for writing, made, renamed or removed, "outside name path". The random end of a
// temporary archive's name is written as XXXXXX.
#pragma once

extern "C" {

// Reads the environment anew and starts counting at 0, forgetting all handles of before.
void ArmFaultLayer();

// Writes the report and stops counting; what is open now is no longer followed.
void DisarmFaultLayer();
}
