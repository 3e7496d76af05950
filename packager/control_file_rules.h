// What a release's locations.txt must hold. It is judged with the very code that the installer
// reads it with, since what an author means by a line is of no account there.
#pragma once

#include <string_view>

// The file yields all eleven keys, each at a line's start, every folder's value ends in "/",
// because the installer joins paths without adding one, every archive's in ".jar", and no value
// leads out of the host folder or holds what Windows has no file for. Throws Refusal, in words
// about `name`, at the first fault.
void CheckLocations(std::string_view name, std::string_view content);
