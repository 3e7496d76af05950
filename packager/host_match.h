// Whether an Arduino folder is the release that an author's criteria describe, asked with the code
// that the installer itself asks with. Reads the folder's files and archives, changes nothing.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "packager/payload_rules.h"
#include "packager/payload_view.h"
#include "packager/warnings.h"

// A warning for each release of `files` whose criteria match none of the folders; it tells what was
// the first line not to hold in each. Throws Refusal for a host that is no folder.
std::vector<Warning> CompareWithHosts(const std::vector<PayloadFile>& files,
                                      const std::vector<std::filesystem::path>& hosts,
                                      const ContentReader& read);

// The release that the installer finds in the folder: the first in table order whose criteria hold.
// (A newer package in the folder doesn't count here.) An install doesn't change the answer, since
// the criteria also know the classes that it brings. Throws Refusal when none hold; it tells what
// was the first line not to, for each release.
std::string FindRelease(const PayloadView& payload, const std::filesystem::path& host);
