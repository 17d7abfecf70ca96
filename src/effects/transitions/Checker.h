// "Checker": the incoming slide appears cell by cell on a checkerboard, in a
// chosen cell animation and order.
#pragma once

#include <vector>

#include "effects/Transition.h"
#include "effects/transitions/BarsMasks.h"

namespace quillet {

// The cells over `area`: columns and rows of cellWidth x cellHeight twips
// from its top-left corner, those on the right and bottom edges cut short.
// Tiny cells on a big stage are enlarged, keeping their proportions, to at
// most kMaxCheckerCells.
struct CheckerGrid {
    std::vector<int32_t> xs, ys;  // cuts: columns + 1 and rows + 1 values
    int columns() const { return static_cast<int>(xs.size()) - 1; }
    int rows() const { return static_cast<int>(ys.size()) - 1; }
};
constexpr int kMaxCheckerCells = 1024;
CheckerGrid MakeCheckerGrid(const StageArea& area, int32_t cellWidth, int32_t cellHeight);

// The cells (row * columns + column) in the order they come on, for one of
// the 17 directions: rows left to right going down or up, right to left going
// down or up (0..3); columns top to bottom going right or left, bottom to top
// going right or left (4..7); spirals inwards from the top-left, top-right,
// bottom-left and bottom-right corners, each clockwise then counter-clockwise
// (8..15); a fixed shuffle (16).
std::vector<int> CheckerOrder(int columns, int rows, int direction);

class CheckerTransition : public TransitionClass<CheckerTransition> {
public:
    CheckerTransition();

    int32_t type() const { return options().Int(0); }        // appear, fade_in, zoom_in, drop_left/right/up/down/random
    int32_t direction() const { return options().Int(1); }   // the order in which the cells come on
    int32_t cellWidth() const { return options().Int(2); }   // twips, not saved
    int32_t cellHeight() const { return options().Int(3); }  // twips, not saved

    // The cells, in order, are cut into waves that start one after another;
    // each wave is one mask of its cells (a morph shape for zoom_in) over a
    // copy of the incoming slide, per side for drop_random. The incoming
    // slide itself is placed invisible and shown whole on the last frame,
    // when the copies go.
    bool Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const override;
};

}  // namespace quillet
