#include "tests/program/case_file.h"

#include <sstream>
#include <stdexcept>

#include "tests/support/temp_dir.h"

namespace {

std::string Unescape(const std::string& text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool feed = text.compare(i, 2, "\\n") == 0;
    plain += feed ? '\n' : text[i];
    if (feed) ++i;
  }
  return plain;
}

// Takes the first word off `rest`.
std::string TakeWord(std::string* rest) {
  const std::size_t end = rest->find(' ');
  std::string word = rest->substr(0, end);
  *rest = end == std::string::npos ? "" : rest->substr(end + 1);
  return word;
}

std::vector<std::string> SplitArguments(const std::string& text) {
  std::vector<std::string> arguments;
  std::string argument;
  int depth = 0;  // a blank inside braces belongs to the argument
  for (const char c : text) {
    depth += c == '{' ? 1 : c == '}' ? -1 : 0;
    if (c == ' ' && depth == 0) {
      arguments.push_back(argument);
      argument.clear();
    } else {
      argument += c;
    }
  }
  arguments.push_back(argument);
  return arguments;
}

bool ReadLine(const std::string& line, CaseFile* result) {
  std::string rest = line;
  const std::string word = TakeWord(&rest);
  if (word == "host") {
    result->host = rest;
  } else if (word == "write" || word == "remove" || word == "folder" || word == "damage" ||
             word == "mode") {
    const std::string path = TakeWord(&rest);
    result->steps.push_back({word, path, Unescape(rest)});
  } else if (word == "args") {
    result->arguments = SplitArguments(rest);
  } else if (word == "user" && rest == "ordinary") {
    result->ordinary_user = true;
  } else if (word == "status") {
    result->status = std::stoi(rest);
  } else if (word == "stdout") {
    result->output += rest + "\n";
  } else if (word == "stderr") {
    result->error += rest + "\n";
  } else if (word == "+" || word == "~") {
    const std::string path = TakeWord(&rest);
    (word == "+" ? result->added : result->changed)[path] = Unescape(rest);
  } else if (word == "-") {
    result->removed.push_back(rest);
  } else {
    return false;
  }
  return true;
}

}  // namespace

CaseFile ReadCaseFile(const std::string& path) {
  CaseFile result;
  std::istringstream lines(ReadFile(path));
  std::string line;
  for (int number = 1; std::getline(lines, line); ++number) {
    if (line.empty() || line[0] == '#') continue;
    if (!ReadLine(line, &result)) {
      throw std::runtime_error(path + ":" + std::to_string(number) + ": no such line: " + line);
    }
  }
  if (result.status < 0) throw std::runtime_error(path + ": no status line");
  return result;
}

std::string FillIn(const std::string& text, const std::string& host) {
  std::string filled = text;
  for (std::size_t at = filled.find("{host}"); at != std::string::npos;
       at = filled.find("{host}")) {
    filled.replace(at, 6, host);
  }
  const std::size_t pad = filled.find("{pad ");
  if (pad == std::string::npos) return filled;
  const std::size_t end = filled.find('}', pad);
  const std::size_t wanted = std::stoul(filled.substr(pad + 5, end - pad - 5));
  const std::size_t start = filled.find(host);  // the path begins with the host folder
  return filled.replace(pad, end + 1 - pad, wanted - (pad - start), 'x');
}
