// The picture settings of an image slide and the geometry that works on them:
// fitting to the stage, cropping, the four-corner orientation record, and
// the rotate/flip commands. Pure functions of the settings, no shared state,
// so the model can call them on edits and the exporter on worker threads.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace quillet {

// How a slide's picture is stored in the movie; the value is written as image_type.
enum class ImageType : int {
    Jpeg = 0,             // "jpeg"
    Rgb8 = 1,             // "rgb_8"
    Rgb15 = 2,            // "rgb_15"
    Rgb24 = 3,            // "rgb_24"
    JpegExternal = 4,     // "jpeg_external"
    JpegImportData = 5,   // "jpeg_import_data"
    JpegTransparent = 6,  // "jpeg_transparent"
    Rgb8Transparent = 7,  // "rgb_8_transparent"
    Rgb24Transparent = 8  // "rgb_24_transparent"
};
const char* imageTypeKeyword(ImageType type);                 // "" for an out-of-range value
bool imageTypeFromKeyword(const std::string& keyword, ImageType& out);  // exact comparison

enum class HAlign : int { Left = 0, Center = 1, Right = 2 };  // "left", "center", "right"
enum class VAlign : int { Top = 0, Center = 1, Bottom = 2 };  // "top", "center", "bottom"
const char* hAlignKeyword(HAlign a);
const char* vAlignKeyword(VAlign a);
bool hAlignFromKeyword(const std::string& keyword, HAlign& out);
bool vAlignFromKeyword(const std::string& keyword, VAlign& out);

struct CropRect {
    int left = 0, top = 0, right = 0, bottom = 0;
    int width() const { return right - left; }
    int height() const { return bottom - top; }
    bool operator==(const CropRect&) const = default;
};

// The image fields of a slide. Defaults here are the plain ones; a new slide
// takes quality, alignment and fit flags from the application settings.
struct SlideImage {
    std::string src;                        // the picture file
    int sourceWidth = 0, sourceHeight = 0;  // natural size of the picture, before rotation
    int bitmapWidth = 0, bitmapHeight = 0;  // size of the prepared bitmap, after rotation
    int quality = 80;                       // JPEG quality
    int width = 0, height = 0;              // displayed size on the stage, pixels
    int x = 0, y = 0;                       // top-left on the stage, pixels
    ImageType imageType = ImageType::Jpeg;
    HAlign hAlign = HAlign::Center;
    VAlign vAlign = VAlign::Center;
    bool autoAlign = true;
    bool scaleToFit = true;
    bool keepAspectRatio = true;
    bool crop = false;                      // the crop rectangle is in force
    CropRect cropRect;                      // in displayed (rotated) picture coordinates
    bool flipVertical = false;
    bool flipHorizontal = false;
    int rotation = 0;                       // degrees, kept in 0..359
    bool adjustBitmapShift = false;         // shrink the bitmap fill by 0.999
    std::array<uint8_t, 4> cornerOrder{1, 2, 3, 4};  // top-left, top-right, bottom-right, bottom-left

    bool operator==(const SlideImage&) const = default;
};

// The natural size with width and height swapped for a quarter turn.
int displayedWidth(const SlideImage& image);
int displayedHeight(const SlideImage& image);

// Recomputes width/height from the stage (when scaleToFit) and x/y from the
// alignment (when autoAlign), adding the stage origin offset.
void FitSlideImage(SlideImage& image, int stageWidth, int stageHeight, int originX = 0, int originY = 0);
// Normalises and clamps the rectangle, stores it and refits. Returns true when
// the rectangle had to be corrected.
bool SetCropRect(SlideImage& image, CropRect rect, int stageWidth, int stageHeight, int originX = 0,
                 int originY = 0);
// Folds the corner record back into rotation and flip values.
void NormaliseOrientation(SlideImage& image);
// The crop rectangle in the picture's own (unrotated, unflipped) coordinates.
CropRect CropToSourceRect(const SlideImage& image);
// The rotate command: rotation normalised to 0..359; a quarter turn swaps the
// displayed and bitmap sizes and turns the crop rectangle; the corner record turns.
void RotateSlideImage(SlideImage& image, int delta);
// The flip commands: a change of value swaps corner record entries.
void SetFlipVertical(SlideImage& image, bool on);
void SetFlipHorizontal(SlideImage& image, bool on);
// 16.16 scale of the bitmap fill for one axis (see the image types).
int32_t BitmapFillScale(const SlideImage& image, bool horizontal);
// 16.16 scale of the "jpeg_external" placeholder clip: displayed size over natural size.
int32_t ExternalJpegScale(const SlideImage& image, bool horizontal);

// Range checks of the picture panel. Each returns an empty string when the
// value is acceptable, else the message to show.
std::string CheckQuality(int quality);             // 1..100
std::string CheckDisplaySize(int widthOrHeight);   // 0..10000
std::string CheckPosition(int xOrY);               // -1073741823..1073741823

}  // namespace quillet
