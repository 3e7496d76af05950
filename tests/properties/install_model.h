// What an install must leave: a small model of the rules on a disk of its own, in maps, written
// from the rules' table and sharing no line with the engine. The tests compare the two after each
// run.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tests/support/jars.h"
#include "tests/support/test_store.h"

// A folder and all below it. Paths are relative, plain components with '/' between them.
struct ModelDisk {
  std::set<std::string> folders;             // without the folder itself
  std::map<std::string, std::string> files;  // path to content
  std::map<std::string, JarMembers> jars;    // the members of each file that opens as an archive
  std::set<std::string> rewritten;           // jars whose bytes in `files` are those of before
};

// The folder `path` as it stands on the real disk.
ModelDisk ReadDisk(const std::string& path);

// What differs between two disks; empty when they are the same. A rewritten jar is compared by its
// members.
std::vector<std::string> Differences(const ModelDisk& expected, const ModelDisk& found);

struct InstallRequest {
  std::string release;
  std::map<std::string, std::string> locations;    // keys that are missing are absent here
  std::string host_folder;                         // as the program has it, separator included
  std::optional<std::set<std::string>> libraries;  // the ticked ones; none: no list, so all
};

enum class Outcome { kWrittenFile, kWrittenObject, kRemoved, kPassedOver, kFailed };

struct ModelRun {
  std::vector<Outcome> outcomes;    // of the entries that are visited
  std::vector<std::string> errors;  // the shared error text after each of them
  bool failed;                      // whether one of them failed
};

enum class WalkEnd {
  kProgram,     // at the first failure; objects of an archive that nothing closed are given up
  kWizard,      // at the first failure; after the last entry an open archive is closed
  kEveryEntry,  // a failure ends nothing, which no mode of the program does; closes at the end
};

// Walks the entries and changes `disk` as the install would.
ModelRun PredictInstall(const std::vector<TestEntry>& entries, const InstallRequest& request,
                        WalkEnd end, ModelDisk* disk);

// What the wizard's end makes of the text of a preferences file.
std::string PredictPreferences(const std::string& text);

// What the wizard's end removes.
void PredictLibraryRemoval(const InstallRequest& request, ModelDisk* disk);
