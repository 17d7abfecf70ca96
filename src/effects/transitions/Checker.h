// "Checker": the incoming slide appears cell by cell on a checkerboard, in a
// chosen cell animation and order.
#pragma once

#include "effects/transitions/OptionKit.h"

namespace quillet {

class CheckerTransition : public TransitionClass<CheckerTransition> {
public:
    static constexpr int32_t kDefaultCellSize = 1600;  // twips

    CheckerTransition();

    int32_t type = 0;       // appear, fade_in, zoom_in, drop_left/right/up/down/random
    int32_t direction = 0;  // the order in which the cells come on
    int32_t cellWidth = kDefaultCellSize;   // not saved
    int32_t cellHeight = kDefaultCellSize;  // not saved

    void CopyFrom(const Transition& source) override;
    void ResetOptions() override;
    // Directions 4 to 15 are written in forms that reading does not know,
    // so they come back as 0; files saved that way must keep doing so.
    void ReadOptions(const XmlNode& element) override;
    void WriteOptions(XmlWriter& writer) const override;
    std::vector<TransitionOption> Options() const override;
    double OptionValue(size_t index) const override;
    bool SetOptionValue(size_t index, double value) override;

    static const KeywordOptionSpec& TypeSpec();
    static const KeywordOptionSpec& DirectionSpec();
};

}  // namespace quillet
