// "Motion Blur": a streak as if the camera moved sideways: each pixel mixes
// in the pixels to its left up to the given length, nearer ones weighing
// more. The panel's value is kept in memory only.
#include "media/filters/FilterBase.h"
#include "media/filters/Neighbourhood.h"

#include <cmath>
#include <cstring>

namespace quillet::filters {
namespace {

constinit const OptionSpec kOptions[] = {
    FilterParam(0, OptionKind::Integer, "Threshold:", nullptr, 10, 0, 100),
};

class MotionBlur : public Cloneable<MotionBlur, ImageFilter> {
public:
    MotionBlur() : Cloneable("Motion Blur", kOptions) {}

    bool Apply(Bitmap& bitmap) const override {
        if (!isFilterable(bitmap)) return false;
        const int length = intValue(0);
        if (length < 1) return true;
        const double sigma = length / 2.0;
        std::vector<float> weights(static_cast<size_t>(length) + 1);
        float sum = 0;
        for (int k = 0; k <= length; ++k) {
            weights[k] = static_cast<float>(std::exp(-(k * k) / (2.0 * sigma * sigma)));
            sum += weights[k];
        }
        for (float& v : weights) v /= sum;
        const int w = static_cast<int>(bitmap.width());
        const int h = static_cast<int>(bitmap.height());
        std::vector<uint8_t> line(static_cast<size_t>(w + length) * 3);
        for (int y = 0; y < h; ++y) {
            uint8_t* row = bitmap.row(static_cast<uint32_t>(y));
            // The row with its first pixel repeated `length` times in front.
            for (int i = 0; i < length; ++i) std::memcpy(&line[static_cast<size_t>(i) * 3], row, 3);
            std::memcpy(&line[static_cast<size_t>(length) * 3], row, static_cast<size_t>(w) * 3);
            for (int x = 0; x < w; ++x) {
                float acc[3] = {0, 0, 0};
                const uint8_t* p = &line[static_cast<size_t>(x + length) * 3];
                for (int k = 0; k <= length; ++k, p -= 3) {
                    acc[0] += weights[k] * p[0];
                    acc[1] += weights[k] * p[1];
                    acc[2] += weights[k] * p[2];
                }
                for (int c = 0; c < 3; ++c) row[x * 3 + c] = clampByte(acc[c]);
            }
        }
        return true;
    }
};

}  // namespace
std::unique_ptr<ImageFilter> MakeMotionBlur() { return std::make_unique<MotionBlur>(); }
}  // namespace quillet::filters
