#include "packager/verification.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "packager/entry_names.h"
#include "packager/file_io.h"
#include "packager/frame_reader.h"
#include "packager/name_rules.h"
#include "packager/order_rules.h"
#include "packager/payload_rules.h"
#include "packager/payload_view.h"
#include "packager/place_rules.h"
#include "packager/progress_bar.h"
#include "packager/refusal.h"

namespace {

void CheckSizesSum(const std::string& name, const PayloadTable& table) {
  CheckContentSize(table.entries);
  std::uint64_t total = 0;
  for (const PayloadFile& entry : table.entries) total += entry.size;
  if (total != table.content_size) {
    throw Refusal(name, "the sizes sum to " + std::to_string(total) + ", but the content has " +
                            std::to_string(table.content_size) + " bytes");
  }
}

std::string ReadFrameFile(const std::filesystem::path& path, const PayloadTable& table) {
  std::string frame = ReadWholeFile(path, path.string());
  if (frame.size() != table.frame_length) {
    throw Refusal(path.string(), "has " + std::to_string(frame.size()) + " bytes, but the table " +
                                     "says " + std::to_string(table.frame_length));
  }
  return frame;
}

void CompareContent(const PackedPayload& packed, std::size_t index, const PayloadPlan& plan,
                    ProgressBar* progress) {
  const PlannedEntry& entry = plan.entries[index];
  std::string_view expected = BytesOf(packed, index);
  ReadInPieces(plan.tree.root / entry.source, entry.name, entry.size,
               [&expected, &entry, progress](std::string_view piece) {
                 if (!expected.starts_with(piece)) {
                   throw Refusal(entry.name, "differs from the tree's file");
                 }
                 expected.remove_prefix(piece.size());
                 progress->Advance(piece.size());
               });
}

}  // namespace

PackedPayload ExpandPayload(const std::string& name, PayloadTable table, std::string_view frame) {
  const ProgressBar progress("Expanding " + Printable(name), 0);
  PackedPayload packed{std::move(table), {}, {}};
  packed.content = ExpandFrame(name, frame, packed.table.content_size);
  std::uint64_t position = 0;
  for (const PayloadFile& entry : packed.table.entries) {
    packed.position.push_back(position);
    position += entry.size;
  }
  return packed;
}

std::string_view BytesOf(const PackedPayload& packed, std::size_t index) {
  return std::string_view(packed.content)
      .substr(packed.position[index], packed.table.entries[index].size);
}

PackedPayload ReadPackedPayload(const PackedFiles& files) {
  const std::string table_name = files.table.string();
  PayloadTable table = ParseTableText(table_name, ReadWholeFile(files.table, table_name));
  CheckSizesSum(table_name, table);
  const std::string source_name = files.table_source.string();
  if (ReadWholeFile(files.table_source, source_name) != TableSource(table)) {
    throw Refusal(source_name, "doesn't agree with " + table_name);
  }
  const std::string frame = ReadFrameFile(files.frame, table);
  return ExpandPayload(files.frame.string(), std::move(table), frame);
}

void CheckPackedPayload(const PackedPayload& packed) {
  const std::vector<PayloadFile>& entries = packed.table.entries;
  std::unordered_map<std::string_view, std::size_t> index_of;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    CheckPath(InstalledPath(entries[i].name));
    index_of.emplace(entries[i].name, i);
  }
  CheckAliases(entries);
  CheckPayload(entries, {}, [&packed, &index_of](const PayloadFile& file) {
    return std::string(BytesOf(packed, index_of.at(file.name)));
  });
  CheckOrder(entries);
  CheckPlaces(ViewOf(packed));
}

void CompareWithTree(const PackedPayload& packed, const PayloadPlan& plan) {
  const std::vector<PayloadFile>& entries = packed.table.entries;
  const std::size_t shared = std::min(entries.size(), plan.entries.size());
  ProgressBar progress("Comparing with the tree", packed.table.content_size);
  for (std::size_t i = 0; i < shared; ++i) {
    const PlannedEntry& expected = plan.entries[i];
    if (entries[i].name != expected.name) {
      throw Refusal(entries[i].name, "stands at index " + std::to_string(i) +
                                         ", where the tree has " + expected.name);
    }
    if (entries[i].size != expected.size) {
      throw Refusal(entries[i].name, "has " + std::to_string(entries[i].size) +
                                         " bytes, but the tree's file has " +
                                         std::to_string(expected.size));
    }
    if (!SplitAlias(expected.name)) CompareContent(packed, i, plan, &progress);
  }
  // The version marker ends both, so neither can go on without a difference before; a table that
  // was never checked might.
  if (entries.size() != plan.entries.size()) {
    throw Refusal(plan.tree.root.string(), "has another count of entries than the table");
  }
}
