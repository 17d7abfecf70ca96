// A bitmap that holds JPEG data after Compress: the encoder behind every
// JPEG image type of a slide and the movie's JPEG bitmap characters.
#pragma once

#include <cstdint>
#include <vector>

#include "media/Bitmap.h"

namespace quillet {

class JpegBitmap : public Bitmap {
public:
    JpegBitmap() = default;

    // Clamps to 0..100 and remembers it as the process's last-used quality.
    void SetQuality(int quality);
    uint32_t quality() const { return quality_; }

    // Compresses top-down rows of R,G,B (24 bits) or R,G,B,A (32 bits; the
    // alpha is ignored) into a baseline JPEG (SOI to EOI) held in pixels().
    // False only when memory runs out or the input is unusable.
    bool Compress(uint32_t width, uint32_t height, uint16_t bitsPerPixel, const uint8_t* rgbData);
    // Compresses this object's own 24/32-bit pixels, replacing them.
    bool CompressSelf();

    uint32_t jpegSize() const { return jpegSize_; }
    const uint8_t* jpegData() const { return pixels(); }
    std::vector<uint8_t> jpegBytes() const { return {pixels(), pixels() + jpegSize_}; }

    void Free() override;

private:
    uint32_t jpegSize_ = 0;
    uint32_t quality_ = 80;
};

// The quality last passed to any JpegBitmap::SetQuality (80 before the first).
int LastJpegQuality();

// Compresses straight into a byte vector (what the encoders of the slide
// picture use). Empty on failure.
std::vector<uint8_t> EncodeJpeg(const uint8_t* pixels, uint32_t width, uint32_t height, uint32_t channels,
                                int quality);

}  // namespace quillet
