// "Edge": edge detection with a Laplacian-style kernel whose reach is the
// radius: every neighbour -1, the centre the count of the neighbours, so
// flat areas turn black and edges light up.
#include <cmath>

#include "media/filters/FilterBase.h"
#include "media/filters/Neighbourhood.h"

namespace quillet::filters {
namespace {

constinit const OptionSpec kOptions[] = {
    FilterParam(0, OptionKind::Real, "Threshold:", "radius", 1.0, 0, 32),
};

class Edge : public Cloneable<Edge, ImageFilter> {
public:
    Edge() : Cloneable("Edge", kOptions) {}

    bool Apply(Bitmap& bitmap) const override {
        if (!isFilterable(bitmap)) return false;
        int r = static_cast<int>(std::ceil(value(0)));
        if (r < 1) r = 1;
        const int size = 2 * r + 1;
        std::vector<float> k(static_cast<size_t>(size) * size, -1.0f);
        k[k.size() / 2] = static_cast<float>(size * size - 1);
        Convolve(bitmap, k, size, 1.0f, 0.0f);
        return true;
    }
};

}  // namespace
std::unique_ptr<ImageFilter> MakeEdge() { return std::make_unique<Edge>(); }
}  // namespace quillet::filters
