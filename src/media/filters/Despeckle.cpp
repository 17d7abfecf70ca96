// "Despeckle": removes specks of one or two pixels. A channel value above
// all but one of its eight neighbours is lowered to the second highest of
// them, one below all but one raised to the second lowest; values inside
// that range (edges, texture: they have several neighbours on each side)
// stay exactly. Two passes catch specks that touched each other.
#include <algorithm>

#include "media/filters/FilterBase.h"
#include "media/filters/Neighbourhood.h"

namespace quillet::filters {
namespace {

class Despeckle : public Cloneable<Despeckle, ParamFilter> {
public:
    Despeckle() : Cloneable("Despeckle", {}) {}

    bool Apply(Bitmap& bitmap) const override {
        if (!isFilterable(bitmap)) return false;
        Pass(bitmap);
        Pass(bitmap);
        return true;
    }

private:
    static void Pass(Bitmap& bitmap) {
        const int w = static_cast<int>(bitmap.width());
        const int h = static_cast<int>(bitmap.height());
        Bitmap source;
        source.CopyFrom(bitmap);
        for (int y = 0; y < h; ++y) {
            const uint8_t* rows[3] = {source.row(clampIndex(y - 1, h - 1)), source.row(y), source.row(clampIndex(y + 1, h - 1))};
            uint8_t* out = bitmap.row(static_cast<uint32_t>(y));
            for (int x = 0; x < w; ++x) {
                const int xs[3] = {clampIndex(x - 1, w - 1), x, clampIndex(x + 1, w - 1)};
                for (int c = 0; c < 3; ++c) {
                    // The two lowest and two highest neighbours.
                    int lo1 = 256, lo2 = 256, hi1 = -1, hi2 = -1;
                    for (int j = 0; j < 3; ++j)
                        for (int i = 0; i < 3; ++i) {
                            if (i == 1 && j == 1) continue;
                            const int v = rows[j][xs[i] * 3 + c];
                            if (v < lo1) {
                                lo2 = lo1;
                                lo1 = v;
                            } else if (v < lo2) {
                                lo2 = v;
                            }
                            if (v > hi1) {
                                hi2 = hi1;
                                hi1 = v;
                            } else if (v > hi2) {
                                hi2 = v;
                            }
                        }
                    const int lo = lo2, hi = hi2;
                    const int v = rows[1][x * 3 + c];
                    out[x * 3 + c] = static_cast<uint8_t>(std::clamp(v, lo, hi));
                }
            }
        }
    }
};

}  // namespace
std::unique_ptr<ImageFilter> MakeDespeckle() { return std::make_unique<Despeckle>(); }
}  // namespace quillet::filters
