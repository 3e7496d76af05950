#include "packager/order_rules.h"

#include <set>
#include <string>
#include <string_view>

#include "packager/entry_names.h"
#include "packager/payload_order.h"
#include "packager/refusal.h"
#include "store/payload_format.h"

namespace {

// The archive's tree that an entry belongs to, "1.8.19/WINDOWS/pde.jar/", or nothing.
std::string_view ArchiveTree(std::string_view name) {
  if (!IsReleasePrefixed(name)) return {};
  const std::string_view rest = AfterFirstComponent(name);
  for (const std::string_view tree : kArchiveTrees) {
    if (rest.starts_with(tree)) return name.substr(0, name.size() - rest.size() + tree.size());
  }
  return {};
}

void CheckEnd(const std::vector<PayloadFile>& entries) {
  const std::string& last = entries.back().name;
  if (IsArchiveObject(last)) {
    throw Refusal(last, "the table must not end in an object of an archive");
  }
  if (last != kVersionMarkerName) {
    throw Refusal(last,
                  std::string("the last entry must be the version marker, ") + kVersionMarkerName);
  }
}

// A neighbouring pair, `second` right after `first`.
void CheckPair(std::string_view first, std::string_view second) {
  const PayloadGroup group = GroupOf(second);
  if (group < GroupOf(first)) {
    throw Refusal(second, "an entry of the group \"" + std::string(GroupTitle(group)) +
                              "\" must not follow one of \"" +
                              std::string(GroupTitle(GroupOf(first))) + "\"");
  }
  if (group != GroupOf(first)) return;
  if (ListedRank(second) < ListedRank(first)) {
    throw Refusal(second, "the list of the group \"" + std::string(GroupTitle(group)) +
                              "\" has this before " + std::string(first));
  }
  if (IsReleasePrefixed(second) && FirstComponent(second) < FirstComponent(first)) {
    throw Refusal(second, "within a group the releases must follow as sorted texts");
  }
}

void CheckArchivesStandTogether(const std::vector<PayloadFile>& entries) {
  std::set<std::string_view> seen;
  std::string_view current;
  for (const PayloadFile& entry : entries) {
    const std::string_view tree = ArchiveTree(entry.name);
    if (tree == current) continue;
    current = tree;
    if (!tree.empty() && !seen.insert(tree).second) {
      throw Refusal(entry.name, "the files of one archive must stand together");
    }
  }
}

}  // namespace

void CheckAliases(const std::vector<PayloadFile>& entries) {
  std::set<std::string_view> earlier;
  for (const PayloadFile& entry : entries) {
    if (const auto alias = SplitAlias(entry.name)) {
      if (!entry.name.starts_with(kArmFolder)) {
        throw Refusal(entry.name, std::string("an alias must lie under ") + kArmFolder);
      }
      if (entry.size != 0) throw Refusal(entry.name, "an alias must have size 0");
      if (alias->left.size() > kLongestAliasLeft) {
        throw Refusal(entry.name, "an alias's left side must not be longer than " +
                                      std::to_string(kLongestAliasLeft) + " characters");
      }
      if (SplitAlias(alias->target)) {
        throw Refusal(entry.name, "an alias's target must not be an alias");
      }
      if (!earlier.contains(alias->target)) {
        throw Refusal(entry.name, "an alias's target must be an earlier entry");
      }
    }
    earlier.insert(entry.name);
  }
}

void CheckOrder(const std::vector<PayloadFile>& entries) {
  CheckEnd(entries);
  for (std::size_t i = 1; i < entries.size(); ++i) CheckPair(entries[i - 1].name, entries[i].name);
  CheckArchivesStandTogether(entries);
}
