// Files with the names of system libraries beside a program. Each records when it is loaded.
#pragma once

#include <string>

// Puts one into `folder` for each name that Windows does not protect.
void PlantLibraries(const std::string& folder);

// For WineOverrides: Wine would prefer its own libraries, Windows takes the files that it finds.
std::string PreferPlantedLibraries();

// The names of those that a process has loaded since, in one text; empty for none.
std::string LoadedPlantedLibraries(const std::string& folder);
