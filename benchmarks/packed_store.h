// The store of a payload that quirloduino-pack has packed into a folder, made when the program
// runs: for tools that work on more than one payload. Defines `Store`, so a program that links
// this links no packed store.
#pragma once

#include <filesystem>

// Makes payload.tbl and payload.zst in `folder` the store, for the rest of the run, and expands it.
// False, with a line on the standard error stream, when a file can't be read or the frame is
// not the table's.
bool LoadPackedStore(const std::filesystem::path& folder);
