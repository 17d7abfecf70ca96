// "Oil Paint": each pixel takes the colour most common around it. The
// neighbourhood's pixels are sorted into intensity levels; the pixel becomes
// the mean colour of the fullest level, which flattens detail into strokes.
// The saved "threshold" is the brush radius in tenths of a pixel (50: a
// radius of 5).
#include <cstring>

#include "media/filters/FilterBase.h"
#include "media/filters/Neighbourhood.h"

namespace quillet::filters {
namespace {

constexpr int kLevels = 32;

constinit const OptionSpec kOptions[] = {
    FilterParam(0, OptionKind::Integer, "Threshold:", "threshold", 50, 0, 100),
};

class OilPaint : public Cloneable<OilPaint, ImageFilter> {
public:
    OilPaint() : Cloneable("Oil Paint", kOptions) {}

    bool Apply(Bitmap& bitmap) const override {
        if (!isFilterable(bitmap)) return false;
        const int r = Radius();
        if (r < 1) return true;
        const int w = static_cast<int>(bitmap.width());
        const int h = static_cast<int>(bitmap.height());
        Bitmap source;
        source.CopyFrom(bitmap);
        std::vector<uint8_t> level(static_cast<size_t>(w) * h);
        const uint8_t* p = source.pixels();
        for (size_t i = 0; i < level.size(); ++i, p += 3)
            level[i] = static_cast<uint8_t>(((299 * p[0] + 587 * p[1] + 114 * p[2]) / 1000) * kLevels / 256);
        const int side = 2 * r + 1;
        std::vector<int> rowIndex(static_cast<size_t>(side));
        for (int y = 0; y < h; ++y) {
            for (int j = 0; j < side; ++j) rowIndex[j] = clampIndex(y + j - r, h - 1);
            int count[kLevels];
            int sum[kLevels][3];
            std::memset(count, 0, sizeof count);
            std::memset(sum, 0, sizeof sum);
            auto column = [&](int x, int sign) {
                const int xi = clampIndex(x, w - 1);
                for (int yi : rowIndex) {
                    const size_t i = static_cast<size_t>(yi) * w + xi;
                    const int l = level[i];
                    const uint8_t* q = source.pixels() + i * 3;
                    count[l] += sign;
                    sum[l][0] += sign * q[0];
                    sum[l][1] += sign * q[1];
                    sum[l][2] += sign * q[2];
                }
            };
            for (int i = -r; i <= r; ++i) column(i, 1);
            uint8_t* out = bitmap.row(static_cast<uint32_t>(y));
            for (int x = 0; x < w; ++x) {
                if (x > 0) {
                    column(x - r - 1, -1);
                    column(x + r, 1);
                }
                int best = 0;
                for (int l = 1; l < kLevels; ++l)
                    if (count[l] > count[best]) best = l;
                const int n = count[best];
                for (int c = 0; c < 3; ++c) out[x * 3 + c] = static_cast<uint8_t>((sum[best][c] + n / 2) / n);
            }
        }
        return true;
    }

private:
    int Radius() const;
};

int OilPaint::Radius() const { return (intValue(0) + 5) / 10; }

}  // namespace
std::unique_ptr<ImageFilter> MakeOilPaint() { return std::make_unique<OilPaint>(); }
}  // namespace quillet::filters
