#include "packager/picture_rules.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>

#include "packager/entry_names.h"
#include "packager/refusal.h"
#include "store/payload_format.h"
#include "wizard/picture_room.h"
#include "wizard/png_pixels.h"

namespace {

// A picture, or the reason why there is none.
struct Picture {
  PngPixels png;
  std::unique_ptr<unsigned char[]> pixels;
};

Picture Decode(const std::string& content) {
  const auto* const bytes = reinterpret_cast<const unsigned char*>(content.data());
  PngReadState state{bytes, bytes, bytes + content.size()};
  Picture picture;
  DecodePng(&state, &picture.png);
  picture.pixels.reset(picture.png.pixels);
  return picture;
}

std::string SizeText(int width, int height) {
  return std::to_string(width) + " by " + std::to_string(height);
}

void CheckPicture(const PayloadFile& file, int width, int height, const ContentReader& read) {
  const Picture picture = Decode(read(file));
  if (picture.pixels == nullptr) {
    throw Refusal(file.name, std::string("no picture that the installer can decode (") +
                                 picture.png.reason + ")");
  }
  if (picture.png.has_transparency_chunk) {
    throw Refusal(file.name,
                  "has a transparency chunk, which the wizard doesn't draw; use an alpha channel");
  }
  if (picture.png.width > width || picture.png.height > height) {
    throw Refusal(file.name, "is " + SizeText(picture.png.width, picture.png.height) +
                                 " pixels, but the wizard has room for " + SizeText(width, height));
  }
}

bool IsLibraryPicture(std::string_view name) {
  return name.starts_with(kLibrariesFolder) && name.ends_with(kPictureEnding) &&
         AfterFirstComponent(name).find('/') == std::string_view::npos;
}

}  // namespace

void CheckPictures(const std::vector<PayloadFile>& files, const ContentReader& read) {
  for (const PayloadFile& file : files) {
    const auto* const room =
        std::find_if(std::begin(kPictureRooms), std::end(kPictureRooms),
                     [&file](const PictureRoom& known) { return file.name == known.name; });
    if (room != std::end(kPictureRooms)) {
      CheckPicture(file, room->width, room->height, read);
    } else if (IsLibraryPicture(file.name)) {
      CheckPicture(file, kPreviewWidth, kLibraryPictureHeight, read);
    }
  }
}

int PictureHeight(const std::string& content) {
  const Picture picture = Decode(content);
  return picture.pixels == nullptr ? 0 : picture.png.height;
}
