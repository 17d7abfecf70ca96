#include "effects/transitions/ColorFade.h"

#include "xml/XmlReader.h"
#include "xml/XmlWriter.h"

namespace quillet {

ColorFadeTransition::ColorFadeTransition() : TransitionClass("Color Fade") {}

void ColorFadeTransition::CopyFrom(const Transition& source) {
    Transition::CopyFrom(source);
    if (const auto* s = dynamic_cast<const ColorFadeTransition*>(&source)) fadeColor = s->fadeColor;
}

void ColorFadeTransition::ResetOptions() { fadeColor = kDefaultColor; }

void ColorFadeTransition::ReadOptions(const XmlNode& element) { element.readUnsigned("fade_color", fadeColor); }

void ColorFadeTransition::WriteOptions(XmlWriter& writer) const {
    writer.attribute("fade_color", static_cast<unsigned>(fadeColor));
}

std::vector<TransitionOption> ColorFadeTransition::Options() const {
    TransitionOption o;
    o.kind = TransitionOption::Kind::Color;
    o.label = "Color:";
    o.labelId = OptionLabelId(0);
    o.controlId = OptionControlId(0);
    o.attribute = "fade_color";
    o.defaultValue = kDefaultColor;
    return {o};
}

double ColorFadeTransition::OptionValue(size_t index) const { return index == 0 ? fadeColor : 0; }

bool ColorFadeTransition::SetOptionValue(size_t index, double value) {
    if (index != 0) return false;
    const double clamped = value > 0xFFFFFF ? 0xFFFFFF : (value > 0 ? value : 0);
    return AssignChanged(fadeColor, static_cast<uint32_t>(clamped));
}

}  // namespace quillet
