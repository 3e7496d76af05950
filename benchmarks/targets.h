// What the program is meant to reach, and whether a bench has shown it.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "benchmarks/run_results.h"

// The runs of each measure by the measure's name, such as "install".
using Results = std::map<std::string, std::vector<Run>>;

// The middle of some figures, with the least and the greatest.
struct Spread {
  double median = 0;
  double least = 0;
  double greatest = 0;
  std::size_t count = 0;  // 0: there are no figures
};
Spread SpreadOf(std::vector<double> figures);

// The runs that count: of that contestant, after the warm-up, when all of its runs were good.
std::vector<Run> RunsThatCount(const std::vector<Run>& runs, const std::string& contestant);
Spread SecondsOf(const std::vector<Run>& runs, const std::string& contestant);

struct Target {
  std::string words;
  double bound;   // the ratio must not pass it
  double ratio;   // what was measured; 0 when the figures for it are missing
  bool at_least;  // the ratio must reach the bound instead
};
std::vector<Target> Targets(const Results& results);
