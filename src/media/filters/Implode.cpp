// "Implode": pulls the picture in towards its centre (a negative amount
// pushes it out). Inside the largest centred ellipse each pixel is taken from
// further out, by a factor that is strongest near the centre and fades to
// nothing at the rim. The amount is in hundredths.
#include <cmath>

#include "media/filters/FilterBase.h"
#include "media/filters/Neighbourhood.h"

namespace quillet::filters {
namespace {

class Implode : public Cloneable<Implode, ParamFilter> {
public:
    Implode() : Cloneable("Implode", {{FilterOption::Kind::Integer, "Amount:", "amount", 20, -100, 100}}) {}

    bool Apply(Bitmap& bitmap) const override {
        if (!isFilterable(bitmap)) return false;
        const double amount = intValue(0) / 100.0;
        if (amount == 0.0) return true;
        const int w = static_cast<int>(bitmap.width());
        const int h = static_cast<int>(bitmap.height());
        Bitmap source;
        source.CopyFrom(bitmap);
        const double cx = (w - 1) / 2.0, cy = (h - 1) / 2.0;
        // Measure in a circle: stretch the shorter axis.
        const double radius = std::max(w, h) / 2.0;
        const double sx = w >= h ? 1.0 : static_cast<double>(h) / w;
        const double sy = h >= w ? 1.0 : static_cast<double>(w) / h;
        for (int y = 0; y < h; ++y) {
            uint8_t* out = bitmap.row(static_cast<uint32_t>(y));
            for (int x = 0; x < w; ++x) {
                const double dx = (x - cx) * sx, dy = (y - cy) * sy;
                const double d = std::sqrt(dx * dx + dy * dy);
                if (d >= radius || d == 0.0) continue;
                const double factor = std::pow(std::sin(M_PI * d / radius / 2.0), -amount);
                SampleBilinear(source, cx + dx * factor / sx, cy + dy * factor / sy, out + x * 3);
            }
        }
        return true;
    }
};

}  // namespace
std::unique_ptr<ImageFilter> MakeImplode() { return std::make_unique<Implode>(); }
}  // namespace quillet::filters
