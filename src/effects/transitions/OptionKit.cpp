#include "effects/transitions/OptionKit.h"

#include <cmath>
#include <cstring>

#include "xml/XmlReader.h"
#include "xml/XmlWriter.h"

namespace quillet {

bool ReadKeyword(const XmlNode& element, const KeywordOptionSpec& spec, int32_t& index) {
    std::string keyword;
    if (!element.readString(spec.attribute, keyword)) return false;
    for (size_t i = 0; i < spec.read.size(); ++i) {
        if (spec.read[i] && keyword == spec.read[i]) {
            index = static_cast<int32_t>(i);
            return true;
        }
    }
    return false;
}

void WriteKeyword(XmlWriter& writer, const KeywordOptionSpec& spec, int32_t index) {
    if (index < 0 || static_cast<size_t>(index) >= spec.written.size()) return;
    writer.attributeRaw(spec.attribute, spec.written[static_cast<size_t>(index)]);
}

TransitionOption ListOption(const KeywordOptionSpec& spec, int option) {
    TransitionOption o;
    o.kind = TransitionOption::Kind::List;
    o.label = spec.label;
    o.labelId = OptionLabelId(option);
    o.controlId = OptionControlId(option);
    o.items.assign(spec.items.begin(), spec.items.end());
    o.attribute = spec.attribute;
    o.defaultValue = spec.defaultIndex;
    return o;
}

int32_t ClampIndex(double value, size_t count) {
    if (count == 0 || !(value > 0)) return 0;  // NaN and negatives pick the first item
    const double last = static_cast<double>(count - 1);
    return static_cast<int32_t>(value >= last ? last : std::floor(value));
}

}  // namespace quillet
