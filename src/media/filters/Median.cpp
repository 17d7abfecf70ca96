// "Median": every channel becomes the median of its square neighbourhood.
// The panel's value is the radius in tenths of a pixel (20: a 5x5 square);
// it is kept in memory only, not written to the project file. A running
// histogram slides along each row, so the cost grows with the radius, not
// its square.
#include <cstring>

#include "media/filters/FilterBase.h"
#include "media/filters/Neighbourhood.h"

namespace quillet::filters {
namespace {

constinit const OptionSpec kOptions[] = {
    FilterParam(0, OptionKind::Integer, "Threshold:", nullptr, 20, 0, 200),
};

class Median : public Cloneable<Median, ImageFilter> {
public:
    Median() : Cloneable("Median", kOptions) {}

    bool Apply(Bitmap& bitmap) const override {
        if (!isFilterable(bitmap)) return false;
        const int r = (intValue(0) + 5) / 10;
        if (r < 1) return true;
        const int w = static_cast<int>(bitmap.width());
        const int h = static_cast<int>(bitmap.height());
        Bitmap source;
        source.CopyFrom(bitmap);
        const int side = 2 * r + 1;
        const int half = side * side / 2;  // values strictly below the median, at most
        std::vector<const uint8_t*> rows(static_cast<size_t>(side));
        for (int y = 0; y < h; ++y) {
            for (int j = 0; j < side; ++j) rows[j] = source.row(static_cast<uint32_t>(clampIndex(y + j - r, h - 1)));
            uint8_t* out = bitmap.row(static_cast<uint32_t>(y));
            for (int c = 0; c < 3; ++c) {
                int hist[256];
                std::memset(hist, 0, sizeof hist);
                for (int i = -r; i <= r; ++i) {
                    const int xi = clampIndex(i, w - 1) * 3 + c;
                    for (const uint8_t* row : rows) ++hist[row[xi]];
                }
                int median = 0, below = 0;
                while (below + hist[median] <= half) below += hist[median++];
                out[c] = static_cast<uint8_t>(median);
                for (int x = 1; x < w; ++x) {
                    const int gone = clampIndex(x - r - 1, w - 1) * 3 + c;
                    const int come = clampIndex(x + r, w - 1) * 3 + c;
                    for (const uint8_t* row : rows) {
                        const int v = row[gone];
                        --hist[v];
                        if (v < median) --below;
                        const int u = row[come];
                        ++hist[u];
                        if (u < median) ++below;
                    }
                    while (below > half) below -= hist[--median];
                    while (below + hist[median] <= half) below += hist[median++];
                    out[x * 3 + c] = static_cast<uint8_t>(median);
                }
            }
        }
        return true;
    }
};

}  // namespace
std::unique_ptr<ImageFilter> MakeMedian() { return std::make_unique<Median>(); }
}  // namespace quillet::filters
