// JPEG compression of slide pictures: baseline JPEG (SOI to EOI) from rows of
// R,G,B (or R,G,B,X, or grey) with libjpeg, into memory.
#pragma once

#include <cstdint>
#include <vector>

namespace quillet {

// Quality is clamped to 0..100 (not refused). Empty on failure (no pixels,
// a size beyond JPEG's 65500, memory).
std::vector<uint8_t> EncodeJpeg(const uint8_t* pixels, uint32_t width, uint32_t height, uint32_t channels,
                                int quality);

}  // namespace quillet
