// What a finished installer carries, read from its file without running it: the frame and the very
// tables that the program will use. The file may be a native program or one for Windows, stripped
// and signed or not. How the store is found in it is told in docs/store_format.md.
//
// Every function throws Refusal, one line that names the file, when the file can't be read, is no
// installer of this project, or is damaged.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "packager/table_files.h"
#include "packager/verification.h"

// Names and sizes of the entries, and the lengths of frame and content. Expands nothing.
PayloadTable ReadInstallerTable(const std::filesystem::path& installer);

// The same with the content, expanded and checked against the frame's checksum. It needs memory for
// the whole file and the whole content. No rule is checked: CheckPackedPayload does that.
PackedPayload ReadInstaller(const std::filesystem::path& installer);

// The same from all bytes of the file; messages call it `name`.
PackedPayload ReadInstaller(const std::string& name, std::string_view file);
