// "Color Fade": the stage fades to a solid colour, the slides change under
// it, and the colour fades away again.
#pragma once

#include "effects/transitions/OptionKit.h"

namespace quillet {

class ColorFadeTransition : public TransitionClass<ColorFadeTransition> {
public:
    static constexpr uint32_t kDefaultColor = 0xFFFFFF;  // white

    ColorFadeTransition();

    // Lowest byte red, then green, then blue; saved as an unsigned decimal.
    uint32_t fadeColor = kDefaultColor;

    bool Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const override;
    void CopyFrom(const Transition& source) override;
    void ResetOptions() override;
    void ReadOptions(const XmlNode& element) override;
    void WriteOptions(XmlWriter& writer) const override;
    std::vector<TransitionOption> Options() const override;
    double OptionValue(size_t index) const override;
    bool SetOptionValue(size_t index, double value) override;
};

}  // namespace quillet
