// Makes the directory_criteria.txt of a release from copies of the Arduino IDE: the facts by which
// the installer will know exactly those copies again. Reads the folders, writes nothing. The line
// language stands in docs/criteria_language.md.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

struct CriteriaRequest {
  std::string release;                         // "1.8.19"
  std::vector<std::filesystem::path> folders;  // Arduino folders of that release, one per build,
                                               // at most kMostPairs
  std::vector<std::string> files;              // that must be there, relative to the folder
};

// The text of the file: the version line, a line for each of the files, then one line for each of
// the six members that tell the builds apart, with a pair for each folder in the order given.
// Throws Refusal when a folder lacks something, or would not itself pass the result.
std::string CriteriaText(const CriteriaRequest& request);
