// The pictures that the wizard shows: its own and those of libraries. Each is decoded with the
// installer's own decoder, which shows an empty place for what it can't decode and tells nobody.
#pragma once

#include <vector>

#include "packager/payload_rules.h"

// Throws Refusal at the first picture that can't be decoded, has a transparency chunk, or is larger
// than the room the wizard has for it. A picture may be missing: its place stays blank.
void CheckPictures(const std::vector<PayloadFile>& files, const ContentReader& read);

// The height of a picture in pixels, 0 when it can't be decoded.
int PictureHeight(const std::string& content);
