// "Reduce Noise": an edge-keeping smoothing (a sigma filter). Each channel
// becomes the mean of those values in its 5x5 neighbourhood that lie within
// 20 of it, so grain averages out while edges, which differ by more, stay.
#include <cstdlib>

#include "media/filters/FilterBase.h"
#include "media/filters/Neighbourhood.h"

namespace quillet::filters {
namespace {

class ReduceNoise : public Cloneable<ReduceNoise, ImageFilter> {
public:
    ReduceNoise() : Cloneable("Reduce Noise") {}

    bool Apply(Bitmap& bitmap) const override {
        if (!isFilterable(bitmap)) return false;
        constexpr int kRadius = 2;
        constexpr int kRange = 20;
        const int w = static_cast<int>(bitmap.width());
        const int h = static_cast<int>(bitmap.height());
        Bitmap source;
        source.CopyFrom(bitmap);
        for (int y = 0; y < h; ++y) {
            const uint8_t* rows[2 * kRadius + 1];
            for (int j = -kRadius; j <= kRadius; ++j) rows[j + kRadius] = source.row(clampIndex(y + j, h - 1));
            uint8_t* out = bitmap.row(static_cast<uint32_t>(y));
            for (int x = 0; x < w; ++x) {
                int xs[2 * kRadius + 1];
                for (int i = -kRadius; i <= kRadius; ++i) xs[i + kRadius] = clampIndex(x + i, w - 1) * 3;
                for (int c = 0; c < 3; ++c) {
                    const int centre = rows[kRadius][x * 3 + c];
                    int sum = 0, n = 0;
                    for (const uint8_t* row : rows)
                        for (int xi : xs) {
                            const int v = row[xi + c];
                            if (std::abs(v - centre) <= kRange) {
                                sum += v;
                                ++n;
                            }
                        }
                    out[x * 3 + c] = static_cast<uint8_t>((sum + n / 2) / n);
                }
            }
        }
        return true;
    }
};

}  // namespace
std::unique_ptr<ImageFilter> MakeReduceNoise() { return std::make_unique<ReduceNoise>(); }
}  // namespace quillet::filters
