// "Motion Blur".
#include "media/filters/FilterBase.h"

namespace quillet::filters {
namespace {

class MotionBlur : public Cloneable<MotionBlur, ParamFilter> {
public:
    MotionBlur() : Cloneable("Motion Blur", {{FilterOption::Kind::Integer, "Threshold:", nullptr, 10, 0, 100}}) {}

    bool Apply(Bitmap& bitmap) const override {
        if (!isFilterable(bitmap)) return false;
        return true;
    }
};

}  // namespace
std::unique_ptr<ImageFilter> MakeMotionBlur() { return std::make_unique<MotionBlur>(); }
}  // namespace quillet::filters
