// "Solarize": channels above a fixed threshold of 50 are inverted.
#include "media/filters/FilterBase.h"

namespace quillet::filters {
namespace {

class Solarize : public Cloneable<Solarize, ImageFilter> {
public:
    Solarize() : Cloneable("Solarize") {}

    bool Apply(Bitmap& bitmap) const override {
        if (!isFilterable(bitmap)) return false;
        uint8_t* p = bitmap.pixels();
        const size_t n = bitmap.byteSize();
        for (size_t i = 0; i < n; ++i)
            if (p[i] > 50) p[i] = static_cast<uint8_t>(255 - p[i]);
        return true;
    }
};

}  // namespace
std::unique_ptr<ImageFilter> MakeSolarize() { return std::make_unique<Solarize>(); }
}  // namespace quillet::filters
