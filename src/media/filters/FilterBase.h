// Shared machinery of the filter classes: the option row, the clone helper,
// and the factory of every class for the registry.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "media/Bitmap.h"
#include "media/ImageFilter.h"

namespace quillet::filters {

// A filter's option row. Filters number their controls from 1000: the label
// 1000 + 2 * slot, the value 1001 + 2 * slot.
constexpr OptionSpec FilterParam(int slot, OptionKind kind, const char* label, const char* attribute,
                                 double defaultValue, double minValue, double maxValue, NameList items = {},
                                 NameList keywords = {}) {
    return {.kind = kind, .attribute = attribute, .label = label, .defaultValue = defaultValue,
            .minValue = minValue, .maxValue = maxValue, .items = items, .written = keywords,
            .labelId = 1000 + 2 * slot, .controlId = 1001 + 2 * slot};
}

// Clone through the copy constructor of the concrete class.
template <class Derived, class Base>
class Cloneable : public Base {
public:
    using Base::Base;
    std::unique_ptr<ImageFilter> Clone() const override {
        return std::make_unique<Derived>(static_cast<const Derived&>(*this));
    }
};

// True when the bitmap is one a filter can work on (24-bit with pixels).
inline bool isFilterable(const Bitmap& b) { return b.bitsPerPixel() == 24 && !b.empty(); }

// One noisy value for the channel value p (0..255) by the noise type (0..5).
double NoiseValue(double p, int type);

std::unique_ptr<ImageFilter> MakeAddNoise();
std::unique_ptr<ImageFilter> MakeBlackWhite();
std::unique_ptr<ImageFilter> MakeBlur();
std::unique_ptr<ImageFilter> MakeBrightnessContrast();
std::unique_ptr<ImageFilter> MakeDespeckle();
std::unique_ptr<ImageFilter> MakeEdge();
std::unique_ptr<ImageFilter> MakeEmboss();
std::unique_ptr<ImageFilter> MakeGaussianBlur();
std::unique_ptr<ImageFilter> MakeGrayscale();
std::unique_ptr<ImageFilter> MakeImplode();
std::unique_ptr<ImageFilter> MakeMedian();
std::unique_ptr<ImageFilter> MakeMotionBlur();
std::unique_ptr<ImageFilter> MakeOilPaint();
std::unique_ptr<ImageFilter> MakeRaiseBorders();
std::unique_ptr<ImageFilter> MakeReduceNoise();
std::unique_ptr<ImageFilter> MakeSepia();
std::unique_ptr<ImageFilter> MakeShade();
std::unique_ptr<ImageFilter> MakeSharpen();
std::unique_ptr<ImageFilter> MakeSolarize();
std::unique_ptr<ImageFilter> MakeSwirl();

}  // namespace quillet::filters
