// Writes the page of a bench to standard output: what was reached, then a table for each measure,
// from the records of measure_runs.
//   performance_page RESULTS HEAD [NOTE]
// RESULTS is the folder of the records, HEAD a file that the page begins with, and NOTE a sentence
// that goes under the title of each table.
#include <array>
#include <cstdio>
#include <exception>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "benchmarks/targets.h"

namespace fs = std::filesystem;

namespace {

struct Measure {
  const char* name;  // of its record, without the ending
  const char* title;
  const char* words;  // what is measured
  const char* ours;   // the contestant that the others' ratios are taken against; may be null
  bool sizes;         // the runs' bytes are of interest
  bool per_unit;      // and so are the times for each entry and byte
};

constexpr std::array<Measure, 9> kMeasures = {{
    {"packing", "Packing, and the size of what it makes",
     "The same content in the same order. xz and zstd get it as one file, 7z and NSIS as files. "
     "Each result is expanded again and compared before it counts. `zstd -19` is here for its "
     "size.",
     "quirloduino-pack", true, false},
    {"expanding", "Expanding what was packed into one file",
     "From the page cache into a file of a fresh file system.", "quirloduino frame", false, false},
    {"start", "Start until the payload is ready",
     "The whole process, its end included. The bytes are content and frame: what must be in "
     "memory.",
     "quirloduino", true, false},
    {"install", "Silent install of one release into a fresh Arduino 1.8.19",
     "All write the same files. Only ours looks at the folder first and updates the two jars; the "
     "floor writes the jars' classes as files. The process runs from the page cache and ends when "
     "the files are written, not when a disk has them.",
     "quirloduino", false, false},
    {"jars", "Updating the classes of two jars",
     "pde.jar and arduino-core.jar of a real Arduino 1.8.19; the members that result are compared.",
     "quirloduino", false, false},
    {"recognition", "Recognising a folder",
     "By hand: `unzip -tq` of both jars and `cksum` of the six members, compared with the "
     "criteria.",
     "quirloduino", false, false},
    {"growth-start", "Growth of the start", "Payloads of 1/8 to 4 times the entries and bytes.",
     nullptr, true, true},
    {"growth-install", "Growth of the silent install",
     "The same payloads. Entries and bytes are the payload's.", nullptr, true, true},
    {"picture", "Time to the wizard's first picture",
     "On a display without a screen. The floor is the bare read and expand and an empty window.",
     "wizard", false, false},
}};

std::string Format(const char* format, double value) {
  std::array<char, 64> text;
  std::snprintf(text.data(), text.size(), format, value);
  return text.data();
}

// Three figures that matter, whatever the magnitude.
std::string Seconds(double value) {
  return Format(value < 0.1 ? "%.4f" : value < 10 ? "%.3f" : "%.1f", value);
}

std::string Grouped(std::uint64_t number) {
  const std::string text = std::to_string(number);
  std::string grouped;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (i > 0 && (text.size() - i) % 3 == 0) grouped += ',';
    grouped += text[i];
  }
  return grouped;
}

std::vector<std::string> Contestants(const std::vector<Run>& runs) {
  std::vector<std::string> names;
  for (const Run& run : runs) {
    bool known = false;
    for (const std::string& name : names) known = known || name == run.contestant;
    if (!known) names.push_back(run.contestant);
  }
  return names;
}

std::string FailureOf(const std::vector<Run>& runs, const std::string& contestant) {
  for (const Run& run : runs) {
    if (run.contestant == contestant && run.outcome != kOk) return run.outcome;
  }
  return "no round that counts";
}

template <typename Figure>
double MedianOf(const std::vector<Run>& counted, Figure Run::*figure) {
  std::vector<double> figures;
  for (const Run& run : counted) figures.push_back(static_cast<double>(run.*figure));
  return SpreadOf(figures).median;
}

void PrintRow(const Measure& measure, const std::vector<Run>& runs, const std::string& contestant,
              double ours) {
  const std::vector<Run> counted = RunsThatCount(runs, contestant);
  if (counted.empty()) {
    std::cout << "| " << contestant << " | " << FailureOf(runs, contestant) << " |\n";
    return;
  }
  const Spread time = SecondsOf(runs, contestant);
  std::cout << "| " << contestant << " | " << Seconds(time.median) << " | " << Seconds(time.least)
            << " .. " << Seconds(time.greatest) << " | " << time.count << " | "
            << Seconds(MedianOf(counted, &Run::user)) << " | "
            << Seconds(MedianOf(counted, &Run::system)) << " | "
            << Format("%.1f", MedianOf(counted, &Run::peak_kilobytes) * 1024 / 1e6) << " |";
  if (measure.ours != nullptr) {
    std::cout << ' ' << (ours > 0 ? Format("%.2f", time.median / ours) : "") << " |";
  }
  if (measure.sizes) std::cout << ' ' << Grouped(counted.front().bytes) << " |";
  if (measure.per_unit) {
    std::cout << ' ' << Grouped(counted.front().entries) << " | "
              << Format("%.2f", time.median * 1e6 / static_cast<double>(counted.front().entries))
              << " | "
              << Format("%.3f", time.median * 1e9 / static_cast<double>(counted.front().bytes))
              << " |";
  }
  std::cout << '\n';
}

void PrintMeasure(const Measure& measure, const std::vector<Run>& runs, const std::string& note) {
  std::cout << "\n## " << measure.title << "\n\n" << measure.words << '\n';
  if (!note.empty()) std::cout << '\n' << note << '\n';
  std::string head =
      "\n| | median, s | least .. greatest | rounds | user, s | system, s | peak, MB |";
  std::string rule = "\n|---|---:|---:|---:|---:|---:|---:|";
  if (measure.ours != nullptr) {
    head += " time, of ours |";
    rule += "---:|";
  }
  if (measure.sizes) {
    head += " bytes |";
    rule += "---:|";
  }
  if (measure.per_unit) {
    head += " entries | us for an entry | ns for a byte |";
    rule += "---:|---:|---:|";
  }
  std::cout << head << rule << '\n';
  const double ours = measure.ours == nullptr ? 0 : SecondsOf(runs, measure.ours).median;
  for (const std::string& contestant : Contestants(runs)) {
    PrintRow(measure, runs, contestant, ours);
  }
}

void PrintTargets(const Results& results, const std::string& note) {
  std::cout << "\n## What was to be reached\n\n";
  if (!note.empty()) std::cout << note << "\n\n";
  std::cout << "| ratio of medians | bound | measured | |\n|---|---:|---:|---|\n";
  for (const Target& target : Targets(results)) {
    const bool met = target.at_least ? target.ratio >= target.bound : target.ratio <= target.bound;
    std::cout << "| " << target.words << " | " << (target.at_least ? "at least " : "at most ")
              << Format("%.2f", target.bound) << " | "
              << (target.ratio > 0 ? Format("%.3f", target.ratio) : "not measured") << " | "
              << (target.ratio > 0 ? met ? "met" : "**missed**" : "") << " |\n";
  }
}

void PrintPage(const fs::path& folder, const fs::path& head, const std::string& note) {
  std::cout << std::ifstream(head).rdbuf();
  Results results;
  for (const Measure& measure : kMeasures) {
    results[measure.name] = ReadRuns(folder / (std::string(measure.name) + ".tsv"));
  }
  PrintTargets(results, note);
  for (const Measure& measure : kMeasures) {
    const std::vector<Run>& runs = results[measure.name];
    if (!runs.empty()) PrintMeasure(measure, runs, note);
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3 && argc != 4) return 2;
  try {
    PrintPage(argv[1], argv[2], argc == 4 ? argv[3] : "");
  } catch (const std::exception& error) {
    std::fprintf(stderr, "performance_page: %s\n", error.what());
    return 1;
  }
  return 0;
}
