#include "benchmarks/run_results.h"

#include <fstream>
#include <iomanip>
#include <sstream>
#include <stdexcept>

namespace {

constexpr char kHead[] =
    "contestant\tkey\tround\tseconds\tuser\tsystem\tpeak_kB\tbytes\tentries\toutcome";

std::string Line(const Run& run) {
  std::ostringstream text;
  text << std::fixed << std::setprecision(6) << run.contestant << '\t' << run.key << '\t'
       << run.round << '\t' << run.seconds << '\t' << run.user << '\t' << run.system << '\t'
       << run.peak_kilobytes << '\t' << run.bytes << '\t' << run.entries << '\t' << run.outcome;
  return text.str();
}

Run Parse(const std::string& line, const std::filesystem::path& path) {
  std::vector<std::string> fields;
  std::istringstream rest(line);
  for (std::string field; std::getline(rest, field, '\t');) fields.push_back(field);
  if (fields.size() != 10) throw std::runtime_error(path.string() + ": not a run: " + line);
  return {fields[0],
          fields[1],
          std::stoi(fields[2]),
          std::stod(fields[3]),
          std::stod(fields[4]),
          std::stod(fields[5]),
          std::stol(fields[6]),
          std::stoull(fields[7]),
          std::stoull(fields[8]),
          fields[9]};
}

}  // namespace

std::vector<Run> ReadRuns(const std::filesystem::path& path) {
  std::vector<Run> runs;
  std::ifstream file(path);
  std::string line;
  std::getline(file, line);
  while (std::getline(file, line)) runs.push_back(Parse(line, path));
  return runs;
}

void WriteRuns(const std::filesystem::path& path, const std::vector<Run>& runs) {
  std::ofstream file(path, std::ios::trunc);
  file << kHead << '\n';
  for (const Run& run : runs) file << Line(run) << '\n';
  if (!file.flush()) throw std::runtime_error(path.string() + ": can't be written");
}

void AppendRun(const std::filesystem::path& path, const Run& run) {
  const bool is_new = !std::filesystem::exists(path);
  std::ofstream file(path, std::ios::app);
  if (is_new) file << kHead << '\n';
  file << Line(run) << '\n';
  if (!file.flush()) throw std::runtime_error(path.string() + ": can't be written");
}
