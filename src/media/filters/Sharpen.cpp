// "Sharpen".
#include "media/filters/FilterBase.h"

namespace quillet::filters {
namespace {

class Sharpen : public Cloneable<Sharpen, ParamFilter> {
public:
    Sharpen() : Cloneable("Sharpen", {}) {}

    bool Apply(Bitmap& bitmap) const override {
        if (!isFilterable(bitmap)) return false;
        return true;
    }
};

}  // namespace
std::unique_ptr<ImageFilter> MakeSharpen() { return std::make_unique<Sharpen>(); }
}  // namespace quillet::filters
