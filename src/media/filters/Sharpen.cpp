// "Sharpen": the classic 3x3 sharpening kernel (centre 5, the four
// neighbours -1), which steepens every edge.
#include "media/filters/FilterBase.h"
#include "media/filters/Neighbourhood.h"

namespace quillet::filters {
namespace {

class Sharpen : public Cloneable<Sharpen, ImageFilter> {
public:
    Sharpen() : Cloneable("Sharpen") {}

    bool Apply(Bitmap& bitmap) const override {
        if (!isFilterable(bitmap)) return false;
        Convolve(bitmap, {0, -1, 0, -1, 5, -1, 0, -1, 0}, 3, 1.0f, 0.0f);
        return true;
    }
};

}  // namespace
std::unique_ptr<ImageFilter> MakeSharpen() { return std::make_unique<Sharpen>(); }
}  // namespace quillet::filters
