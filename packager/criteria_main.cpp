// quirloduino-criteria: prints a release's directory_criteria.txt, made from Arduino folders.
// Exit status: 0 done, 1 wrong usage, 2 refused or failed, with one line on the error stream.
#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstdio>
#include <exception>
#include <string>

#include "packager/criteria_file.h"
#include "packager/refusal.h"
#include "store/payload_format.h"

namespace {

constexpr int kWrongUsage = 1;
constexpr int kRefused = 2;

int Complain(const char* text, int status) {
  std::fprintf(stderr, "quirloduino-criteria: %s\n", text);
  return status;
}

int Run(int argc, char** argv) {
  CLI::App app{"Prints the directory_criteria.txt by which the installer knows Arduino folders.",
               "quirloduino-criteria"};
  CriteriaRequest request;
  app.add_option("RELEASE", request.release, "The release's name, such as 1.8.19")->required();
  app.add_option("FOLDER", request.folders,
                 "Arduino folders of that release, at most " + std::to_string(kMostPairs))
      ->required();
  app.add_option("--file", request.files, "A file that each folder must have; may be repeated")
      ->type_name("PATH")
      ->allow_extra_args(false);
  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& help) {
    return app.exit(help);
  } catch (const CLI::ParseError& error) {
    return Complain(error.what(), kWrongUsage);
  }

  const std::string text = CriteriaText(request);
  errno = 0;
  if (std::fputs(text.c_str(), stdout) < 0 || std::fflush(stdout) != 0) {
    throw Refusal("standard output", WithReason("can't be written", errno));
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Run(argc, argv);
  } catch (const std::exception& error) {
    return Complain(error.what(), kRefused);
  }
}
