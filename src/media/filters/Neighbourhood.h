// Helpers of the filters that look at a pixel's neighbours: convolution with
// repeated edges, Gaussian weights, bilinear sampling and a luminance plane.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "media/Bitmap.h"

namespace quillet::filters {

inline int clampIndex(int v, int last) { return v < 0 ? 0 : (v > last ? last : v); }
inline uint8_t clampByte(float v) { return v <= 0.0f ? 0 : (v >= 255.0f ? 255 : static_cast<uint8_t>(v + 0.5f)); }

// Normalised Gaussian weights for offsets -radius..radius.
std::vector<float> GaussianWeights(double sigma, int radius);

// Convolves every channel with a horizontal then a vertical kernel (odd
// lengths, centred); pixels beyond the edges repeat the edge.
void ConvolveSeparable(Bitmap& bitmap, const std::vector<float>& horizontal, const std::vector<float>& vertical);

// Convolves every channel with a square kernel (size odd, row-major), then
// scales and adds a bias: out = sum * scale + bias, clamped.
void Convolve(Bitmap& bitmap, const std::vector<float>& kernel, int size, float scale, float bias);

// Bilinear sample of a 24-bit bitmap at (x, y) in pixel-centre coordinates,
// edges repeated.
void SampleBilinear(const Bitmap& source, double x, double y, uint8_t* out);

// 0.299 R + 0.587 G + 0.114 B per pixel.
std::vector<uint8_t> LuminancePlane(const Bitmap& bitmap);

// Warps the picture inside the largest centred ellipse (measured as a circle
// by stretching the shorter axis). For each pixel inside, `map` gets its
// offset (dx, dy) from the centre, its distance d and the radius, and
// replaces the offset with the one to sample from; returning false leaves
// the pixel as it is. Pixels outside the ellipse are untouched.
using WarpMap = std::function<bool(double& dx, double& dy, double d, double radius)>;
void WarpAboutCentre(Bitmap& bitmap, const WarpMap& map);

}  // namespace quillet::filters
