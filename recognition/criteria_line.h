// The lines of a directory_criteria.txt, as text: where each ends and what keyword it begins with.
// The installer tests a folder with what it finds here, the packager proves an author's file with
// it. The language is described in docs/criteria_language.md.
#pragma once

#include <cstddef>

enum class CriteriaKeyword {
  kNone,  // empty, a comment, or a word that isn't known: the line is passed over
  kDir,
  kFile,
  kVersion,
  kZipfile,
  kZipcksum,
};

// All texts point into the file and have no terminator.
struct CriteriaLine {
  CriteriaKeyword keyword;
  const char* text;  // the whole line, without its line feed
  std::size_t length;
  const char* argument;  // what follows the keyword directly; the whole line when there is none
  std::size_t argument_length;
};

// Takes the line at `*position` and moves on behind its line feed. False at `end`. A line ends at a
// line feed or at the end of the file; a carriage return is a character like any other. Keywords
// are tried in the first column and in exact case.
bool TakeCriteriaLine(const char** position, const char* end, CriteriaLine* line);
