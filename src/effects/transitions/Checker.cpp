#include "effects/transitions/Checker.h"

namespace quillet {

namespace {

const char* const kTypeKeywords[] = {"appear",   "fade_in", "zoom_in",   "drop_left",
                                     "drop_right", "drop_up", "drop_down", "drop_random"};
const char* const kTypeItems[] = {"Appear",     "Fade In", "Zoom In",   "Drop Left",
                                  "Drop Right", "Drop Up", "Drop Down", "Drop Random"};

const char* const kDirectionRead[] = {
    "horizontal_left_to_right_down", "horizontal_left_to_right_up", "horizontal_right_to_left_down",
    "horizontal_right_to_left_up",   "vertical_top_to_bottom_right", "vertical_top_to_bottom_left",
    "vertical_bottom_to_top_right",  "vertical_bottom_to_top_left",  "spiral_top_left_cw",
    "spiral_top_left_ccw",           "spiral_top_right_cw",          "spiral_top_right_ccw",
    "spiral_bottom_left_cw",         "spiral_bottom_left_ccw",       "spiral_bottom_right_cw",
    "spiral_bottom_right_ccw",       "random"};
const char* const kDirectionWritten[] = {
    "horizontal_left_to_right_down",      "horizontal_left_to_right_up",
    "horizontal_right_to_left_down",      "horizontal_right_to_left_up",
    "horizontal_top_to_bottom_right",     "horizontal_top_to_bottom_left",
    "horizontal_bottom_to_top_right",     "horizontal_bottom_to_top_left",
    "horizontal_spiral_top_left_cw",      "horizontal_spiral_top_left_ccw",
    "horizontal_spiral_top_right_cw",     "horizontal_spiral_top_right_ccw",
    "horizontal_spiral_bottom_left_cw",   "horizontal_spiral_bottom_left_ccw",
    "horizontal_spiral_bottom_right_cw",  "horizontal_spiral_bottom_right_ccw",
    "random"};
const char* const kDirectionItems[] = {
    "Left to Right Down",     "Left to Right Up",       "Right to Left Down",    "Right to Left Up",
    "Top to Bottom Right",    "Top to Bottom Left",     "Bottom to Top Right",   "Bottom to Top Left",
    "Spiral Top Left CW",     "Spiral Top Left CCW",    "Spiral Top Right CW",   "Spiral Top Right CCW",
    "Spiral Bottom Left CW",  "Spiral Bottom Left CCW", "Spiral Bottom Right CW", "Spiral Bottom Right CCW",
    "Random"};

constinit const KeywordOptionSpec kTypeSpec{"type", kTypeKeywords, kTypeKeywords, "Type:", kTypeItems, 0};
constinit const KeywordOptionSpec kDirectionSpec{"direction", kDirectionWritten, kDirectionRead, "Direction:",
                                                 kDirectionItems, 0};

}  // namespace

const KeywordOptionSpec& CheckerTransition::TypeSpec() { return kTypeSpec; }
const KeywordOptionSpec& CheckerTransition::DirectionSpec() { return kDirectionSpec; }

CheckerTransition::CheckerTransition() : TransitionClass("Checker") {}

void CheckerTransition::CopyFrom(const Transition& source) {
    Transition::CopyFrom(source);
    if (const auto* s = dynamic_cast<const CheckerTransition*>(&source)) {
        type = s->type;
        direction = s->direction;
        cellWidth = s->cellWidth;
        cellHeight = s->cellHeight;
    }
}

void CheckerTransition::ResetOptions() {
    type = kTypeSpec.defaultIndex;
    direction = kDirectionSpec.defaultIndex;
    cellWidth = cellHeight = kDefaultCellSize;
}

void CheckerTransition::ReadOptions(const XmlNode& element) {
    ReadKeyword(element, kTypeSpec, type);
    ReadKeyword(element, kDirectionSpec, direction);
}

void CheckerTransition::WriteOptions(XmlWriter& writer) const {
    WriteKeyword(writer, kTypeSpec, type);
    WriteKeyword(writer, kDirectionSpec, direction);
}

std::vector<TransitionOption> CheckerTransition::Options() const {
    return {ListOption(kTypeSpec, 0), ListOption(kDirectionSpec, 1)};
}

double CheckerTransition::OptionValue(size_t index) const {
    switch (index) {
        case 0: return type;
        case 1: return direction;
        default: return 0;
    }
}

bool CheckerTransition::SetOptionValue(size_t index, double value) {
    switch (index) {
        case 0: return AssignChanged(type, ClampIndex(value, kTypeSpec.items.size()));
        case 1: return AssignChanged(direction, ClampIndex(value, kDirectionSpec.items.size()));
        default: return false;
    }
}

}  // namespace quillet
