// "Blur": a light, fixed blur with the binomial 1-4-6-4-1 kernel both ways.
#include "media/filters/FilterBase.h"
#include "media/filters/Neighbourhood.h"

namespace quillet::filters {
namespace {

class Blur : public Cloneable<Blur, ImageFilter> {
public:
    Blur() : Cloneable("Blur") {}

    bool Apply(Bitmap& bitmap) const override {
        if (!isFilterable(bitmap)) return false;
        const std::vector<float> k{1 / 16.f, 4 / 16.f, 6 / 16.f, 4 / 16.f, 1 / 16.f};
        ConvolveSeparable(bitmap, k, k);
        return true;
    }
};

}  // namespace
std::unique_ptr<ImageFilter> MakeBlur() { return std::make_unique<Blur>(); }
}  // namespace quillet::filters
