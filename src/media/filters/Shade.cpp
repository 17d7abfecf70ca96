// "Shade": the picture lit as a relief. Brightness is read as height; each
// pixel's surface normal is taken from the slope around it and lit by a
// distant light at the given azimuth and elevation (degrees). Without the
// grey flag the light falls on the picture's own colours, otherwise the
// result is the bare grey relief. No panel, nothing saved.
#include <algorithm>
#include <cmath>

#include "media/filters/FilterBase.h"
#include "media/filters/Neighbourhood.h"

namespace quillet::filters {
namespace {

class Shade : public Cloneable<Shade, ImageFilter> {
public:
    Shade() : Cloneable("Shade") {}

    bool Apply(Bitmap& bitmap) const override {
        if (!isFilterable(bitmap)) return false;
        const int w = static_cast<int>(bitmap.width());
        const int h = static_cast<int>(bitmap.height());
        const std::vector<uint8_t> lum = LuminancePlane(bitmap);
        auto L = [&](int x, int y) {
            return static_cast<double>(lum[static_cast<size_t>(clampIndex(y, h - 1)) * w + clampIndex(x, w - 1)]);
        };
        const double az = azimuth_ * M_PI / 180.0, el = elevation_ * M_PI / 180.0;
        const double lx = std::cos(az) * std::cos(el), ly = std::sin(az) * std::cos(el), lz = std::sin(el);
        // The slopes are sums over three pixels on either side; the flat
        // normal's height matches that scale.
        constexpr double kNz = 2.0 * 255.0;
        for (int y = 0; y < h; ++y) {
            uint8_t* out = bitmap.row(static_cast<uint32_t>(y));
            for (int x = 0; x < w; ++x) {
                const double nx = L(x - 1, y - 1) + L(x - 1, y) + L(x - 1, y + 1) - L(x + 1, y - 1) - L(x + 1, y) -
                                  L(x + 1, y + 1);
                const double ny = L(x - 1, y + 1) + L(x, y + 1) + L(x + 1, y + 1) - L(x - 1, y - 1) - L(x, y - 1) -
                                  L(x + 1, y - 1);
                const double dot = nx * lx + ny * ly + kNz * lz;
                const double shade = std::max(0.0, dot / std::sqrt(nx * nx + ny * ny + kNz * kNz));
                uint8_t* p = out + x * 3;
                if (gray_) {
                    p[0] = p[1] = p[2] = clampByte(static_cast<float>(255.0 * shade));
                } else {
                    for (int c = 0; c < 3; ++c) p[c] = clampByte(static_cast<float>(p[c] * shade));
                }
            }
        }
        return true;
    }

private:
    bool gray_ = false;
    double azimuth_ = 10.0;
    double elevation_ = 20.0;
};

}  // namespace
std::unique_ptr<ImageFilter> MakeShade() { return std::make_unique<Shade>(); }
}  // namespace quillet::filters
