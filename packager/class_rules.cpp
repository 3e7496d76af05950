#include "packager/class_rules.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "packager/entry_names.h"
#include "packager/refusal.h"
#include "recognition/cksum.h"
#include "store/location_value.h"
#include "store/payload_format.h"

namespace {

constexpr std::string_view kJarEnding = ".jar";

// Where a tree of classes stands below its release, and the key that names its archive.
struct ClassTree {
  std::string_view folder;
  const char* key;
};
constexpr ClassTree kClassTrees[] = {{kIdeJarTree, kIdeJarKey}, {kCoreJarTree, kCoreJarKey}};

// A tree meant for an archive: it holds a class, or its folder has an archive's name.
bool IsMeantForArchive(std::string_view path) {
  const std::string folder = FoldCase(FirstComponent(AfterFirstComponent(path)));
  const bool is_in_folder = AfterFirstComponent(path).find('/') != std::string_view::npos;
  return path.ends_with(kClassEnding) || (is_in_folder && folder.ends_with(kJarEnding));
}

void CheckTree(const PayloadFile& file) {
  const std::string_view path = AfterFirstComponent(file.name);
  const bool is_known =
      std::any_of(std::begin(kClassTrees), std::end(kClassTrees),
                  [path](const ClassTree& tree) { return path.starts_with(tree.folder); });
  if (!is_known && IsMeantForArchive(path)) {
    throw Refusal(file.name,
                  "class files go into WINDOWS/pde.jar/ and WINDOWS/arduino-core.jar/ alone, for "
                  "these two have a key");
  }
}

// As Windows compares paths, for which both kinds of separator are one.
std::string FoldPath(std::string_view path) {
  std::string folded = FoldCase(path);
  std::replace(folded.begin(), folded.end(), '\\', '/');
  return folded;
}

void CheckPair(const PayloadFile& file, const ProvenMember& proven, const std::string& content) {
  const std::uint32_t checksum =
      CksumFinish(CksumUpdate(0, content.data(), content.size()), content.size());
  const bool is_listed =
      std::any_of(proven.pairs.begin(), proven.pairs.end(), [checksum, &content](const auto& pair) {
        return pair.first == checksum && pair.second == content.size();
      });
  if (!is_listed) {
    throw Refusal(file.name, "replaces what line " + std::to_string(proven.line) +
                                 " of the criteria names, which must list it too (" +
                                 std::to_string(checksum) + " " + std::to_string(content.size()) +
                                 "), or a second run would refuse the folder");
  }
}

// The files of one tree against what the criteria say of its archive.
void CheckArchive(std::string_view release, const ClassTree& tree,
                  const std::vector<const PayloadFile*>& classes, const std::string& archive,
                  const Criteria& criteria, const ContentReader& read) {
  const std::string folded = FoldPath(archive);
  const bool is_proven =
      std::any_of(criteria.archives.begin(), criteria.archives.end(),
                  [&folded](const std::string& proven) { return FoldPath(proven) == folded; });
  if (!is_proven) {
    throw Refusal(std::string(release) + kLocationsFileEnding,
                  std::string(tree.key) + " is \"" + archive +
                      "\", of which no zipcksum: or zipfile: line of the criteria speaks");
  }
  const std::size_t prefix = release.size() + 1 + tree.folder.size();
  for (const ProvenMember& proven : criteria.members) {
    if (FoldPath(proven.archive) != folded) continue;
    for (const PayloadFile* file : classes) {
      if (file->name.substr(prefix) == proven.member) CheckPair(*file, proven, read(*file));
    }
  }
}

}  // namespace

void CheckClasses(std::string_view release, const std::vector<const PayloadFile*>& files,
                  std::string_view locations, const Criteria& criteria, const ContentReader& read) {
  for (const PayloadFile* file : files) CheckTree(*file);
  for (const ClassTree& tree : kClassTrees) {
    std::vector<const PayloadFile*> classes;
    std::copy_if(files.begin(), files.end(), std::back_inserter(classes),
                 [&tree](const PayloadFile* file) {
                   return AfterFirstComponent(file->name).starts_with(tree.folder) &&
                          IsArchiveObject(file->name);
                 });
    if (classes.empty()) continue;
    char archive[kLocationValueSize];
    FindLocationValue(reinterpret_cast<const unsigned char*>(locations.data()), locations.size(),
                      tree.key, archive);
    CheckArchive(release, tree, classes, archive, criteria, read);
  }
}
