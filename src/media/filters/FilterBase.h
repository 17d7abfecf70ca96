// Shared machinery of the filter classes: a base that keeps numeric options
// described by a table (label, attribute, default, range), the clone helper,
// and the factory of every class for the registry.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "media/Bitmap.h"
#include "media/ImageFilter.h"

namespace quillet::filters {

struct ParamSpec {
    ParamSpec(FilterOption::Kind k, const char* l, const char* a, double def, double lo, double hi,
              std::vector<std::string> list = {})
        : kind(k), label(l), attribute(a), defaultValue(def), minValue(lo), maxValue(hi), items(std::move(list)) {}
    FilterOption::Kind kind = FilterOption::Kind::Integer;
    const char* label = "";
    const char* attribute = nullptr;  // null: the value is kept in memory only
    double defaultValue = 0;
    double minValue = 0, maxValue = 0;
    std::vector<std::string> items;   // list items
};

// A filter whose options are all numbers (or list indices) described by params.
class ParamFilter : public ImageFilter {
public:
    void ReadOptions(const XmlNode& element) override;
    void WriteOptions(XmlWriter& writer) const override;
    std::vector<FilterOption> Options() const override;
    double OptionValue(size_t index) const override;
    void SetOptionValue(size_t index, double value) override;

protected:
    ParamFilter(std::string name, std::vector<ParamSpec> params);
    double value(size_t index) const { return values_[index]; }
    int intValue(size_t index) const { return static_cast<int>(values_[index]); }

    std::vector<ParamSpec> params_;
    std::vector<double> values_;
};

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
