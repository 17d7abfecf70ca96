#include "media/PixelOps.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace quillet::pixelops {

void FlipVertical(uint8_t* pixels, uint32_t width, uint32_t height, uint32_t channels) {
    const size_t rowBytes = static_cast<size_t>(width) * channels;
    std::vector<uint8_t> tmp(rowBytes);
    for (uint32_t top = 0, bottom = height ? height - 1 : 0; top < bottom; ++top, --bottom) {
        uint8_t* a = pixels + top * rowBytes;
        uint8_t* b = pixels + bottom * rowBytes;
        std::memcpy(tmp.data(), a, rowBytes);
        std::memcpy(a, b, rowBytes);
        std::memcpy(b, tmp.data(), rowBytes);
    }
}

void FlipHorizontal(uint8_t* pixels, uint32_t width, uint32_t height, uint32_t channels) {
    const size_t rowBytes = static_cast<size_t>(width) * channels;
    for (uint32_t y = 0; y < height; ++y) {
        uint8_t* row = pixels + y * rowBytes;
        if (width < 2) continue;
        for (uint32_t l = 0, r = width - 1; l < r; ++l, --r) {
            uint8_t* a = row + static_cast<size_t>(l) * channels;
            uint8_t* b = row + static_cast<size_t>(r) * channels;
            for (uint32_t k = 0; k < channels; ++k) std::swap(a[k], b[k]);
        }
    }
}

namespace {

template <uint32_t N>
void turnQuarter(const uint8_t* src, uint8_t* dst, uint32_t w, uint32_t h, uint32_t channels, bool clockwise) {
    // Destination is h wide and w tall. Walk the destination in tiles so both
    // sides stay in cache for large photos.
    const uint32_t n = N ? N : channels;
    const uint32_t newW = h, newH = w;
    constexpr uint32_t kTile = 64;
    for (uint32_t ty = 0; ty < newH; ty += kTile) {
        const uint32_t yEnd = std::min(newH, ty + kTile);
        for (uint32_t tx = 0; tx < newW; tx += kTile) {
            const uint32_t xEnd = std::min(newW, tx + kTile);
            for (uint32_t y = ty; y < yEnd; ++y) {
                uint8_t* out = dst + (static_cast<size_t>(y) * newW + tx) * n;
                for (uint32_t x = tx; x < xEnd; ++x) {
                    // Clockwise: source (sx, sy) lands at column newW-1-sy, row sx.
                    // Counter-clockwise: at column sy, row newH-1-sx.
                    uint32_t sx, sy;
                    if (clockwise) {
                        sx = y;
                        sy = newW - 1 - x;
                    } else {
                        sx = newH - 1 - y;
                        sy = x;
                    }
                    const uint8_t* in = src + (static_cast<size_t>(sy) * w + sx) * n;
                    for (uint32_t k = 0; k < n; ++k) out[k] = in[k];
                    out += n;
                }
            }
        }
    }
}

}  // namespace

std::unique_ptr<uint8_t[]> Rotate(const uint8_t* pixels, uint32_t& width, uint32_t& height,
                                  uint32_t channels, int degrees) {
    const size_t bytes = static_cast<size_t>(width) * height * channels;
    auto out = std::make_unique_for_overwrite<uint8_t[]>(bytes ? bytes : 1);
    const bool cw = degrees == 90 || degrees == -270;
    const bool ccw = degrees == 270 || degrees == -90;
    if (cw || ccw) {
        switch (channels) {
            case 1: turnQuarter<1>(pixels, out.get(), width, height, channels, cw); break;
            case 3: turnQuarter<3>(pixels, out.get(), width, height, channels, cw); break;
            case 4: turnQuarter<4>(pixels, out.get(), width, height, channels, cw); break;
            default: turnQuarter<0>(pixels, out.get(), width, height, channels, cw); break;
        }
        std::swap(width, height);
    } else if (degrees == 180 || degrees == -180) {
        // A half turn reverses the pixel sequence.
        const size_t count = static_cast<size_t>(width) * height;
        for (size_t i = 0; i < count; ++i)
            std::memcpy(out.get() + (count - 1 - i) * channels, pixels + i * channels, channels);
    } else {
        std::memcpy(out.get(), pixels, bytes);
    }
    return out;
}

}  // namespace quillet::pixelops
