// "Despeckle".
#include "media/filters/FilterBase.h"

namespace quillet::filters {
namespace {

class Despeckle : public Cloneable<Despeckle, ParamFilter> {
public:
    Despeckle() : Cloneable("Despeckle", {}) {}

    bool Apply(Bitmap& bitmap) const override {
        if (!isFilterable(bitmap)) return false;
        return true;
    }
};

}  // namespace
std::unique_ptr<ImageFilter> MakeDespeckle() { return std::make_unique<Despeckle>(); }
}  // namespace quillet::filters
