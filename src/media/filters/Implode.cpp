// "Implode".
#include "media/filters/FilterBase.h"

namespace quillet::filters {
namespace {

class Implode : public Cloneable<Implode, ParamFilter> {
public:
    Implode() : Cloneable("Implode", {{FilterOption::Kind::Integer, "Amount:", "amount", 20, -100, 100}}) {}

    bool Apply(Bitmap& bitmap) const override {
        if (!isFilterable(bitmap)) return false;
        return true;
    }
};

}  // namespace
std::unique_ptr<ImageFilter> MakeImplode() { return std::make_unique<Implode>(); }
}  // namespace quillet::filters
