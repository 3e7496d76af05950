// A whole-program case read from its file; the language is described in cases/README.md.
#pragma once

#include <map>
#include <string>
#include <vector>

struct CaseStep {
  std::string word;      // write, remove, folder, damage or mode
  std::string path;      // below the host folder
  std::string argument;  // text, kind of damage or mode
};

struct CaseFile {
  std::string host = "arduino-1.8.19";
  std::vector<CaseStep> steps;  // what is done to the host before the run
  std::vector<std::string> arguments;
  bool ordinary_user = false;
  int status = -1;
  std::string output;
  std::string error;
  std::map<std::string, std::string> added;
  std::map<std::string, std::string> changed;
  std::vector<std::string> removed;
};

// Reads the file; throws, naming file and line, when a line is none of the language.
CaseFile ReadCaseFile(const std::string& path);

// `text` with {host} and {pad N} filled in.
std::string FillIn(const std::string& text, const std::string& host);
