// "Black & White": each pixel becomes white when its mean is above the threshold.
#include "media/filters/FilterBase.h"

namespace quillet::filters {
namespace {

constinit const OptionSpec kOptions[] = {
    FilterParam(0, OptionKind::Integer, "Threshold:", "threshold", 100, 0, 255),
};

class BlackWhite : public Cloneable<BlackWhite, ImageFilter> {
public:
    BlackWhite() : Cloneable("Black & White", kOptions) {}

    bool Apply(Bitmap& bitmap) const override {
        if (!isFilterable(bitmap)) return false;
        const int threshold = intValue(0);
        uint8_t* p = bitmap.pixels();
        const size_t n = bitmap.byteSize();
        for (size_t i = 0; i + 2 < n; i += 3) {
            int m = (p[i] + p[i + 1] + p[i + 2]) / 3;
            uint8_t v = m > threshold ? 255 : 0;
            p[i] = p[i + 1] = p[i + 2] = v;
        }
        return true;
    }
};

}  // namespace
std::unique_ptr<ImageFilter> MakeBlackWhite() { return std::make_unique<BlackWhite>(); }
}  // namespace quillet::filters
