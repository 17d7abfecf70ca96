// "Oil Paint".
#include "media/filters/FilterBase.h"

namespace quillet::filters {
namespace {

class OilPaint : public Cloneable<OilPaint, ParamFilter> {
public:
    OilPaint() : Cloneable("Oil Paint", {{FilterOption::Kind::Integer, "Threshold:", "threshold", 50, 0, 100}}) {}

    bool Apply(Bitmap& bitmap) const override {
        if (!isFilterable(bitmap)) return false;
        return true;
    }
};

}  // namespace
std::unique_ptr<ImageFilter> MakeOilPaint() { return std::make_unique<OilPaint>(); }
}  // namespace quillet::filters
