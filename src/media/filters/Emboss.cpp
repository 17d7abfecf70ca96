// "Emboss": the picture pressed into grey metal: the luminance difference
// along the diagonal, lit from the top-left, around a middle grey.
#include "media/filters/FilterBase.h"
#include "media/filters/Neighbourhood.h"

namespace quillet::filters {
namespace {

class Emboss : public Cloneable<Emboss, ImageFilter> {
public:
    Emboss() : Cloneable("Emboss") {}

    bool Apply(Bitmap& bitmap) const override {
        if (!isFilterable(bitmap)) return false;
        const int w = static_cast<int>(bitmap.width());
        const int h = static_cast<int>(bitmap.height());
        const std::vector<uint8_t> lum = LuminancePlane(bitmap);
        auto L = [&](int x, int y) { return static_cast<int>(lum[static_cast<size_t>(clampIndex(y, h - 1)) * w + clampIndex(x, w - 1)]); };
        for (int y = 0; y < h; ++y) {
            uint8_t* out = bitmap.row(static_cast<uint32_t>(y));
            for (int x = 0; x < w; ++x) {
                // Kernel -1 -1 0 / -1 0 1 / 0 1 1.
                const int d = -L(x - 1, y - 1) - L(x, y - 1) - L(x - 1, y) + L(x + 1, y) + L(x, y + 1) + L(x + 1, y + 1);
                const uint8_t v = clampByte(128.0f + d);
                out[x * 3] = out[x * 3 + 1] = out[x * 3 + 2] = v;
            }
        }
        return true;
    }
};

}  // namespace
std::unique_ptr<ImageFilter> MakeEmboss() { return std::make_unique<Emboss>(); }
}  // namespace quillet::filters
