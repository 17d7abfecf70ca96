// "Slide Close" and "Slide Open": a slide cut into two halves (or four
// quarters) whose pieces travel between their places and the outside of the
// stage. Close brings the pieces of the incoming slide in over the outgoing
// one; Open sends the pieces of the outgoing slide away off the incoming one.
// Each piece is a copy of the slide under a mask of its own; mask and copy
// move together.
#pragma once

#include <vector>

#include "effects/Transition.h"
#include "effects/transitions/SlidePlacement.h"

namespace quillet {

// One piece: its box on the stage, where it rests, and its offset once it is
// wholly outside the stage.
struct SplitPiece {
    StageBox box;
    double awayX = 0, awayY = 0;
};

// The pieces for a direction index (the order of the direction list) of
// what shows of a slide (its box on the stage, cut at its middle), on a
// stage of the given size. Halves side by side (horizontal) leave to the
// left and right, or, in the opposite variants, one up and one down; halves
// one above the other (vertical) leave up and down, or one left and one
// right; the four quarters leave by their corners.
std::vector<SplitPiece> SplitSlide(int32_t direction, const StageBox& shown, int32_t stageWidth,
                                   int32_t stageHeight);

class SlideSplitTransition : public Transition {
public:
    int32_t direction() const { return options().Int(0); }

    bool Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const override;

protected:
    SlideSplitTransition(std::string name, bool closes);

private:
    bool closes_;
};

}  // namespace quillet
