#include "packager/payload_plan.h"

#include <algorithm>
#include <utility>

#include "packager/duplicate_finder.h"
#include "packager/entry_names.h"
#include "packager/payload_order.h"
#include "packager/refusal.h"

namespace {

std::vector<PayloadFile> InTableOrder(std::vector<PayloadFile> files) {
  std::sort(files.begin(), files.end(),
            [](const PayloadFile& a, const PayloadFile& b) { return ComesBefore(a.name, b.name); });
  return files;
}

std::vector<PlannedEntry> MakeEntries(const std::filesystem::path& root,
                                      const std::vector<PayloadFile>& files) {
  const std::vector<std::size_t> original = FindDuplicates(root, files);
  std::vector<PlannedEntry> entries;
  entries.reserve(files.size());
  for (std::size_t i = 0; i < files.size(); ++i) {
    const std::string& name = files[i].name;
    if (original[i] == i) {
      entries.push_back({name, static_cast<std::uint32_t>(files[i].size), name});
    } else {
      const std::string alias = name + std::string(kAliasSeparator) + files[original[i]].name;
      entries.push_back({alias, 0, name});
    }
  }
  return entries;
}

}  // namespace

PayloadPlan PlanPayload(const std::filesystem::path& root) {
  PayloadPlan plan{ReadPayloadTree(root), {}, 0};
  if (plan.tree.files.empty()) throw Refusal(root.string(), "the payload tree holds no file");
  plan.entries = MakeEntries(root, InTableOrder(plan.tree.files));
  for (const PlannedEntry& entry : plan.entries) plan.content_size += entry.size;
  return plan;
}
