// Pieces of a slide for the shape transitions (Window, Curtain, Slide
// Triangle Open, Page Flip): a copy of the slide seen through a mask, both
// carried by one transform of the stage, so the piece moves, squeezes or
// turns with its picture. Also the plain affine arithmetic behind it.
#pragma once

#include <cstdint>
#include <optional>

#include "effects/SlideRender.h"
#include "swf/SwfRecords.h"

namespace quillet {

// x' = a x + c y + tx, y' = b x + d y + ty; stage twips, y down.
struct StageTransform {
    double a = 1, b = 0, c = 0, d = 1, tx = 0, ty = 0;

    static StageTransform Translate(double x, double y) { return {1, 0, 0, 1, x, y}; }
    // Scales about the point (x, y), which stays where it is.
    static StageTransform ScaleAbout(double sx, double sy, double x, double y) {
        return {sx, 0, 0, sy, x - sx * x, y - sy * y};
    }
    // Turns by `degrees` about the origin; positive turns clockwise on the
    // screen, where y grows downwards.
    static StageTransform Rotate(double degrees);
    static StageTransform From(const SwfMatrix& m);

    // This transform applied after `inner`.
    StageTransform operator*(const StageTransform& inner) const;
    // Rounded to the file's 16.16 terms and whole twips.
    SwfMatrix ToSwf() const;
};

// Colour multipliers (alpha untouched): 1 keeps the picture, less darkens it.
SwfColorTransformAlpha Shade(double brightness);

// A masked copy of a slide on two fresh depths (mask, then copy). The mask
// shape is drawn in stage coordinates; Move carries mask and copy by the same
// stage transform, the copy starting from the slide's matrix at placement.
class SlidePiece {
public:
    SlidePiece() = default;  // nothing placed
    // Nothing is placed (and every call does nothing) for a null slide or one
    // without a character.
    SlidePiece(const SlideOnStage* slide, uint16_t maskId, const StageTransform& transform, MovieContext& ctx,
               std::optional<SwfColorTransformAlpha> colour = std::nullopt);
    bool placed() const { return copyDepth_ != 0; }
    void Move(const StageTransform& transform, MovieContext& ctx,
              std::optional<SwfColorTransformAlpha> colour = std::nullopt) const;
    void Remove(MovieContext& ctx);

private:
    uint16_t maskDepth_ = 0, copyDepth_ = 0;
    StageTransform base_;
};

}  // namespace quillet
