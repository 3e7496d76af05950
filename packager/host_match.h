// Whether an Arduino folder is the release that an author's criteria describe, asked with the code
// that the installer itself asks with. Reads the folder's files and archives, changes nothing.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "packager/payload_rules.h"
#include "packager/warnings.h"

// A warning for each release of `files` whose criteria match none of the folders; it tells what was
// the first line not to hold in each. Throws Refusal for a host that is no folder.
std::vector<Warning> CompareWithHosts(const std::vector<PayloadFile>& files,
                                      const std::vector<std::filesystem::path>& hosts,
                                      const ContentReader& read);
