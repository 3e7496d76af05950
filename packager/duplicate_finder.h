// Finds, among the toolchain's files, those whose content an earlier one has already: they become
// aliases and cost nothing in the frame.
#pragma once

#include <cstddef>
#include <filesystem>
#include <vector>

#include "packager/payload_tree.h"

// For each of `files`, which stand in table order below `root`, the index of the file whose content
// it repeats, or its own index. Only files under arm/ that aren't empty are considered, and the
// index is always that of the first such file, so that no alias's target is an alias. Checksums
// find the candidates; the bytes decide.
std::vector<std::size_t> FindDuplicates(const std::filesystem::path& root,
                                        const std::vector<PayloadFile>& files);
