// What must hold of the class files that a release puts into the host's archives, given what its
// criteria prove of them. Throws Refusal at the first that doesn't.
#pragma once

#include <string_view>
#include <vector>

#include "packager/criteria_rules.h"
#include "packager/payload_rules.h"

// `files` are those below RELEASE/WINDOWS/, `locations` is the text of that release's
// locations.txt. Every class stands in one of the two trees that go into an archive, the archive of
// a tree in use is one that the criteria prove, and a class that takes the place of one by which
// they know the folder is listed there too, since the folder would not be known again otherwise.
void CheckClasses(std::string_view release, const std::vector<const PayloadFile*>& files,
                  std::string_view locations, const Criteria& criteria, const ContentReader& read);
