// quirloduino-pack: packs a payload tree for the installer, lists one, verifies a packed one.
// Exit status: 0 done, 1 wrong usage, 2 refused or failed, 128 + the signal when interrupted, each
// with one line on the error stream.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <string>
#include <thread>

#include "packager/host_match.h"
#include "packager/interruption.h"
#include "packager/pack_commands.h"
#include "packager/progress_bar.h"
#include "packager/refusal.h"
#include "store/package_version.h"

namespace {

constexpr int kWrongUsage = 1;
constexpr int kRefused = 2;

int Complain(const char* text, int status) {
  std::fprintf(stderr, "quirloduino-pack: %s\n", text);
  return status;
}

void AddQuietFlag(CLI::App* subcommand) {
  subcommand->add_flag_callback(
      "--quiet", [] { ProgressBar::SetWanted(false); }, "Show no progress, not even on a terminal");
}

void Tell(const Warning& warning, bool strict) {
  const Refusal refusal(warning.file, warning.words);
  if (strict) throw refusal;
  Complain((std::string("warning: ") + refusal.what()).c_str(), 0);
}

int Run(int argc, char** argv) {
  CLI::App app{"Packs the files that the Quirloduino installer carries.", "quirloduino-pack"};
  app.require_subcommand(1);
  app.set_version_flag("--version", "quirloduino-pack " + std::string(kPackageVersion) +
                                        ", packing with Zstandard " + ZstandardVersion());

  PackRequest request;
  request.frame.threads = std::clamp(std::thread::hardware_concurrency(), 1U, kMostThreads);
  CLI::App* pack = app.add_subcommand("pack", "Pack a payload tree into a frame and its tables");
  pack->add_option("TREE", request.tree, "The folder that holds the payload")->required();
  pack->add_option("--output", request.output,
                   "The folder to write payload.zst, payload.tbl and payload_tables.cpp into")
      ->type_name("DIR")
      ->required();
  pack->add_option("--level", request.frame.level,
                   "Zstandard level: 3 takes seconds and is for trying, 22 for a release")
      ->check(CLI::Range(kLowestLevel, kHighestLevel))
      ->capture_default_str();
  pack->add_option("--threads", request.frame.threads,
                   "Threads to compress with; the output doesn't depend on it")
      ->check(CLI::Range(1U, kMostThreads))
      ->capture_default_str();
  pack->add_option("--depfile", request.depfile,
                   "Also write a Makefile-style list of all files and folders of the tree")
      ->type_name("FILE");
  AddQuietFlag(pack);
  std::vector<std::filesystem::path> hosts;
  pack->add_option("--host", hosts,
                   "An Arduino folder that a release should match; may be repeated")
      ->type_name("FOLDER")
      ->allow_extra_args(false);
  bool strict = false;
  pack->add_flag("--strict", strict, "Refuse the payload for what is only warned of otherwise");
  pack->callback([&request, &strict, &hosts] {
    request.more_warnings = [&hosts](const PayloadTree& tree, const ContentReader& read) {
      return CompareWithHosts(tree.files, hosts, read);
    };
    request.warn = [strict](const Warning& warning) { Tell(warning, strict); };
    PackTree(request);
  });

  std::string listed;
  CLI::App* list = app.add_subcommand(
      "list", "List the entries of a payload tree, or of an installer, in table order");
  list->add_option("TREE", listed, "The folder that holds the payload, or an installer")
      ->required();
  list->callback([&listed] { ListEntries(listed); });

  std::string verified;
  std::string compared;
  CLI::App* verify =
      app.add_subcommand("verify", "Check a packed payload, or an installer, against its tables");
  verify->add_option("DIR", verified, "The folder that `pack` wrote, or an installer")->required();
  verify->add_option("--tree", compared, "Also compare it with this payload tree, byte for byte")
      ->type_name("TREE");
  AddQuietFlag(verify);
  verify->callback([&verified, &compared] { VerifyPacked(verified, compared); });

  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& help) {
    return app.exit(help);
  } catch (const CLI::ParseError& error) {
    return Complain(error.what(), kWrongUsage);
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  NoteInterruptions();
  try {
    return Run(argc, argv);
  } catch (const Interruption& interruption) {
    return Complain(interruption.what(), interruption.status());
  } catch (const std::exception& error) {
    return Complain(error.what(), kRefused);
  }
}
