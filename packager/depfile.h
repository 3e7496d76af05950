// The dependency file by which a build tool learns when to pack anew: in Makefile syntax, all
// outputs on all files and folders of the tree. A folder changes when a file comes or goes.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "packager/payload_tree.h"

// The text of the file; every path in it is absolute.
std::string DepfileText(const std::vector<std::filesystem::path>& targets, const PayloadTree& tree);

// A path as a dependency file has it: a dollar sign doubled, a blank or number sign behind a
// backslash, and backslashes directly before such a blank or number sign doubled, since only there
// do they escape anything.
std::string EscapeForDepfile(const std::string& path);
