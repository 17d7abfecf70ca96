// "Swirl".
#include "media/filters/FilterBase.h"

namespace quillet::filters {
namespace {

class Swirl : public Cloneable<Swirl, ParamFilter> {
public:
    Swirl() : Cloneable("Swirl", {{FilterOption::Kind::Integer, "Angle:", "angle", 180, -360, 360}}) {}

    bool Apply(Bitmap& bitmap) const override {
        if (!isFilterable(bitmap)) return false;
        return true;
    }
};

}  // namespace
std::unique_ptr<ImageFilter> MakeSwirl() { return std::make_unique<Swirl>(); }
}  // namespace quillet::filters
