#pragma once

#include <string>
#include <vector>

// The lines of a text, each with its line feed; the last has one only if the text ends in it.
std::vector<std::string> LinesOf(const std::string& text);
