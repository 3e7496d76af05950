// Files with the names of system libraries beside a program. Each records when it is loaded.
#pragma once

#include <string>
#include <vector>

// The names: libraries that Windows does not protect.
const std::vector<std::string>& PlantedLibraries();

// Whether the system or FLTK asks for it only when it is needed, if ever.
bool IsLoadedLate(const std::string& name);

// Puts one into `folder` for each name.
void PlantLibraries(const std::string& folder);

// For WineOverrides: Wine would prefer its own libraries, Windows takes the files that it finds.
std::string PreferPlantedLibraries();

// The names of those that a process has loaded since, in one text; empty for none.
std::string LoadedPlantedLibraries(const std::string& folder);
