#include "packager/pack_commands.h"

#include <cstdio>
#include <string>
#include <vector>

#include "packager/depfile.h"
#include "packager/file_io.h"
#include "packager/output_set.h"
#include "packager/payload_plan.h"
#include "packager/progress_bar.h"
#include "packager/refusal.h"
#include "packager/table_files.h"

namespace fs = std::filesystem;

namespace {

// The frame of all entries' contents, end to end; returns its length.
std::uint64_t WriteFrame(const fs::path& path, const PayloadPlan& plan,
                         const FrameOptions& options) {
  FrameWriter writer(path, plan.content_size, options);
  ProgressBar progress("Packing", plan.content_size);
  for (const PlannedEntry& entry : plan.entries) {
    if (entry.size == 0) continue;
    ReadInPieces(plan.tree.root / entry.source, entry.name, entry.size,
                 [&writer, &progress](std::string_view piece) {
                   writer.Append(piece);
                   progress.Advance(piece.size());
                 });
  }
  return writer.Finish();
}

void WriteText(const fs::path& path, const std::string& text) {
  OutputFile file(path);
  file.Write(text.data(), text.size());
  file.Close();
}

PayloadTable TableOf(const PayloadPlan& plan, std::uint64_t frame_length) {
  PayloadTable table{frame_length, plan.content_size, {}};
  for (const PlannedEntry& entry : plan.entries) table.entries.push_back({entry.name, entry.size});
  return table;
}

}  // namespace

void PackTree(const PackRequest& request) {
  const fs::path frame = request.output / "payload.zst";
  const fs::path table_text = request.output / "payload.tbl";
  const fs::path table_source = request.output / "payload_tables.cpp";
  const std::vector<fs::path> targets = {frame, table_text, table_source};
  std::vector<fs::path> paths = targets;
  if (!request.depfile.empty()) paths.push_back(request.depfile);

  OutputSet outputs(paths);
  const PayloadPlan plan = PlanPayload(request.tree);
  outputs.MakeFolders();
  const PayloadTable table =
      TableOf(plan, WriteFrame(OutputSet::TemporaryName(frame), plan, request.frame));
  WriteText(OutputSet::TemporaryName(table_text), TableText(table));
  WriteText(OutputSet::TemporaryName(table_source), TableSource(table));
  if (!request.depfile.empty()) {
    WriteText(OutputSet::TemporaryName(request.depfile), DepfileText(targets, plan.tree));
  }
  outputs.Commit();
}

void ListTree(const fs::path& tree) {
  const PayloadPlan plan = PlanPayload(tree);
  std::string text;
  for (std::size_t i = 0; i < plan.entries.size(); ++i) {
    const PlannedEntry& entry = plan.entries[i];
    text += std::to_string(i) + "\t" + std::to_string(entry.size) + "\t" + entry.name + "\n";
  }
  std::fputs(text.c_str(), stdout);
}
