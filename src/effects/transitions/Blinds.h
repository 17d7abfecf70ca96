// "Blinds In" and "Blinds Out": venetian blinds, one morph-shape mask of
// slats that open onto the incoming slide or close over a copy of the
// outgoing one. The options are shared: a direction and the number of slats
// (not saved).
#pragma once

#include <vector>

#include "effects/StageShapes.h"
#include "effects/Transition.h"
#include "effects/transitions/BarsMasks.h"

namespace quillet {

// The slats of a blind over `area`, `count` of them (at most one per twip),
// at both ends of the morph: whole rectangles, and lines on one of their
// edges. The slats are horizontal for directions 0 (up) and 1 (down),
// vertical for 2 (left) and 3 (right); the moving edge of each slat travels
// that way. Opening, a slat grows from a line on the edge the motion starts
// from; closing, it shrinks to a line on the edge the motion goes to.
struct BlindSlats {
    std::vector<StagePolygon> start, end;
};
BlindSlats MakeBlindSlats(const StageArea& area, int count, int direction, bool opening);

class BlindsTransition : public Transition {
public:
    int32_t direction() const { return options().Int(0); }
    int32_t count() const { return options().Int(1); }  // not saved

    // Opening: the incoming slide moves above a mask of opening slats.
    // Closing: the incoming slide is in place at once and a copy of the
    // outgoing one, above it, shows through closing slats.
    bool Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const override;

protected:
    BlindsTransition(std::string name, bool opening);

private:
    bool opening_;
};

}  // namespace quillet
