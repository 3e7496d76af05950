// The host folder of a whole-program case, and what a run has changed in it.
#pragma once

#include <map>
#include <string>

#include "tests/program/case_file.h"

// Makes the folder as the case wants it before the run.
void MakeCaseHost(const CaseFile& test_case, const std::string& folder);

// Every file below the folder, a jar's members (behind "<jar>!/") in the place of a sound jar
// itself. Folders are left out.
std::map<std::string, std::string> ReadHost(const std::string& folder);
