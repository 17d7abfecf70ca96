// "Window": a shaped window (square, rectangle, circle, star, diamond) closes
// over the outgoing slide or opens onto the incoming one, optionally turning.
#pragma once

#include "effects/transitions/OptionKit.h"

namespace quillet {

class WindowTransition : public TransitionClass<WindowTransition> {
public:
    static constexpr float kDefaultSpinCount = 1.8f;

    WindowTransition();

    int32_t type = 0;                     // `type`: the shape and whether it closes or opens
    bool spin = false;                    // not saved
    float spinCount = kDefaultSpinCount;  // not saved
    bool spinClockwise = true;            // not saved

    void CopyFrom(const Transition& source) override;
    void ResetOptions() override;
    // "rectangle_close" is written but never recognised on reading, so such a
    // window reopens as "square_close"; saved files rely on this.
    void ReadOptions(const XmlNode& element) override;
    void WriteOptions(XmlWriter& writer) const override;
    // "Shape:" list, the "Spin" box, and the spin count field followed by "times".
    std::vector<TransitionOption> Options() const override;
    double OptionValue(size_t index) const override;
    bool SetOptionValue(size_t index, double value) override;

    static const KeywordOptionSpec& TypeSpec();
};

}  // namespace quillet
