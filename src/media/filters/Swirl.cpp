// "Swirl": turns the picture about its centre, by the full angle at the
// centre and less and less towards the rim of the largest centred ellipse.
#include <cmath>

#include "media/filters/FilterBase.h"
#include "media/filters/Neighbourhood.h"

namespace quillet::filters {
namespace {

class Swirl : public Cloneable<Swirl, ParamFilter> {
public:
    Swirl() : Cloneable("Swirl", {{FilterOption::Kind::Integer, "Angle:", "angle", 180, -360, 360}}) {}

    bool Apply(Bitmap& bitmap) const override {
        if (!isFilterable(bitmap)) return false;
        const double angle = intValue(0) * M_PI / 180.0;
        if (angle == 0.0) return true;
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
                const double dx = (x - cx) * sx, dy = (y - cy) * sy;
                const double d = std::sqrt(dx * dx + dy * dy);
                if (d >= radius) continue;
                const double f = 1.0 - d / radius;
                const double t = angle * f * f;
                const double s = std::sin(t), c = std::cos(t);
                SampleBilinear(source, cx + (c * dx - s * dy) / sx, cy + (s * dx + c * dy) / sy, out + x * 3);
            }
        }
        return true;
    }
};

}  // namespace
std::unique_ptr<ImageFilter> MakeSwirl() { return std::make_unique<Swirl>(); }
}  // namespace quillet::filters
