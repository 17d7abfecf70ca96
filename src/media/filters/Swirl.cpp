// "Swirl": turns the picture about its centre, by the full angle at the
// centre and less and less towards the rim of the largest centred ellipse.
#include <cmath>

#include "media/filters/FilterBase.h"
#include "media/filters/Neighbourhood.h"

namespace quillet::filters {
namespace {

constinit const OptionSpec kOptions[] = {
    FilterParam(0, OptionKind::Integer, "Angle:", "angle", 180, -360, 360),
};

class Swirl : public Cloneable<Swirl, ImageFilter> {
public:
    Swirl() : Cloneable("Swirl", kOptions) {}

    bool Apply(Bitmap& bitmap) const override {
        if (!isFilterable(bitmap)) return false;
        const double angle = intValue(0) * M_PI / 180.0;
        if (angle == 0.0) return true;
        WarpAboutCentre(bitmap, [angle](double& dx, double& dy, double d, double radius) {
            const double f = 1.0 - d / radius;
            const double t = angle * f * f;
            const double s = std::sin(t), c = std::cos(t);
            const double rx = c * dx - s * dy, ry = s * dx + c * dy;
            dx = rx;
            dy = ry;
            return true;
        });
        return true;
    }
};

}  // namespace
std::unique_ptr<ImageFilter> MakeSwirl() { return std::make_unique<Swirl>(); }
}  // namespace quillet::filters
