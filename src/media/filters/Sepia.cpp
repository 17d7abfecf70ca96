// "Sepia": luminance tinted brown.
#include "media/filters/FilterBase.h"

namespace quillet::filters {
namespace {

class Sepia : public Cloneable<Sepia, ImageFilter> {
public:
    Sepia() : Cloneable("Sepia") {}

    bool Apply(Bitmap& bitmap) const override {
        if (!isFilterable(bitmap)) return false;
        uint8_t* p = bitmap.pixels();
        const size_t n = bitmap.byteSize();
        for (size_t i = 0; i + 2 < n; i += 3) {
            int l = static_cast<int>(0.299 * p[i] + 0.587 * p[i + 1] + 0.114 * p[i + 2]);
            p[i] = static_cast<uint8_t>(l < 207 ? l + 49 : 255);
            p[i + 1] = static_cast<uint8_t>(l < 14 ? 0 : l - 14);
            p[i + 2] = static_cast<uint8_t>(l < 56 ? 0 : l - 56);
        }
        return true;
    }
};

}  // namespace
std::unique_ptr<ImageFilter> MakeSepia() { return std::make_unique<Sepia>(); }
}  // namespace quillet::filters
