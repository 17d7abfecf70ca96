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

class Despeckle : public Cloneable<Despeckle, ImageFilter> {
public:
    Despeckle() : Cloneable("Despeckle") {}

    bool Apply(Bitmap& bitmap) const override {
        if (!isFilterable(bitmap)) return false;
        Pass(bitmap);
        Pass(bitmap);
        return true;
    }

private:
    // Clamps v to the second lowest and second highest of its neighbours. Most
    // values have at least two neighbours on either side and stay; only then
    // are the neighbours ranked.
    static uint8_t Clip(int v, const int (&n)[8]) {
        int above = 0, below = 0;
        for (int u : n) {
            above += u >= v;
            below += u <= v;
        }
        if (above >= 2 && below >= 2) return static_cast<uint8_t>(v);
        int first, second;
        if (above < 2) {  // a peak: lower it to the second highest neighbour
            first = second = -1;
            for (int u : n) {
                if (u > first) {
                    second = first;
                    first = u;
                } else if (u > second) {
                    second = u;
                }
            }
        } else {  // a pit: raise it to the second lowest
            first = second = 256;
            for (int u : n) {
                if (u < first) {
                    second = first;
                    first = u;
                } else if (u < second) {
                    second = u;
                }
            }
        }
        return static_cast<uint8_t>(second);
    }

    static void Pass(Bitmap& bitmap) {
        const int w = static_cast<int>(bitmap.width());
        const int h = static_cast<int>(bitmap.height());
        Bitmap source;
        source.CopyFrom(bitmap);
        for (int y = 0; y < h; ++y) {
            const uint8_t* up = source.row(static_cast<uint32_t>(clampIndex(y - 1, h - 1)));
            const uint8_t* mid = source.row(static_cast<uint32_t>(y));
            const uint8_t* down = source.row(static_cast<uint32_t>(clampIndex(y + 1, h - 1)));
            uint8_t* out = bitmap.row(static_cast<uint32_t>(y));
            for (int x = 0; x < w; ++x) {
                const int l = clampIndex(x - 1, w - 1) * 3, m = x * 3, r = clampIndex(x + 1, w - 1) * 3;
                for (int c = 0; c < 3; ++c) {
                    const int n[8] = {up[l + c], up[m + c], up[r + c], mid[l + c],
                                      mid[r + c], down[l + c], down[m + c], down[r + c]};
                    out[m + c] = Clip(mid[m + c], n);
                }
            }
        }
    }
};

}  // namespace
std::unique_ptr<ImageFilter> MakeDespeckle() { return std::make_unique<Despeckle>(); }
}  // namespace quillet::filters
