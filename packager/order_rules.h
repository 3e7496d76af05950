// What must hold of a finished table's order and of its aliases. A table made from a tree has all
// of it by construction; one that came from elsewhere is asked here.
#pragma once

#include <vector>

#include "packager/payload_tree.h"

// Every alias lies under arm/, has size 0, a left side that fits the installer's 511 characters,
// and a target that stands before it and is none itself. Throws Refusal at the first that doesn't.
void CheckAliases(const std::vector<PayloadFile>& entries);

// The table ends in the version marker and not in an object that no later file would bring to the
// disk; the groups follow one another; root tools, images and releases stand in their orders; the
// class files of one archive stand together. Throws Refusal at the first entry out of place.
void CheckOrder(const std::vector<PayloadFile>& entries);
