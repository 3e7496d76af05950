// quirloduino-pack check: an Arduino folder after an install.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "packager/payload_listing.h"

struct CheckRequest {
  std::filesystem::path payload;      // a tree or an installer
  std::filesystem::path host;         // the Arduino folder
  std::vector<std::string> left_out;  // the libraries that its user didn't tick
  std::string release;                // empty: the one that the installer recognises
  ListingForm form = ListingForm::kText;
};

// Prints what isn't as the install left it, and returns whether all is. Reads only. Throws Refusal
// when the payload is refused, the folder isn't one of its releases, or it has no such library.
bool CheckHost(const CheckRequest& request);
