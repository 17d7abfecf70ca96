// "Gaussian Blur": radius on the panel and in the file; the spread (sigma)
// is kept in memory only.
#include "media/filters/FilterBase.h"

namespace quillet::filters {
namespace {

class GaussianBlur : public Cloneable<GaussianBlur, ParamFilter> {
public:
    GaussianBlur() : Cloneable("Gaussian Blur", {{FilterOption::Kind::Real, "Threshold:", "radius", 5.0, 0, 32}}) {}

    bool Apply(Bitmap& bitmap) const override {
        if (!isFilterable(bitmap)) return false;
        return true;
    }

private:
    double sigma_ = 1.0;
};

}  // namespace
std::unique_ptr<ImageFilter> MakeGaussianBlur() { return std::make_unique<GaussianBlur>(); }
}  // namespace quillet::filters
