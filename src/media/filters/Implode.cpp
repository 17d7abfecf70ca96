// "Implode": pulls the picture in towards its centre (a negative amount
// pushes it out). Inside the largest centred ellipse each pixel is taken from
// further out, by a factor that is strongest near the centre and fades to
// nothing at the rim. The amount is in hundredths.
#include <cmath>

#include "media/filters/FilterBase.h"
#include "media/filters/Neighbourhood.h"

namespace quillet::filters {
namespace {

constinit const OptionSpec kOptions[] = {
    FilterParam(0, OptionKind::Integer, "Amount:", "amount", 20, -100, 100),
};

class Implode : public Cloneable<Implode, ImageFilter> {
public:
    Implode() : Cloneable("Implode", kOptions) {}

    bool Apply(Bitmap& bitmap) const override {
        if (!isFilterable(bitmap)) return false;
        const double amount = intValue(0) / 100.0;
        if (amount == 0.0) return true;
        WarpAboutCentre(bitmap, [amount](double& dx, double& dy, double d, double radius) {
            if (d == 0.0) return false;
            const double factor = std::pow(std::sin(M_PI * d / radius / 2.0), -amount);
            dx *= factor;
            dy *= factor;
            return true;
        });
        return true;
    }
};

}  // namespace
std::unique_ptr<ImageFilter> MakeImplode() { return std::make_unique<Implode>(); }
}  // namespace quillet::filters
