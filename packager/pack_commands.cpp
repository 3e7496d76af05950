#include "packager/pack_commands.h"

#include <algorithm>
#include <string>
#include <vector>

#include "packager/depfile.h"
#include "packager/file_io.h"
#include "packager/install_forecast.h"
#include "packager/installer_file.h"
#include "packager/interruption.h"
#include "packager/output_set.h"
#include "packager/payload_limits.h"
#include "packager/payload_plan.h"
#include "packager/payload_view.h"
#include "packager/place_rules.h"
#include "packager/progress_bar.h"
#include "packager/refusal.h"
#include "packager/table_files.h"
#include "packager/verification.h"

namespace fs = std::filesystem;

namespace {

// The frame of all entries' contents, end to end; returns its length.
std::uint64_t WriteFrame(const fs::path& path, const PayloadPlan& plan, FrameOptions options) {
  ProgressBar progress("Packing at level " + std::to_string(options.level), plan.content_size);
  options.on_step = [&progress](std::uint64_t compressed) {
    StopIfInterrupted();
    progress.Reach(compressed);
  };
  FrameWriter writer(path, plan.content_size, options);
  for (const PlannedEntry& entry : plan.entries) {
    if (entry.size == 0) continue;
    ReadInPieces(plan.tree.root / entry.source, entry.name, entry.size,
                 [&writer](std::string_view piece) { writer.Append(piece); });
  }
  return writer.Finish();
}

void WriteText(const fs::path& path, const std::string& text) {
  OutputFile file(path);
  file.Write(text.data(), text.size());
  file.Close();
}

// Whether `path` is `folder` or lies below it, links resolved as far as they exist.
bool LiesWithin(const fs::path& path, const fs::path& folder) {
  const fs::path inner = fs::weakly_canonical(path);
  const fs::path outer = fs::weakly_canonical(folder);
  return std::mismatch(outer.begin(), outer.end(), inner.begin(), inner.end()).first == outer.end();
}

// What was packed must not become part of the payload the next time.
void CheckLiesOutside(const fs::path& path, const fs::path& tree) {
  if (LiesWithin(path, tree)) throw Refusal(path.string(), "must not lie within the tree");
}

// Where the dependency file's links lie; empty, which is no folder, when it isn't wanted.
fs::path LinkFolderOf(const PackRequest& request) {
  fs::path folder = request.depfile;
  if (!folder.empty()) folder += ".links";
  return folder;
}

void Warn(const PackRequest& request, const PayloadPlan& plan) {
  const PayloadTree& tree = plan.tree;
  const ContentReader read = [&tree](const PayloadFile& file) {
    return ReadWholeFile(tree.root / file.name, file.name, file.size);
  };
  for (const Warning& warning : FindWarnings(tree, read)) request.warn(warning);
  for (const Warning& warning : FindHomeless(ViewOf(plan))) request.warn(warning);
  if (!request.more_warnings) return;
  for (const Warning& warning : request.more_warnings(tree, read)) request.warn(warning);
}

}  // namespace

void PackTree(const PackRequest& request) {
  const fs::path frame = request.output / kFrameName;
  const fs::path table_text = request.output / kTableName;
  const fs::path table_source = request.output / kTableSourceName;
  const std::vector<fs::path> targets = {frame, table_text, table_source};
  const bool wants_depfile = !request.depfile.empty();

  CheckLiesOutside(request.output, request.tree);
  OutputSet outputs(targets);
  if (wants_depfile) {
    CheckLiesOutside(request.depfile, request.tree);
    outputs.Add(request.depfile);
  }
  LinkFolder links(LinkFolderOf(request));
  const PayloadPlan plan = PlanPayload(request.tree);
  if (request.warn) Warn(request, plan);
  const std::uint64_t frame_length =
      WriteFrame(OutputSet::TemporaryName(frame), plan, request.frame);
  const PayloadTable table{frame_length, plan.content_size, TableEntries(plan)};
  WriteText(OutputSet::TemporaryName(table_text), TableText(table));
  WriteText(OutputSet::TemporaryName(table_source), TableSource(table));
  if (wants_depfile) {
    const Depfile depfile = MakeDepfile(targets, plan.tree, LinkFolderOf(request));
    links.Make(depfile.linked);
    WriteText(OutputSet::TemporaryName(request.depfile), depfile.text);
  }
  // What was planned by the files' first bytes was packed of their last.
  CheckUnchanged(plan.tree);
  StopIfInterrupted();
  outputs.Commit();
  links.Commit();
  PrintText(LimitsText(ViewOf(plan), frame_length));
}

void ListEntries(const ListRequest& request) {
  if (request.release.empty() && !request.summary) {
    // The table alone: that of an installer is told without expanding what it carries.
    const PayloadView table = IsInstaller(request.source)
                                  ? PayloadView{ReadInstallerTable(request.source).entries, {}}
                                  : OpenPayload(request.source);
    PrintText(EntryListing(table, request.form));
    return;
  }
  const PayloadView payload = OpenPayload(request.source);
  if (request.summary) {
    const std::vector<std::string> releases =
        request.release.empty() ? ReleasesOf(payload) : std::vector{request.release};
    PrintText(ForecastSummary(payload, releases, request.form));
  } else {
    PrintText(ForecastListing(payload, InstallForecast(payload, request.release), request.form));
  }
}

void ExplainEntry(const fs::path& source, const std::string& name, ListingForm form) {
  PrintText(EntryExplanation(OpenPayload(source), name, form));
}

void VerifyPacked(const fs::path& packed_in, const fs::path& tree) {
  const PackedPayload packed =
      IsInstaller(packed_in) ? ReadInstaller(packed_in)
                             : ReadPackedPayload({packed_in / kFrameName, packed_in / kTableName,
                                                  packed_in / kTableSourceName});
  CheckPackedPayload(packed);
  if (!tree.empty()) CompareWithTree(packed, PlanPayload(tree));
  PrintText("verified: " + std::to_string(packed.table.entries.size()) + " entries, " +
            std::to_string(packed.table.content_size) + " bytes, packed into " +
            std::to_string(packed.table.frame_length) + "\n" +
            LimitsText(ViewOf(packed), packed.table.frame_length));
}
