// Export-time preparation of a slide's picture: render the shown part at the
// displayed size, run the filters, flip and turn it, and encode it as the
// slide's image type asks. A pure function of the picture settings and the
// filter list, so slides can be prepared on worker threads while the movie is
// written in order; the result becomes a bitmap character with MakeBitmapTag.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "media/Bitmap.h"
#include "media/ImageFilter.h"
#include "media/SlideImage.h"

namespace quillet {

class ImageImporter;
class ProgressSink;
class SwfTag;
class SwfLosslessBase;

struct PreparedPicture {
    PreparedPicture();
    ~PreparedPicture();
    PreparedPicture(PreparedPicture&&) noexcept;
    PreparedPicture& operator=(PreparedPicture&&) noexcept;

    bool ok = false;             // false: the slide gets no picture (see error)
    std::string error;           // why, naming the file
    bool cancelled = false;      // the progress reporter asked to stop during filtering
    ImageType type = ImageType::Jpeg;
    // The displayed size: the prepared bitmap's size, and the size of the
    // slide's shape. (For "jpeg_import_data" the stored JPEG keeps the file's
    // own size and the fill scale stretches it to this.)
    uint32_t width = 0, height = 0;
    int naturalWidth = 0, naturalHeight = 0;   // the picture file's own size

    // Jpeg, JpegTransparent: the JPEG stream (SOI..EOI). JpegImportData: the
    // file's bytes exactly as they are.
    std::vector<uint8_t> jpeg;
    // JpegTransparent: the alpha plane (width x height bytes), zlib-compressed.
    std::vector<uint8_t> alphaZlib;
    // The lossless types: the finished character (packed, compressed; id 0
    // until MakeBitmapTag gives it one).
    std::unique_ptr<SwfLosslessBase> lossless;
    // JpegExternal: no bitmap; the placeholder clip's 16.16 scales.
    int32_t externalScaleX = 65536, externalScaleY = 65536;
    // The 16.16 scale of the bitmap fill of the slide's shape (BitmapFillScale
    // worked out with the picture's measured natural size, which a project
    // read back from a file does not carry).
    int32_t fillScaleX = 20 * 65536, fillScaleY = 20 * 65536;
    // The final 24-bit pixels, when asked for (previews, the cached bitmap).
    std::unique_ptr<Bitmap> pixels;

    // True when the result carries a bitmap character (every type but
    // "jpeg_external", when ok).
    bool hasBitmap() const { return ok && type != ImageType::JpegExternal; }
};

struct PrepareOptions {
    ProgressSink* progress = nullptr;  // "Filtering image...", "Writing image...", cancellation
    bool keepPixels = false;           // fill PreparedPicture::pixels
};

PreparedPicture PrepareSlideImage(const SlideImage& image, const std::vector<std::unique_ptr<ImageFilter>>& filters,
                                  const PrepareOptions& options = {});
// The same with the picture already opened (image.src) in `importer`.
PreparedPicture PrepareSlideImage(ImageImporter& importer, const SlideImage& image,
                                  const std::vector<std::unique_ptr<ImageFilter>>& filters,
                                  const PrepareOptions& options = {});
// The most memory preparing the opened picture for the slide is expected to
// take at once: the file, the decoder's working memory, the slide-sized
// bitmaps of filtering and turning, the alpha work and the encoded result.
size_t EstimatePrepareBytes(const ImageImporter& importer, const SlideImage& image);

// The slide's bitmap character with the given id: DefineBitsJPEG2 (jpeg,
// jpeg_import_data), DefineBitsJPEG3 (jpeg_transparent), DefineBitsLossless
// (rgb_8, rgb_15, rgb_24) or DefineBitsLossless2 (the transparent lossless
// types). Moves the data out of the picture. Null for "jpeg_external" and for
// a picture that failed.
std::unique_ptr<SwfTag> MakeBitmapTag(PreparedPicture& picture, uint16_t characterId);

// The placeholder clip of a "jpeg_external" slide: "jpegtarget_%d".
std::string ExternalJpegTargetName(int counter);

// The alpha plane of the slide's picture at the displayed size (width x
// height, one byte a pixel, row-major): the shown part of the picture's own
// alpha at 1:1, flipped and turned like the colour, then resampled with the
// triangle filter. Filters do not touch it. False when the picture cannot be
// opened. `image` is taken as it is (normalise its orientation first).
bool BuildAlphaPlane(const SlideImage& image, Bitmap& plane);
// The same from an importer that already holds the picture (one decode).
bool BuildAlphaPlane(ImageImporter& importer, const SlideImage& image, Bitmap& plane);

}  // namespace quillet
