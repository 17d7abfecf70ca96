// Pieces of a slide seen through masks, which "Sliding Bars" and "Checker"
// move, fade and grow, and the part of the stage a slide covers, which the
// bars, blinds and cells divide.
#pragma once

#include <cstdint>
#include <vector>

#include "effects/SlideRender.h"
#include "effects/StageShapes.h"

namespace quillet {

// A rectangle on the stage, twips.
struct StageArea {
    int32_t x = 0, y = 0, width = 0, height = 0;
    bool operator==(const StageArea&) const = default;
};

// The rectangle the slide covers where its matrix puts it (scale and
// translation), clipped to the stage; the whole stage when nothing is left.
StageArea VisibleArea(const SlideOnStage& slide, const MovieContext& ctx);
// The same where PlaceSlide puts the slide.
StageArea HomeArea(const SlideOnStage& slide, const MovieContext& ctx);

// The boundaries that cut `length` twips from `start` into `parts` strips of
// whole twips, as even as can be: parts + 1 values from start to start + length.
std::vector<int32_t> Cuts(int32_t start, int32_t length, int parts);

// Where a piece stands in one frame.
struct PieceState {
    int32_t maskX = 0, maskY = 0;    // the mask moved away from where its shape lies
    int32_t slideX = 0, slideY = 0;  // the copy moved away from the slide's own placement
    uint16_t ratio = 0;              // of a morph-shape mask
    int32_t alpha = 256;             // alpha multiplier of the copy (256: opaque)
    bool operator==(const PieceState&) const = default;
};

// A mask on a fresh depth over a copy of a slide on the depth right above.
// Only what changes from frame to frame is written.
class MaskedPiece {
public:
    // Places both; a morph-shape mask gets its ratio from the start.
    MaskedPiece(const SlideOnStage& slide, uint16_t maskId, bool morph, const PieceState& state, MovieContext& ctx);
    void Update(const PieceState& state, MovieContext& ctx);
    void Remove(MovieContext& ctx);

private:
    SwfMatrix SlideMatrix(const PieceState& state) const;

    SwfMatrix slideMatrix_;
    uint16_t maskDepth_ = 0;
    bool morph_ = false;
    PieceState state_;
};

// Truncates toward zero, so that a distance scaled by (1 - progress) is
// exactly zero at the end and never overshoots.
int32_t Remaining(int32_t distance, double progress);

// Alpha multiplier for an opacity 0..1, as SetOpacity converts it.
int32_t AlphaFor(double opacity);

}  // namespace quillet
