// Opens one picture file (BMP, GIF, JPEG, PICT, PNG, PSD, TIFF, Targa) and
// renders a rectangle of it at any size. Scaling is a nearest-neighbour copy,
// the way a plain source-copy blit scales. JPEG files are decoded directly
// with libjpeg, row by row; every other format through ImageMagick, once,
// and kept for further renders.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "media/Bitmap.h"
#include "media/SlideImage.h"

namespace quillet {

class ImageImporter {
public:
    ImageImporter();
    ~ImageImporter();
    ImageImporter(const ImageImporter&) = delete;
    ImageImporter& operator=(const ImageImporter&) = delete;

    // Reads the file and measures the picture. False when the file cannot
    // be read or is not a picture; error() then says which.
    bool Open(const std::string& path);
    // The same from bytes already in memory; `nameForType` (a file name or
    // extension) hints formats without a signature.
    bool OpenBytes(std::vector<uint8_t> bytes, const std::string& nameForType = {});

    enum class Failure { None, NotFound, Unreadable, NotAnImage };
    Failure failure() const { return failure_; }
    const std::string& error() const { return error_; }

    bool GetNaturalSize(int& width, int& height) const;
    // The file's own bytes (the "jpeg_import_data" storage and Exif reading).
    const std::vector<uint8_t>& fileBytes() const { return bytes_; }
    bool isJpeg() const { return jpeg_; }
    // Estimated working memory of decoding the picture (beyond fileBytes()).
    size_t DecodeBytes() const { return decodeBytes_; }
    // Whether the picture carries an alpha channel (known after Open for
    // JPEG, after the first render otherwise).
    bool hasAlpha() const;

    // Renders `source` (in picture pixels; the whole picture when null)
    // scaled to destWidth x destHeight into `out` as R,G,B (24) or R,G,B,A
    // (32, opaque pixels get 255). Source pixels outside the picture repeat
    // its edge. False when decoding fails or a size is zero.
    bool Render(Bitmap& out, uint32_t destWidth, uint32_t destHeight, const CropRect* source = nullptr,
                uint16_t bitsPerPixel = 24);
    // Bytes a render of that size needs: (bitsPerPixel / 8) x width x height.
    static size_t RenderSize(uint32_t destWidth, uint32_t destHeight, uint16_t bitsPerPixel) {
        return static_cast<size_t>(bitsPerPixel >> 3) * destWidth * destHeight;
    }
    // The alpha channel of `source` at its own size, one byte a pixel (a
    // 1:1 copy, as the alpha plane is later resampled). All 255 for
    // pictures without alpha.
    bool RenderAlpha(Bitmap& out, const CropRect* source = nullptr);

private:
    bool decodeAll();
    bool renderJpeg(Bitmap& out, uint32_t dw, uint32_t dh, const CropRect& src, uint16_t bpp);

    std::vector<uint8_t> bytes_;
    std::string extension_;
    bool jpeg_ = false;
    uint32_t width_ = 0, height_ = 0;
    size_t decodeBytes_ = 0;
    std::unique_ptr<Bitmap> decoded_;  // every format but JPEG, at natural size
    Failure failure_ = Failure::None;
    std::string error_;
};

// One entry of the picture file filter of the open dialogs.
struct FileFilterEntry {
    std::string description;
    std::string patterns;  // ";"-separated
};
// "All Images", the eight formats, "All Files (*.*)", texts as shown.
const std::vector<FileFilterEntry>& ImageFileFilter();
// True when the path's extension is one of the eight pattern extensions
// (any case) -- the pictures a folder scan picks up.
bool hasImageExtension(const std::string& path);

}  // namespace quillet
