#include "effects/transitions/OptionKit.h"

#include <cmath>
#include <cstring>

#include "xml/XmlReader.h"
#include "xml/XmlWriter.h"

namespace quillet {

bool ReadKeyword(const XmlNode& element, const KeywordOptionSpec& table, int32_t& index) {
    std::string keyword;
    if (!element.readString(table.attribute, keyword)) return false;
    for (size_t i = 0; i < table.read.size(); ++i) {
        if (table.read[i] && keyword == table.read[i]) {
            index = static_cast<int32_t>(i);
            return true;
        }
    }
    return false;
}

void WriteKeyword(XmlWriter& writer, const KeywordOptionSpec& table, int32_t index) {
    if (index < 0 || static_cast<size_t>(index) >= table.written.size()) return;
    writer.attributeRaw(table.attribute, table.written[static_cast<size_t>(index)]);
}

TransitionOption ListOption(const KeywordOptionSpec& table, int option) {
    TransitionOption o;
    o.kind = TransitionOption::Kind::List;
    o.label = table.label;
    o.labelId = OptionLabelId(option);
    o.controlId = OptionControlId(option);
    o.items.assign(table.items.begin(), table.items.end());
    o.attribute = table.attribute;
    o.defaultValue = table.defaultIndex;
    return o;
}

int32_t ClampIndex(double value, size_t count) {
    if (count == 0 || !(value > 0)) return 0;  // NaN and negatives pick the first item
    const double last = static_cast<double>(count - 1);
    return static_cast<int32_t>(value >= last ? last : std::floor(value));
}

}  // namespace quillet
