// A made Arduino folder that satisfies the official criteria of release 1.8.19, and the texts that
// go with it.
#pragma once

#include <string>
#include <vector>

#include "tests/support/test_store.h"

// The official criteria file of 1.8.19, ten lines.
extern const char kCriteria1819[];

// A locations.txt with all eleven keys and the delivered values.
extern const char kLocations[];

// Makes `folder` an Arduino 1.8.19 in the eyes of kCriteria1819: version file, the three plain
// files and both jars, whose members have the official sizes and checksums. Each jar also holds one
// member that no line names, "other/Untouched.class". Made once per process and copied after that.
void MakeArduino1819(const std::string& folder);

// The control entries of release 1.8.19, as the table orders them: criteria and locations.
std::vector<TestEntry> ControlEntries1819();

// A small payload for 1.8.19 with one entry of every kind that is installed, ending in the version
// marker.
std::vector<TestEntry> SmallPayload1819();
