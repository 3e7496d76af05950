// Payloads of random shape: trees as an author might keep them, which the packager takes, and
// tables that no packager makes.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tests/properties/random_source.h"
#include "tests/support/test_store.h"

// Relative path to content.
using Tree = std::map<std::string, std::string>;
using Locations = std::map<std::string, std::string>;

struct RandomTree {
  std::string release;  // the one that the host is to hold
  Locations locations;  // of that release
  Tree files;           // without that release's criteria, which depend on the host
};

// A tree with files of every kind, one to three releases, equal contents under arm/ and names as
// hard as the packager allows: blanks, percent signs, dots, dollars.
RandomTree MakeRandomTree(Random* random);

struct RandomTable {
  std::string release;  // may be empty: none selected
  Locations locations;  // may lack keys, or be empty for lack of a file
  std::vector<TestEntry> entries;
};

// A table in any order, with names twice, aliases of what comes later or not at all, empty and
// overlong components, separators of both kinds in a row. No component is "." or "..": such a name
// would lead out of the host folder, and the packager is what keeps it out of a payload.
RandomTable MakeRandomTable(Random* random);

// The text of a locations.txt.
std::string LocationsText(const Locations& locations);
