#include "benchmarks/targets.h"

#include <algorithm>

namespace {

const std::vector<Run>& Of(const Results& results, const std::string& measure) {
  static const std::vector<Run> none;
  const auto found = results.find(measure);
  return found == results.end() ? none : found->second;
}

double Quotient(double a, double b) {
  return a > 0 && b > 0 ? a / b : 0;
}

double Seconds(const Results& results, const std::string& measure, const std::string& contestant) {
  return SecondsOf(Of(results, measure), contestant).median;
}

double TimeRatio(const Results& results, const std::string& measure, const std::string& ours,
                 const std::string& other) {
  return Quotient(Seconds(results, measure, ours), Seconds(results, measure, other));
}

double Bytes(const Results& results, const std::string& measure, const std::string& contestant) {
  const std::vector<Run> runs = RunsThatCount(Of(results, measure), contestant);
  return runs.empty() ? 0 : static_cast<double>(runs.front().bytes);
}

double SizeRatio(const Results& results, const std::string& other) {
  return Quotient(Bytes(results, "packing", "quirloduino-pack"), Bytes(results, "packing", other));
}

double PeakRatio(const Results& results) {
  std::vector<double> peaks;
  for (const Run& run : RunsThatCount(Of(results, "start"), "quirloduino")) {
    peaks.push_back(static_cast<double>(run.peak_kilobytes) * 1024);
  }
  return Quotient(SpreadOf(peaks).median, Bytes(results, "start", "quirloduino"));
}

// The dearest size's cost of one unit over the cheapest's.
double Unevenness(const Results& results, const std::string& measure, bool by_entry) {
  std::map<std::string, double> units;
  for (const Run& run : Of(results, measure)) {
    units[run.contestant] = static_cast<double>(by_entry ? run.entries : run.bytes);
  }
  double least = 0;
  double greatest = 0;
  for (const auto& [size, count] : units) {
    const double cost = Quotient(Seconds(results, measure, size), count);
    if (cost == 0) return 0;
    least = least == 0 ? cost : std::min(least, cost);
    greatest = std::max(greatest, cost);
  }
  return units.size() < 2 ? 0 : Quotient(greatest, least);
}

}  // namespace

Spread SpreadOf(std::vector<double> figures) {
  if (figures.empty()) return {};
  std::sort(figures.begin(), figures.end());
  const std::size_t middle = figures.size() / 2;
  const double median =
      figures.size() % 2 == 1 ? figures[middle] : (figures[middle - 1] + figures[middle]) / 2;
  return {median, figures.front(), figures.back(), figures.size()};
}

std::vector<Run> RunsThatCount(const std::vector<Run>& runs, const std::string& contestant) {
  std::vector<Run> counted;
  for (const Run& run : runs) {
    if (run.contestant != contestant) continue;
    if (run.outcome != kOk) return {};
    if (run.round > 0) counted.push_back(run);
  }
  return counted;
}

Spread SecondsOf(const std::vector<Run>& runs, const std::string& contestant) {
  std::vector<double> seconds;
  for (const Run& run : RunsThatCount(runs, contestant)) seconds.push_back(run.seconds);
  return SpreadOf(seconds);
}

std::vector<Target> Targets(const Results& results) {
  const auto time = [&results](const char* measure, const char* ours, const char* other) {
    return TimeRatio(results, measure, ours, other);
  };
  return {
      {"frame, against NSIS solid LZMA", 1.0, SizeRatio(results, "nsis lzma solid"), false},
      {"frame, against `xz -9e`", 1.0, SizeRatio(results, "xz -9e"), false},
      {"frame, against `7z -mx9` solid", 1.08, SizeRatio(results, "7z -mx9 solid"), false},
      {"frame, against `zstd -19 --long=27`", 0.95, SizeRatio(results, "zstd -19 --long=27"),
       false},
      {"speed of expanding, against xz", 8.0, time("expanding", "xz -9e", "quirloduino frame"),
       true},
      {"speed of expanding, against 7z", 8.0,
       time("expanding", "7z -mx9 solid", "quirloduino frame"), true},
      {"start, against the bare read and expand", 1.10,
       time("start", "quirloduino", "read and expand"), false},
      {"peak memory of the start, against content and frame", 1.02, PeakRatio(results), false},
      {"install, against the unchecked floor", 1.25, time("install", "quirloduino", "floor"),
       false},
      {"install, against `tar --zstd -x`", 1.0, time("install", "quirloduino", "tar --zstd -x"),
       false},
      {"install, against `unzip`", 0.5, time("install", "quirloduino", "unzip"), false},
      {"install, against `7z x`", 0.25, time("install", "quirloduino", "7z x"), false},
      {"install under Wine, against NSIS", 1.0 / 3,
       time("install", "quirloduino, Wine", "nsis, Wine"), false},
      {"start, dearest entry over cheapest, 1/8 to 4 times the size", 1.3,
       Unevenness(results, "growth-start", true), false},
      {"start, dearest byte over cheapest", 1.3, Unevenness(results, "growth-start", false), false},
      {"install, dearest entry over cheapest", 1.3, Unevenness(results, "growth-install", true),
       false},
      {"install, dearest byte over cheapest", 1.3, Unevenness(results, "growth-install", false),
       false},
  };
}
