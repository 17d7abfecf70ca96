// "Grayscale": a weighted mean of the three channels.
#include "media/filters/FilterBase.h"

namespace quillet::filters {
namespace {

class Grayscale : public Cloneable<Grayscale, ImageFilter> {
public:
    Grayscale() : Cloneable("Grayscale") {}

    bool Apply(Bitmap& bitmap) const override {
        if (!isFilterable(bitmap)) return false;
        uint8_t* p = bitmap.pixels();
        const size_t n = bitmap.byteSize();
        for (size_t i = 0; i + 2 < n; i += 3) {
            uint8_t g = static_cast<uint8_t>((3 * p[i] + 4 * p[i + 1] + 2 * p[i + 2]) / 9);
            p[i] = p[i + 1] = p[i + 2] = g;
        }
        return true;
    }
};

}  // namespace
std::unique_ptr<ImageFilter> MakeGrayscale() { return std::make_unique<Grayscale>(); }
}  // namespace quillet::filters
