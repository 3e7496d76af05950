// A payload as those look at it who ask what an installer will do with it: one form for a tree, for
// what was packed and for a finished installer.
#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "packager/payload_plan.h"
#include "packager/payload_tree.h"
#include "packager/verification.h"

// The entries in table order, and their bytes on demand; an alias has none.
struct PayloadView {
  std::vector<PayloadFile> entries;
  std::function<std::string(std::size_t index)> read;  // throws Refusal when it can't
};

// A view of what is there already, which must outlive it.
PayloadView ViewOf(const PayloadPlan& plan);
PayloadView ViewOf(const PackedPayload& packed);

// The view of a payload tree, or when `source` is a file, of the finished installer that it is. It
// owns all that it needs. Throws Refusal for a tree that would not be packed, and for an installer
// that `verify` would refuse.
PayloadView OpenPayload(const std::filesystem::path& source);

// Whether `path` is a finished installer rather than a folder.
bool IsInstaller(const std::filesystem::path& path);
