// The room that the pages give the payload's pictures and descriptions, in pixels. The pages lay
// themselves out by it, and the packager refuses or reports what doesn't fit: nothing on a page is
// moved or clipped for a picture of another size.
#pragma once

#include "store/payload_format.h"

// A picture of the wizard's own, by its name in the payload, and the greatest size it may have.
struct PictureRoom {
  const char* name;
  int width;
  int height;
};

inline constexpr PictureRoom kWelcomeRoom{kWelcomePicture, 144, 312};  // left of the welcome page
inline constexpr PictureRoom kBoardRoom{kBoardPicture, 340, 113};      // in a frame of one pixel
inline constexpr PictureRoom kLogoRoom{kLogoPicture, 100, 60};         // right of every header
inline constexpr PictureRoom kFinalRoom{kFinalPicture, 490, 242};      // the last page
inline constexpr PictureRoom kSpareRoom{kSparePicture, 500,
                                        360};  // no page; as large as the window

inline constexpr PictureRoom kPictureRooms[] = {kWelcomeRoom, kBoardRoom, kLogoRoom, kFinalRoom,
                                                kSpareRoom};

// The panel beside the list of libraries. A wider picture would paint over the list; a higher one
// leaves its description fewer than 60 pixels.
inline constexpr int kPreviewWidth = 244;
inline constexpr int kLibraryPictureHeight = 110;

// Picture and description together: a description has what its picture leaves, in lines of the size
// below that are wrapped at the panel's width less FLTK's margin of three pixels on each side.
inline constexpr int kPreviewHeight = 170;
inline constexpr int kDescriptionTextSize = 14;
inline constexpr int kLabelMargin = 3;

// Bytes of a description that the page shows; the rest is cut off.
inline constexpr int kDescriptionLength = 1023;
