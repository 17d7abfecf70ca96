// The Exif orientation of a picture and the fresh assignment of a picture to
// a slide, which can turn it upright from that orientation.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "media/SlideImage.h"

namespace quillet {

class Bitmap;

// The orientation tag (1..8) of the picture's Exif block; 0 when the file
// cannot be read, has no Exif data, its Exif directory lacks the Exif
// version tag, or the value is out of range.
int ReadExifOrientation(const std::string& path);
int ReadExifOrientation(const uint8_t* data, size_t size);

// Turns the slide by the orientation through its rotate and flip commands
// (so the corner record follows): 2 mirrors left-right, 3 a half turn, 4
// mirrors top-bottom, 6 a quarter turn clockwise, 8 counter-clockwise. 1, 5
// and 7 (and anything else) change nothing.
void ApplyExifOrientation(SlideImage& image, int orientation);

// The preview size of a picture: its natural size brought within 256x256,
// keeping proportions.
void PreviewSize(int naturalWidth, int naturalHeight, int& width, int& height);

struct AssignOptions {
    int stageWidth = 320, stageHeight = 240;
    int originX = 0, originY = 0;   // the show's stage origin offset for auto-align
    bool applyExif = false;         // the "read_exif_data" setting (or --exif)
    Bitmap* preview = nullptr;      // when given, receives the 32-bit preview
};

enum class AssignFailure { None, NotFound, NotAnImage };

// A picture newly chosen for a slide: opens and measures it, stores the path
// and natural size, resets the crop to the whole picture, takes the natural
// size as the placement size when the slide does not scale to fit, renders
// the preview when asked, refits, then applies the Exif orientation when
// asked. On failure the slide is unchanged and `error` (when given) names
// the problem.
AssignFailure AssignPicture(SlideImage& image, const std::string& path, const AssignOptions& options,
                            std::string* error = nullptr);

}  // namespace quillet
