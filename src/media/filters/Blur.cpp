// "Blur".
#include "media/filters/FilterBase.h"

namespace quillet::filters {
namespace {

class Blur : public Cloneable<Blur, ParamFilter> {
public:
    Blur() : Cloneable("Blur", {}) {}

    bool Apply(Bitmap& bitmap) const override {
        if (!isFilterable(bitmap)) return false;
        return true;
    }
};

}  // namespace
std::unique_ptr<ImageFilter> MakeBlur() { return std::make_unique<Blur>(); }
}  // namespace quillet::filters
