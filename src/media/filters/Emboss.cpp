// "Emboss".
#include "media/filters/FilterBase.h"

namespace quillet::filters {
namespace {

class Emboss : public Cloneable<Emboss, ParamFilter> {
public:
    Emboss() : Cloneable("Emboss", {}) {}

    bool Apply(Bitmap& bitmap) const override {
        if (!isFilterable(bitmap)) return false;
        return true;
    }
};

}  // namespace
std::unique_ptr<ImageFilter> MakeEmboss() { return std::make_unique<Emboss>(); }
}  // namespace quillet::filters
