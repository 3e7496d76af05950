// What the control files of a release must hold. Both are judged with the very code that the
// installer reads them with, since what an author means by a line is of no account there. Every
// function throws Refusal, in words about `name`, at the first fault.
#pragma once

#include <string_view>

// A locations.txt: it yields all eleven keys, each at a line's start, every folder's value ends in
// "/", because the installer joins paths without adding one, and no value leads out of the host
// folder or holds what Windows has no file for.
void CheckLocations(std::string_view name, std::string_view content);

// A directory_criteria.txt: every zipcksum: line is well formed, and no line of a known keyword
// ends in a carriage return, which would become part of a path that no folder has.
void CheckCriteriaFile(std::string_view name, std::string_view content);
