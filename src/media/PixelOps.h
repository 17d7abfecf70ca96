// Geometric pixel operations on packed rows of any channel count, shared by
// Bitmap and by the alpha plane (which is turned as one 8-bit channel).
#pragma once

#include <cstdint>
#include <memory>

namespace quillet::pixelops {

void FlipVertical(uint8_t* pixels, uint32_t width, uint32_t height, uint32_t channels);
void FlipHorizontal(uint8_t* pixels, uint32_t width, uint32_t height, uint32_t channels);
// Turns the pixels by 90/-270 (clockwise), 270/-90 (counter-clockwise) or
// 180/-180 into a new buffer; width and height are updated for quarter turns.
// Any other angle returns a copy.
std::unique_ptr<uint8_t[]> Rotate(const uint8_t* pixels, uint32_t& width, uint32_t& height,
                                  uint32_t channels, int degrees);

}  // namespace quillet::pixelops
