// "Reduce Noise".
#include "media/filters/FilterBase.h"

namespace quillet::filters {
namespace {

class ReduceNoise : public Cloneable<ReduceNoise, ParamFilter> {
public:
    ReduceNoise() : Cloneable("Reduce Noise", {}) {}

    bool Apply(Bitmap& bitmap) const override {
        if (!isFilterable(bitmap)) return false;
        return true;
    }
};

}  // namespace
std::unique_ptr<ImageFilter> MakeReduceNoise() { return std::make_unique<ReduceNoise>(); }
}  // namespace quillet::filters
