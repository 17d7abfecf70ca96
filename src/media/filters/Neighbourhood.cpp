#include "media/filters/Neighbourhood.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace quillet::filters {

std::vector<float> GaussianWeights(double sigma, int radius) {
    if (radius < 0) radius = 0;
    if (sigma <= 0.0) sigma = 1e-3;
    std::vector<float> w(2 * radius + 1);
    double sum = 0;
    for (int i = -radius; i <= radius; ++i) {
        double v = std::exp(-(i * i) / (2.0 * sigma * sigma));
        w[i + radius] = static_cast<float>(v);
        sum += v;
    }
    for (float& v : w) v = static_cast<float>(v / sum);
    return w;
}

void ConvolveSeparable(Bitmap& bitmap, const std::vector<float>& horizontal, const std::vector<float>& vertical) {
    const int w = static_cast<int>(bitmap.width());
    const int h = static_cast<int>(bitmap.height());
    if (w == 0 || h == 0) return;
    const int hr = static_cast<int>(horizontal.size() / 2);
    const int vr = static_cast<int>(vertical.size() / 2);
    // Horizontal pass into a float plane, padding each row so the inner loop
    // needs no bounds checks.
    std::vector<float> mid(static_cast<size_t>(w) * h * 3);
    std::vector<float> padded(static_cast<size_t>(w + 2 * hr) * 3);
    for (int y = 0; y < h; ++y) {
        const uint8_t* row = bitmap.row(static_cast<uint32_t>(y));
        for (int x = -hr; x < w + hr; ++x) {
            const uint8_t* p = row + clampIndex(x, w - 1) * 3;
            float* q = &padded[static_cast<size_t>(x + hr) * 3];
            q[0] = p[0];
            q[1] = p[1];
            q[2] = p[2];
        }
        float* out = &mid[static_cast<size_t>(y) * w * 3];
        for (int x = 0; x < w; ++x) {
            float r = 0, g = 0, b = 0;
            const float* q = &padded[static_cast<size_t>(x) * 3];
            for (float k : horizontal) {
                r += k * q[0];
                g += k * q[1];
                b += k * q[2];
                q += 3;
            }
            out[x * 3] = r;
            out[x * 3 + 1] = g;
            out[x * 3 + 2] = b;
        }
    }
    // Vertical pass, a whole row at a time.
    const size_t rowFloats = static_cast<size_t>(w) * 3;
    std::vector<float> acc(rowFloats);
    for (int y = 0; y < h; ++y) {
        std::fill(acc.begin(), acc.end(), 0.0f);
        for (int k = -vr; k <= vr; ++k) {
            const float weight = vertical[k + vr];
            const float* in = &mid[static_cast<size_t>(clampIndex(y + k, h - 1)) * rowFloats];
            for (size_t i = 0; i < rowFloats; ++i) acc[i] += weight * in[i];
        }
        uint8_t* out = bitmap.row(static_cast<uint32_t>(y));
        for (size_t i = 0; i < rowFloats; ++i) out[i] = clampByte(acc[i]);
    }
}

void Convolve(Bitmap& bitmap, const std::vector<float>& kernel, int size, float scale, float bias) {
    const int w = static_cast<int>(bitmap.width());
    const int h = static_cast<int>(bitmap.height());
    if (w == 0 || h == 0) return;
    Bitmap source;
    source.CopyFrom(bitmap);
    const int r = size / 2;
    for (int y = 0; y < h; ++y) {
        uint8_t* out = bitmap.row(static_cast<uint32_t>(y));
        for (int x = 0; x < w; ++x) {
            float acc[3] = {0, 0, 0};
            const float* k = kernel.data();
            for (int dy = -r; dy <= r; ++dy) {
                const uint8_t* row = source.row(static_cast<uint32_t>(clampIndex(y + dy, h - 1)));
                for (int dx = -r; dx <= r; ++dx, ++k) {
                    const uint8_t* p = row + clampIndex(x + dx, w - 1) * 3;
                    acc[0] += *k * p[0];
                    acc[1] += *k * p[1];
                    acc[2] += *k * p[2];
                }
            }
            for (int c = 0; c < 3; ++c) out[x * 3 + c] = clampByte(acc[c] * scale + bias);
        }
    }
}

void SampleBilinear(const Bitmap& source, double x, double y, uint8_t* out) {
    const int w = static_cast<int>(source.width());
    const int h = static_cast<int>(source.height());
    const double fx = std::floor(x), fy = std::floor(y);
    const float ax = static_cast<float>(x - fx), ay = static_cast<float>(y - fy);
    const int x0 = clampIndex(static_cast<int>(fx), w - 1), x1 = clampIndex(static_cast<int>(fx) + 1, w - 1);
    const int y0 = clampIndex(static_cast<int>(fy), h - 1), y1 = clampIndex(static_cast<int>(fy) + 1, h - 1);
    const uint8_t* p00 = source.row(static_cast<uint32_t>(y0)) + x0 * 3;
    const uint8_t* p10 = source.row(static_cast<uint32_t>(y0)) + x1 * 3;
    const uint8_t* p01 = source.row(static_cast<uint32_t>(y1)) + x0 * 3;
    const uint8_t* p11 = source.row(static_cast<uint32_t>(y1)) + x1 * 3;
    for (int c = 0; c < 3; ++c) {
        const float top = p00[c] + (p10[c] - p00[c]) * ax;
        const float bottom = p01[c] + (p11[c] - p01[c]) * ax;
        out[c] = clampByte(top + (bottom - top) * ay);
    }
}

std::vector<uint8_t> LuminancePlane(const Bitmap& bitmap) {
    const size_t count = static_cast<size_t>(bitmap.width()) * bitmap.height();
    std::vector<uint8_t> plane(count);
    const uint8_t* p = bitmap.pixels();
    for (size_t i = 0; i < count; ++i, p += 3)
        plane[i] = static_cast<uint8_t>((299 * p[0] + 587 * p[1] + 114 * p[2] + 500) / 1000);
    return plane;
}

void WarpAboutCentre(Bitmap& bitmap, const WarpMap& map) {
    const int w = static_cast<int>(bitmap.width());
    const int h = static_cast<int>(bitmap.height());
    Bitmap source;
    source.CopyFrom(bitmap);
    const double cx = (w - 1) / 2.0, cy = (h - 1) / 2.0;
    const double radius = std::max(w, h) / 2.0;
    const double sx = w >= h ? 1.0 : static_cast<double>(h) / w;
    const double sy = h >= w ? 1.0 : static_cast<double>(w) / h;
    for (int y = 0; y < h; ++y) {
        uint8_t* out = bitmap.row(static_cast<uint32_t>(y));
        for (int x = 0; x < w; ++x) {
            double dx = (x - cx) * sx, dy = (y - cy) * sy;
            const double d = std::sqrt(dx * dx + dy * dy);
            if (d >= radius || !map(dx, dy, d, radius)) continue;
            SampleBilinear(source, cx + dx / sx, cy + dy / sy, out + x * 3);
        }
    }
}

}  // namespace quillet::filters
