// A slide's placement on the stage as a real-valued affine map, for the
// transitions that move and scale whole slides (Push, the zooms, Cross Scale,
// Slide In From / Out To, Slide Close / Open). Moves and scales compose in
// doubles and round once, when the matrix is written, so a transition that
// ends at scale 1 and offset 0 lands exactly on the placement it started from.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "effects/SlideRender.h"
#include "swf/SwfRecords.h"

namespace quillet {

// x' = a·x + c·y + tx, y' = b·x + d·y + ty (stage twips, y down).
struct SlidePlacement {
    double a = 1, b = 0, c = 0, d = 1;
    double tx = 0, ty = 0;

    static SlidePlacement Of(const SwfMatrix& m);
    // Scale and skew to 16.16, translation rounded to whole twips.
    SwfMatrix ToMatrix() const;

    // Then moved on the stage.
    SlidePlacement Moved(double dx, double dy) const;
    // Then scaled about a stage point (px, py), which stays where it is.
    SlidePlacement ScaledAbout(double sx, double sy, double px, double py) const;
    // Scaled in the slide's own frame first, about its placement point.
    SlidePlacement ScaledWithin(double sx, double sy) const;
};

// An axis-aligned box on the stage, twips.
struct StageBox {
    double left = 0, top = 0, right = 0, bottom = 0;
    bool Empty() const { return right <= left || bottom <= top; }
    StageBox Within(const StageBox& other) const;  // the part inside the other box
};

// The box the slide covers with its current matrix (its picture spans
// (0, 0)..(width, height) in its own frame).
StageBox SlideBox(const SlideOnStage& slide);

// Whether the slide has a picture on the stage to move.
inline bool ShowsPicture(const SlideOnStage* slide) { return slide && slide->characterId != 0; }

// Moves what is at `depth` and, when given, sets its opacity (0..1) in the
// same tag.
void Reposition(uint16_t depth, const SlidePlacement& placement, MovieContext& ctx,
                std::optional<double> opacity = std::nullopt);

// The frames of a transition that moves one slide: the incoming slide itself
// (`movesIncoming`), or a copy of the outgoing slide placed above the
// incoming one, the outgoing slide leaving at once. Places the incoming
// slide, then for frames i = 1..n at progress p = i/n calls `move(depth,
// rest, p)` to reposition the moving slide (rest: where it was placed) and
// `alsoAt(p)` when given; a copy is removed instead on the last frame, so
// the incoming slide then shows whole. Removes the outgoing slide.
void MoveOneSlide(SlideOnStage* incoming, SlideOnStage* outgoing, bool movesIncoming, int frames, MovieContext& ctx,
                  const std::function<void(uint16_t depth, const SlidePlacement& rest, double p)>& move,
                  const std::function<void(double p)>& alsoAt = {});

}  // namespace quillet
