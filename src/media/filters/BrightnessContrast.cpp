// "Brightness/Contrast": an offset, then a stretch about the middle grey.
#include <cmath>

#include "media/filters/FilterBase.h"

namespace quillet::filters {
namespace {

constinit const OptionSpec kOptions[] = {
    FilterParam(0, OptionKind::Integer, "Brightness:", "brightness", 0, -100, 100),
    FilterParam(1, OptionKind::Integer, "Contrast:", "contrast", 0, -100, 100),
};

class BrightnessContrast : public Cloneable<BrightnessContrast, ImageFilter> {
public:
    BrightnessContrast()
        : Cloneable("Brightness/Contrast", kOptions) {}

    bool Apply(Bitmap& bitmap) const override {
        if (!isFilterable(bitmap)) return false;
        const int offset = static_cast<int>(std::floor(intValue(0) * 1.27));
        const double factor = (intValue(1) + 100) * 0.01;
        // Every channel value maps the same way: build the table once.
        uint8_t table[256];
        for (int c = 0; c < 256; ++c) {
            int v = static_cast<int>(std::floor((c + offset - 127) * factor)) + 127;
            table[c] = static_cast<uint8_t>(v < 0 ? 0 : (v > 255 ? 255 : v));
        }
        uint8_t* p = bitmap.pixels();
        const size_t n = bitmap.byteSize();
        for (size_t i = 0; i < n; ++i) p[i] = table[p[i]];
        return true;
    }
};

}  // namespace
std::unique_ptr<ImageFilter> MakeBrightnessContrast() { return std::make_unique<BrightnessContrast>(); }
}  // namespace quillet::filters
