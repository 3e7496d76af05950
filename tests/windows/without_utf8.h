// The same program for a system whose code page the manifest doesn't change, as all were before
// Windows 10 of 2019.
#pragma once

#include <string>

// Writes a copy of `program` to `copy` whose manifest asks for no code page. Throws when the
// program asks for none itself. Returns `copy`.
std::string WithoutUtf8(const std::string& program, const std::string& copy);
