// Runs cases of a property, each in a process of its own: the program's state is process-wide, and
// a case that crashes or hangs must not take the others with it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

// What one case saw: what was wrong, and figures whose meaning is the property's own.
struct CaseReport {
  std::vector<std::string> problems;
  std::array<std::uint64_t, 16> figures{};

  void Expect(bool holds, const std::string& problem) {
    if (!holds) problems.push_back(problem);
  }
};

struct RunReport {
  std::uint64_t first_seed;
  std::size_t cases;
  std::array<std::uint64_t, 16> figures;  // sums over all cases
};

// Runs `one_case` with each case's seed and raises a test failure for every problem, naming the
// seed; ends early after ten failed cases. A case may use a minute of processor time.
RunReport RunCases(std::size_t count,
                   const std::function<CaseReport(std::uint64_t seed)>& one_case);
