// quirloduino-pack: packs a payload tree for the installer, tells what its install will do,
// verifies a packed one, checks an Arduino folder after an install. Exit status: 0 done, 1 wrong
// usage, 2 refused or failed, 128 + the signal when interrupted, each with one line on the error
// stream; 3 when a checked folder isn't as the install left it.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <string>
#include <thread>

#include "packager/check_command.h"
#include "packager/host_match.h"
#include "packager/interruption.h"
#include "packager/pack_commands.h"
#include "packager/progress_bar.h"
#include "packager/refusal.h"
#include "store/package_version.h"

namespace {

constexpr int kWrongUsage = 1;
constexpr int kRefused = 2;
constexpr int kNotAsInstalled = 3;

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

void AddJsonFlag(CLI::App* command, ListingForm* form) {
  command->add_flag_callback(
      "--json", [form] { *form = ListingForm::kJson; }, "Print JSON, for scripts");
}

void AddList(CLI::App* app, ListRequest* request) {
  CLI::App* list = app->add_subcommand(
      "list", "List the entries of a payload tree, or of an installer, in table order");
  list->add_option("TREE", request->source, "The folder that holds the payload, or an installer")
      ->required();
  list->add_option("--release", request->release,
                   "Also tell where each entry lands in an install of this release, and by which "
                   "rule")
      ->type_name("R");
  list->add_flag("--summary", request->summary,
                 "Tell how many entries each rule decides, for each release or for the one named");
  AddJsonFlag(list, &request->form);
  list->callback([request] { ListEntries(*request); });
}

struct ExplainRequest {
  std::string source;
  std::string name;
  ListingForm form = ListingForm::kText;
};

void AddExplain(CLI::App* app, ExplainRequest* request) {
  CLI::App* explain =
      app->add_subcommand("explain", "Tell all about one entry: where from, where to, and why");
  explain->add_option("TREE", request->source, "The folder that holds the payload, or an installer")
      ->required();
  explain->add_option("NAME", request->name, "The file's path below the tree")->required();
  AddJsonFlag(explain, &request->form);
  explain->callback([request] { ExplainEntry(request->source, request->name, request->form); });
}

void AddCheck(CLI::App* app, CheckRequest* request, int* status) {
  CLI::App* check = app->add_subcommand(
      "check", "Tell what in an Arduino folder isn't as an install left it; changes nothing");
  check->add_option("TREE", request->payload, "The folder that holds the payload, or an installer")
      ->required();
  check->add_option("--host", request->host, "The Arduino folder")->type_name("FOLDER")->required();
  check
      ->add_option("--without", request->left_out,
                   "A library that wasn't chosen for the install; may be repeated")
      ->type_name("LIBRARY")
      ->allow_extra_args(false);
  check
      ->add_option("--release", request->release,
                   "The release that the folder should hold, where it isn't recognised any more")
      ->type_name("R");
  AddJsonFlag(check, &request->form);
  AddQuietFlag(check);
  check->callback([request, status] {
    if (!CheckHost(*request)) *status = kNotAsInstalled;
  });
}

int Run(int argc, char** argv) {
  CLI::App app{"Packs the files that the Quirloduino installer carries.", "quirloduino-pack"};
  app.require_subcommand(1);
  app.set_help_all_flag("--help-all", "Print the help of all subcommands and exit");
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

  ListRequest list_request;
  AddList(&app, &list_request);
  ExplainRequest explain_request;
  AddExplain(&app, &explain_request);
  CheckRequest check_request;
  int status = 0;
  AddCheck(&app, &check_request, &status);

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
  return status;
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
