// "Raise Borders": a bevel of the given width round the picture, lit from
// the top-left: the top and left bands are lightened, the bottom and right
// bands darkened, the corners split along their diagonals.
#include "media/filters/FilterBase.h"

namespace quillet::filters {
namespace {

constinit const OptionSpec kOptions[] = {
    FilterParam(0, OptionKind::Integer, "Width:", "width", 5, 0, 100),
};

class RaiseBorders : public Cloneable<RaiseBorders, ImageFilter> {
public:
    RaiseBorders() : Cloneable("Raise Borders", kOptions) {}

    bool Apply(Bitmap& bitmap) const override {
        if (!isFilterable(bitmap)) return false;
        const int bw = intValue(0);
        const int w = static_cast<int>(bitmap.width());
        const int h = static_cast<int>(bitmap.height());
        if (bw < 1) return true;
        auto lighten = [](uint8_t* p, int percent) {
            for (int c = 0; c < 3; ++c) p[c] = static_cast<uint8_t>(p[c] + (255 - p[c]) * percent / 100);
        };
        auto darken = [](uint8_t* p, int percent) {
            for (int c = 0; c < 3; ++c) p[c] = static_cast<uint8_t>(p[c] * (100 - percent) / 100);
        };
        for (int y = 0; y < h; ++y) {
            uint8_t* row = bitmap.row(static_cast<uint32_t>(y));
            for (int x = 0; x < w; ++x) {
                const int top = y, bottom = h - 1 - y, left = x, right = w - 1 - x;
                const int nearest = std::min(std::min(top, bottom), std::min(left, right));
                if (nearest >= bw) {
                    x = w - 1 - bw;  // skip the untouched middle of the row
                    if (x < 0) break;
                    continue;
                }
                uint8_t* p = row + x * 3;
                // The band whose edge is nearest claims the pixel; ties go to
                // the top and bottom bands, which splits corners diagonally.
                if (top == nearest) lighten(p, 55);
                else if (bottom == nearest) darken(p, 55);
                else if (left == nearest) lighten(p, 35);
                else darken(p, 35);
            }
        }
        return true;
    }
};

}  // namespace
std::unique_ptr<ImageFilter> MakeRaiseBorders() { return std::make_unique<RaiseBorders>(); }
}  // namespace quillet::filters
