// The store of a payload that quirloduino-pack has packed into a folder, made when the program
// runs: for tools that work on more than one payload. Defines `Store`, so a program that links
// this links no packed store.
#pragma once

#include <cstdint>
#include <filesystem>

// Reads payload.tbl and payload.zst in `folder` and makes them the store, for the rest of the run.
// LoadEmbeddedFiles does the rest. Throws std::runtime_error when a file can't be read.
void UsePackedStore(const std::filesystem::path& folder);
