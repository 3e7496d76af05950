// Ready-made machines, for looking at the driver page of a whole wizard: each is the simplest one
// on which the page ends in a certain state.
#pragma once

#include <string>

// Sets the machine up anew. `folder` (with its ending separator) is the temporary one. The names:
//   windows-10     the system's own driver serves the boards
//   installed      the payload's driver is installed; nothing to update
//   one-device     the same, with one device that is plugged in
//   many-devices   the same, with one that is plugged in and three that are absent
//   install-due    the driver is missing, and installs; a staged file stays
//   refused        the driver is missing, and the system refuses it
//   no-rights      the driver is missing, for a user without the rights to install it
//   installed-no-rights
// `driver_inf` is the content of the payload's INF file. False for any other name.
bool SetUpScenario(const std::string& name, const std::string& folder,
                   const std::string& driver_inf);
