// "Raise Borders".
#include "media/filters/FilterBase.h"

namespace quillet::filters {
namespace {

class RaiseBorders : public Cloneable<RaiseBorders, ParamFilter> {
public:
    RaiseBorders() : Cloneable("Raise Borders", {{FilterOption::Kind::Integer, "Width:", "width", 5, 0, 100}}) {}

    bool Apply(Bitmap& bitmap) const override {
        if (!isFilterable(bitmap)) return false;
        return true;
    }
};

}  // namespace
std::unique_ptr<ImageFilter> MakeRaiseBorders() { return std::make_unique<RaiseBorders>(); }
}  // namespace quillet::filters
