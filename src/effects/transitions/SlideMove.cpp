#include "effects/transitions/SlideMove.h"

#include <climits>
#include <cmath>

#include "xml/XmlReader.h"
#include "xml/XmlWriter.h"

namespace quillet {

namespace {

int32_t ToInt32(double value) {
    if (!(value == value)) return 0;  // NaN
    if (value >= static_cast<double>(INT32_MAX)) return INT32_MAX;
    if (value <= static_cast<double>(INT32_MIN)) return INT32_MIN;
    return static_cast<int32_t>(value);
}

TransitionOption Field(TransitionOption::Kind kind, std::string label, int option, const char* attribute,
                       int decimals) {
    TransitionOption o;
    o.kind = kind;
    o.label = std::move(label);
    o.labelId = OptionLabelId(option);
    o.controlId = OptionControlId(option);
    o.attribute = attribute;
    o.decimals = decimals;
    return o;
}

}  // namespace

SlideMoveTransition::SlideMoveTransition(std::string name, const char* scaleWord)
    : Transition(std::move(name)), scaleWord_(scaleWord) {}

void SlideMoveTransition::CopyFrom(const Transition& source) {
    Transition::CopyFrom(source);
    if (const auto* s = dynamic_cast<const SlideMoveTransition*>(&source)) {
        finalX = s->finalX;
        finalY = s->finalY;
        finalSX = s->finalSX;
        finalSY = s->finalSY;
        fadeOut = s->fadeOut;
    }
}

void SlideMoveTransition::ResetOptions() {
    finalX = finalY = 0;
    finalSX = finalSY = 0.0;
    fadeOut = true;
}

void SlideMoveTransition::ReadOptions(const XmlNode& element) {
    element.readInt("final_x", finalX);
    element.readInt("final_y", finalY);
    element.readDouble("final_sx", finalSX);
    element.readDouble("final_sy", finalSY);
    element.readBool("fade_out", fadeOut);
}

void SlideMoveTransition::WriteOptions(XmlWriter& writer) const {
    writer.attribute("final_x", static_cast<int>(finalX));
    writer.attribute("final_y", static_cast<int>(finalY));
    writer.attributeReal("final_sx", finalSX);
    writer.attributeReal("final_sy", finalSY);
    writer.attribute("fade_out", fadeOut);
}

std::vector<TransitionOption> SlideMoveTransition::Options() const {
    using Kind = TransitionOption::Kind;
    const std::string scale = std::string(scaleWord_) + " Scale ";
    std::vector<TransitionOption> options{
        Field(Kind::Integer, "Delta X:", 0, "final_x", 0),
        Field(Kind::Integer, "Delta Y:", 1, "final_y", 0),
        Field(Kind::Real, scale + "X:", 2, "final_sx", 2),
        Field(Kind::Real, scale + "Y:", 3, "final_sy", 2),
    };
    TransitionOption fade;
    fade.kind = Kind::Bool;
    fade.label = "Fade Out";
    fade.controlId = OptionLabelId(4);  // a check box needs no separate label
    fade.attribute = "fade_out";
    fade.defaultValue = 1;
    options.push_back(fade);
    return options;
}

double SlideMoveTransition::OptionValue(size_t index) const {
    switch (index) {
        case 0: return finalX;
        case 1: return finalY;
        case 2: return finalSX;
        case 3: return finalSY;
        case 4: return fadeOut ? 1 : 0;
        default: return 0;
    }
}

bool SlideMoveTransition::SetOptionValue(size_t index, double value) {
    switch (index) {
        case 0: return AssignChanged(finalX, ToInt32(value));
        case 1: return AssignChanged(finalY, ToInt32(value));
        case 2: return AssignChanged(finalSX, value);
        case 3: return AssignChanged(finalSY, value);
        case 4: return AssignChanged(fadeOut, value != 0);
        default: return false;
    }
}

}  // namespace quillet
