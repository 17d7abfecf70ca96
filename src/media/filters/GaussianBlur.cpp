// "Gaussian Blur": Gaussian weights of the given spread (sigma) out to the
// given radius. The radius is on the panel and in the file; the spread is
// kept in memory only.
#include <cmath>

#include "media/filters/FilterBase.h"
#include "media/filters/Neighbourhood.h"

namespace quillet::filters {
namespace {

constinit const OptionSpec kOptions[] = {
    FilterParam(0, OptionKind::Real, "Threshold:", "radius", 5.0, 0, 32),
};

class GaussianBlur : public Cloneable<GaussianBlur, ImageFilter> {
public:
    GaussianBlur() : Cloneable("Gaussian Blur", kOptions) {}

    double sigma() const { return sigma_; }
    void setSigma(double s) { sigma_ = s > 0.0 ? s : sigma_; }

    bool Apply(Bitmap& bitmap) const override {
        if (!isFilterable(bitmap)) return false;
        double radius = value(0);
        // A radius of 0 lets the spread choose the reach (three sigmas).
        int r = radius > 0.0 ? static_cast<int>(std::ceil(radius)) : static_cast<int>(std::ceil(3.0 * sigma_));
        if (r < 1) return true;
        const auto k = GaussianWeights(sigma_, r);
        ConvolveSeparable(bitmap, k, k);
        return true;
    }

private:
    double sigma_ = 1.0;
};

}  // namespace
std::unique_ptr<ImageFilter> MakeGaussianBlur() { return std::make_unique<GaussianBlur>(); }
}  // namespace quillet::filters
