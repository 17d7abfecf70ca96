#include "media/ImageFilter.h"

#include <algorithm>
#include <cmath>

#include "media/filters/FilterBase.h"
#include "xml/XmlReader.h"
#include "xml/XmlWriter.h"

namespace quillet {

bool ImageFilter::ChangeOptionValue(size_t index, double value) {
    const auto options = Options();
    if (index >= options.size()) return false;
    const FilterOption& o = options[index];
    if (o.kind != FilterOption::Kind::Real) value = std::trunc(value);
    value = std::clamp(value, o.minValue, o.maxValue);
    if (value == OptionValue(index)) return false;
    SetOptionValue(index, value);
    return true;
}

ImageFilterRegistry::ImageFilterRegistry() {
    using namespace filters;
    // Panel order: by display name.
    prototypes_.push_back(MakeAddNoise());
    prototypes_.push_back(MakeBlackWhite());
    prototypes_.push_back(MakeBlur());
    prototypes_.push_back(MakeBrightnessContrast());
    prototypes_.push_back(MakeDespeckle());
    prototypes_.push_back(MakeEdge());
    prototypes_.push_back(MakeEmboss());
    prototypes_.push_back(MakeGaussianBlur());
    prototypes_.push_back(MakeGrayscale());
    prototypes_.push_back(MakeImplode());
    prototypes_.push_back(MakeMedian());
    prototypes_.push_back(MakeMotionBlur());
    prototypes_.push_back(MakeOilPaint());
    prototypes_.push_back(MakeRaiseBorders());
    prototypes_.push_back(MakeReduceNoise());
    prototypes_.push_back(MakeSepia());
    prototypes_.push_back(MakeShade());
    prototypes_.push_back(MakeSharpen());
    prototypes_.push_back(MakeSolarize());
    prototypes_.push_back(MakeSwirl());
}

const ImageFilterRegistry& ImageFilterRegistry::instance() {
    static const ImageFilterRegistry registry;
    return registry;
}

const ImageFilter* ImageFilterRegistry::at(size_t index) const {
    return index < prototypes_.size() ? prototypes_[index].get() : nullptr;
}

const ImageFilter* ImageFilterRegistry::find(const std::string& name) const {
    for (const auto& p : prototypes_)
        if (p->name() == name) return p.get();
    return nullptr;
}

std::unique_ptr<ImageFilter> ImageFilterRegistry::create(const std::string& name) const {
    const ImageFilter* p = find(name);
    return p ? p->Clone() : nullptr;
}

void WriteFilterElement(XmlWriter& writer, const ImageFilter& filter) {
    writer.write("<filter name=\"");
    writer.writeEscaped(filter.name());
    writer.write("\"");
    filter.WriteOptions(writer);
    writer.write(" />\n");
}

std::unique_ptr<ImageFilter> ReadFilterElement(const XmlNode& element) {
    std::string name;
    if (!element || !element.readString("name", name)) return nullptr;
    auto filter = ImageFilterRegistry::instance().create(name);
    if (filter) filter->ReadOptions(element);
    return filter;
}

namespace filters {

ParamFilter::ParamFilter(std::string name, std::vector<ParamSpec> params)
    : ImageFilter(std::move(name)), params_(std::move(params)) {
    for (const ParamSpec& s : params_) values_.push_back(s.defaultValue);
}

void ParamFilter::ReadOptions(const XmlNode& element) {
    for (size_t i = 0; i < params_.size(); ++i) {
        const ParamSpec& s = params_[i];
        if (!s.attribute) continue;
        if (s.kind == FilterOption::Kind::Real) {
            double v;
            // Values out of range (a radius of thousands would stall the
            // export) are brought back into the panel's range.
            if (element.readDouble(s.attribute, v) && std::isfinite(v))
                values_[i] = std::clamp(v, s.minValue, s.maxValue);
        } else if (s.kind == FilterOption::Kind::Integer) {
            int v;
            if (element.readInt(s.attribute, v)) values_[i] = std::clamp<double>(v, s.minValue, s.maxValue);
        }
    }
}

void ParamFilter::WriteOptions(XmlWriter& writer) const {
    for (size_t i = 0; i < params_.size(); ++i) {
        const ParamSpec& s = params_[i];
        if (!s.attribute) continue;
        if (s.kind == FilterOption::Kind::Real)
            writer.attributeReal(s.attribute, values_[i]);
        else
            writer.attribute(s.attribute, static_cast<int>(values_[i]));
    }
}

std::vector<FilterOption> ParamFilter::Options() const {
    std::vector<FilterOption> out;
    for (size_t i = 0; i < params_.size(); ++i) {
        const ParamSpec& s = params_[i];
        FilterOption o;
        o.kind = s.kind;
        o.label = s.label;
        o.labelId = 1000 + static_cast<int>(2 * i);
        o.controlId = 1001 + static_cast<int>(2 * i);
        o.items = s.items;
        o.defaultValue = s.defaultValue;
        o.attribute = s.attribute ? s.attribute : "";
        o.minValue = s.minValue;
        o.maxValue = s.maxValue;
        out.push_back(std::move(o));
    }
    return out;
}

double ParamFilter::OptionValue(size_t index) const { return index < values_.size() ? values_[index] : 0; }

void ParamFilter::SetOptionValue(size_t index, double value) {
    if (index >= values_.size() || !std::isfinite(value)) return;
    const ParamSpec& s = params_[index];
    if (s.kind != FilterOption::Kind::Real) value = std::trunc(value);
    values_[index] = std::clamp(value, s.minValue, s.maxValue);
}

}  // namespace filters
}  // namespace quillet
