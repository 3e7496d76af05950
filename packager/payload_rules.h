// What a payload as a whole must be like, whatever the order of its entries: its releases, their
// control files, the version marker, the content's size. `pack` asks before it writes, `verify`
// asks of what somebody packed.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "packager/payload_tree.h"

// Gives the bytes of the file of this name, one of those being checked.
using ContentReader = std::function<std::string(const PayloadFile& file)>;

// Throws Refusal at the first rule that doesn't hold; docs/store_format.md has them all. `files`
// may hold aliases. `folders` are those of a tree, or none.
void CheckPayload(const std::vector<PayloadFile>& files, const std::vector<std::string>& folders,
                  const ContentReader& read);

// The content stays below 4 GiB, since the installer sums the sizes in 32 bits. `entries` are those
// of a table, in which what is stored once counts once.
void CheckContentSize(const std::vector<PayloadFile>& entries);
