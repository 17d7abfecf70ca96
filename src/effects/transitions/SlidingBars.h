// "Sliding Bars": the incoming slide arrives in bars that slide into place.
#pragma once

#include <vector>

#include "effects/Transition.h"
#include "effects/transitions/BarsMasks.h"

namespace quillet {

// The bars of one direction over `area`: bar k is the k-th strip (top to
// bottom for the horizontal directions 0..4, left to right for the vertical
// ones 5..9). Bars with the same rank start together: every bar in
// "horizontal" and "vertical", in stripe order for the top-to-bottom,
// bottom-to-top, left-to-right and right-to-left ones, from both edges
// towards the middle for "middle in" and from the middle outwards for
// "middle out". Even bars come from the left (or top), odd ones from the
// right (or bottom).
struct SlidingBar {
    int32_t from = 0, to = 0;  // the strip, across the bars' travel
    int rank = 0;
    bool fromFar = false;      // from the right or the bottom
};
struct SlidingBarLayout {
    bool horizontal = true;  // the bars lie horizontally and travel sideways
    int ranks = 1;
    std::vector<SlidingBar> bars;
};
SlidingBarLayout MakeSlidingBars(const StageArea& area, int barCount, int direction);

class SlidingBarsTransition : public TransitionClass<SlidingBarsTransition> {
public:
    SlidingBarsTransition();

    int32_t direction() const { return options().Int(0); }
    int32_t barCount() const { return options().Int(1); }  // not saved

    // Copies of the incoming slide slide in from off the stage, each behind
    // a still mask holding the bars that share its start and side; the
    // incoming slide itself is placed invisible and shown whole on the last
    // frame, when the copies go.
    bool Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const override;
};

}  // namespace quillet
