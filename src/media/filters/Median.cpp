// "Median".
#include "media/filters/FilterBase.h"

namespace quillet::filters {
namespace {

class Median : public Cloneable<Median, ParamFilter> {
public:
    Median() : Cloneable("Median", {{FilterOption::Kind::Integer, "Threshold:", nullptr, 20, 0, 32}}) {}

    bool Apply(Bitmap& bitmap) const override {
        if (!isFilterable(bitmap)) return false;
        return true;
    }
};

}  // namespace
std::unique_ptr<ImageFilter> MakeMedian() { return std::make_unique<Median>(); }
}  // namespace quillet::filters
