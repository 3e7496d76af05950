#include "benchmarks/measure_plan.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace {

std::vector<std::string> Words(const std::string& text) {
  std::istringstream rest(text);
  std::vector<std::string> words;
  for (std::string word; rest >> word;) words.push_back(word);
  return words;
}

void Apply(Contestant* contestant, const std::string& directive, const std::string& value) {
  if (directive == "key") {
    contestant->key = value;
  } else if (directive == "prepare") {
    contestant->prepare = value;
  } else if (directive == "run") {
    contestant->run = Words(value);
  } else if (directive == "stdout") {
    contestant->stdout_file = value;
  } else if (directive == "expect") {
    contestant->expected_status = std::stoi(value);
  } else if (directive == "check") {
    contestant->check = value;
  } else if (directive == "artefact") {
    contestant->artefact = value;
  } else if (directive == "bytes") {
    contestant->bytes = std::stoull(value);
  } else if (directive == "entries") {
    contestant->entries = std::stoull(value);
  } else if (directive == "rounds") {
    contestant->rounds = std::stoi(value);
  } else {
    throw std::runtime_error("no directive " + directive);
  }
}

}  // namespace

std::vector<Contestant> ReadPlan(const std::filesystem::path& path) {
  std::ifstream file(path);
  if (!file) throw std::runtime_error(path.string() + ": can't be read");
  std::vector<Contestant> plan;
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line[0] == '#') continue;
    const std::size_t blank = line.find(' ');
    const std::string directive = line.substr(0, blank);
    const std::string value = blank == std::string::npos ? "" : line.substr(blank + 1);
    if (directive == "contestant") {
      plan.emplace_back().name = value;
    } else if (plan.empty()) {
      throw std::runtime_error(path.string() + ": no contestant before " + line);
    } else {
      Apply(&plan.back(), directive, value);
    }
  }
  for (const Contestant& contestant : plan) {
    if (contestant.run.empty()) throw std::runtime_error(contestant.name + ": nothing to run");
  }
  return plan;
}
