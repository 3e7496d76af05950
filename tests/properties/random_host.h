// Host folders of random content for a payload: an Arduino of its release, with files and folders
// already where the install will write, or in its way.
#pragma once

#include <string>
#include <vector>

#include "tests/properties/install_model.h"
#include "tests/properties/random_payload.h"
#include "tests/properties/random_source.h"

// What may be in the place of a host's archives: an archive, or now and then none, since criteria
// prove the archives, but a folder that was proven may change before the install gets there.
enum class HostJars { kSound, kAny };

// Makes the host folder at `path`. `entries` are those of the payload so far.
void MakeRandomHost(Random* random, const std::string& path, const InstallRequest& request,
                    const std::vector<TestEntry>& entries, HostJars jars);

// A criteria file that a host with sound archives passes before an install, and after one as well:
// each member is listed as it is and as `entries` will make it. It names both archives.
std::string MakeCriteria(Random* random, const std::string& path, const InstallRequest& request,
                         const std::vector<TestEntry>& entries);

// The text of a preferences file, with lines of its three keys in every state.
std::string MakePreferences(Random* random);

// POSIX cksum of the bytes.
std::uint32_t Checksum(const std::string& bytes);
