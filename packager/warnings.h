// What an author should know of a payload that can be packed all the same: what nobody will get to
// see, what doesn't belong into it, what is lost on the way. Reads the tree, writes nothing.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "packager/payload_rules.h"
#include "packager/payload_tree.h"

struct Warning {
  std::string file;
  std::string words;  // one line, as of a Refusal
};

// The path up to its first component that some tool has left there, such as ".git" or a backup of
// an editor; empty without one.
std::string_view LeftoverPath(std::string_view path);

// All warnings about the tree, kind by kind and each kind in the order of the names.
std::vector<Warning> FindWarnings(const PayloadTree& tree, const ContentReader& read);
