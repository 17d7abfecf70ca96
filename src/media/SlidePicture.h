// Export-time preparation of a slide's picture: render the shown part at the
// displayed size, run the filters, flip and turn it, and encode it as plain
// pixels for the slide's image type. A pure function of the picture settings
// and the filter list, so slides can be prepared on worker threads while the
// movie is written in order; the movie turns the result into its bitmap
// character.
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

struct PreparedPicture {
    bool ok = false;             // false: the slide gets no picture (see error)
    std::string error;           // why, naming the file
    bool cancelled = false;      // the progress reporter asked to stop during filtering
    ImageType type = ImageType::Jpeg;
    // The displayed size: the prepared pixels' size, and the size of the
    // slide's shape. ("jpeg_import_data" keeps the file's own size in its
    // bytes; "jpeg_external" has no pixels.)
    uint32_t width = 0, height = 0;
    int naturalWidth = 0, naturalHeight = 0;   // the picture file's own size
    int quality = 80;                          // the slide's JPEG quality

    // "jpeg": the JPEG stream (SOI..EOI) at the slide's quality.
    // "jpeg_import_data": the file's bytes exactly as they are.
    std::vector<uint8_t> jpeg;
    // Every other stored type: the final pixels, R,G,B rows of width x height
    // (also kept for "jpeg" when asked).
    Bitmap pixels;
    // The transparent types: the alpha plane, width x height bytes.
    Bitmap alpha;
};

struct PrepareOptions {
    ProgressSink* progress = nullptr;  // "Filtering image...", "Writing image...", cancellation
    bool keepPixels = false;           // keep PreparedPicture::pixels for "jpeg" too (previews)
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

// The alpha plane of the slide's picture at the displayed size (width x
// height, one byte a pixel, row-major): the shown part of the picture's own
// alpha at 1:1, flipped and turned like the colour, then resampled with the
// triangle filter. Filters do not touch it. False when the picture cannot be
// opened. `image` is taken as it is (normalise its orientation first).
bool BuildAlphaPlane(const SlideImage& image, Bitmap& plane);
// The same from an importer that already holds the picture (one decode).
bool BuildAlphaPlane(ImageImporter& importer, const SlideImage& image, Bitmap& plane);

}  // namespace quillet
