// What an entry's path may look like, so that the installer can compare it as plain text and
// Windows can hold a file of that name. Every function throws Refusal at the first fault.
#pragma once

#include <string_view>
#include <vector>

#include "packager/payload_tree.h"

// One path: printable ASCII, relative, "/" between components that Windows accepts as they are.
void CheckPath(std::string_view path);

// A path that comes from a tree, where no file may be mistaken for an alias.
void CheckTreePath(std::string_view path);

// All paths together: none twice, none a file here and a folder there, and no two, nor any two
// folders on their way, that differ only in case, since on Windows those are one.
void CheckNoTwins(const std::vector<PayloadFile>& files);
