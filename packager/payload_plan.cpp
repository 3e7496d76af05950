#include "packager/payload_plan.h"

#include <algorithm>
#include <utility>

#include "packager/duplicate_finder.h"
#include "packager/entry_names.h"
#include "packager/file_io.h"
#include "packager/name_rules.h"
#include "packager/order_rules.h"
#include "packager/payload_order.h"
#include "packager/payload_rules.h"
#include "packager/payload_view.h"
#include "packager/place_rules.h"
#include "packager/progress_bar.h"
#include "packager/refusal.h"

namespace {

std::vector<PayloadFile> InTableOrder(std::vector<PayloadFile> files) {
  std::sort(files.begin(), files.end(),
            [](const PayloadFile& a, const PayloadFile& b) { return ComesBefore(a.name, b.name); });
  return files;
}

// Folders too: an empty one is no entry, but its name has to stand in the dependency file.
void CheckTreePaths(const PayloadTree& tree) {
  for (const std::string& folder : tree.folders) {
    if (!folder.empty()) CheckTreePath(folder);
  }
  for (const PayloadFile& file : tree.files) CheckTreePath(file.name);
}

std::vector<PlannedEntry> MakeEntries(const std::filesystem::path& root,
                                      const std::vector<PayloadFile>& files) {
  const std::vector<std::size_t> original = FindDuplicates(root, files);
  std::vector<PlannedEntry> entries;
  entries.reserve(files.size());
  for (std::size_t i = 0; i < files.size(); ++i) {
    const std::string& name = files[i].name;
    if (original[i] == i) {
      entries.push_back({name, files[i].size, name});
    } else {
      const std::string alias = name + kAliasSeparator + files[original[i]].name;
      entries.push_back({alias, 0, name});
    }
  }
  return entries;
}

PayloadTree ReadTreeVisibly(const std::filesystem::path& root) {
  const ProgressBar progress("Reading " + Printable(root.string()), 0);
  return ReadPayloadTree(root);
}

}  // namespace

std::vector<PayloadFile> TableEntries(const PayloadPlan& plan) {
  std::vector<PayloadFile> entries;
  entries.reserve(plan.entries.size());
  for (const PlannedEntry& entry : plan.entries) entries.push_back({entry.name, entry.size});
  return entries;
}

PayloadPlan PlanPayload(const std::filesystem::path& root) {
  PayloadPlan plan{ReadTreeVisibly(root), {}, 0};
  if (plan.tree.files.empty()) throw Refusal(root.string(), "the payload tree holds no file");
  CheckTreePaths(plan.tree);
  CheckPayload(plan.tree.files, plan.tree.folders, [&root](const PayloadFile& file) {
    return ReadWholeFile(root / file.name, file.name, file.size);
  });
  plan.entries = MakeEntries(root, InTableOrder(plan.tree.files));
  const std::vector<PayloadFile> table = TableEntries(plan);
  CheckContentSize(table);
  CheckAliases(table);
  CheckOrder(table);
  CheckPlaces(ViewOf(plan));
  for (const PayloadFile& entry : table) plan.content_size += entry.size;
  return plan;
}
