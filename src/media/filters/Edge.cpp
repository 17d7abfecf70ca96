// "Edge".
#include "media/filters/FilterBase.h"

namespace quillet::filters {
namespace {

class Edge : public Cloneable<Edge, ParamFilter> {
public:
    Edge() : Cloneable("Edge", {{FilterOption::Kind::Real, "Threshold:", "radius", 1.0, 0, 32}}) {}

    bool Apply(Bitmap& bitmap) const override {
        if (!isFilterable(bitmap)) return false;
        return true;
    }
};

}  // namespace
std::unique_ptr<ImageFilter> MakeEdge() { return std::make_unique<Edge>(); }
}  // namespace quillet::filters
