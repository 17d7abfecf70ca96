#include "effects/transitions/PageFlip.h"

#include <cmath>
#include <numbers>

#include "effects/SlideRender.h"
#include "effects/StageShapes.h"
#include "effects/transitions/PagePieces.h"
#include "swf/SwfShape.h"
#include "swf/SwfTags.h"
#include "swf/SwfWriter.h"

namespace quillet {

namespace {

// A rectangle filled with black running from `startAlpha` on its left edge
// to `endAlpha` on its right.
uint16_t DefineFade(int32_t x, int32_t width, int32_t height, uint8_t startAlpha, uint8_t endAlpha,
                    MovieContext& ctx) {
    SwfShapeBuilder b;
    const SwfMatrix across = SwfMatrix::ScaleF(width / 32768.0, height / 32768.0, x + width / 2, height / 2);
    b.SetFill1(b.AddFillStyle(SwfFillStyle::MakeLinearGradient(
        across, {{0, SwfColor(0, 0, 0, startAlpha)}, {255, SwfColor(0, 0, 0, endAlpha)}})));
    b.Rectangle(x, 0, width, height);
    const uint16_t id = ctx.NewCharacterId();
    ctx.movie.AddTag(std::make_unique<DefineShape3Tag>(id, b.Bounds(), b.Build()));
    return id;
}

// A shape on its own fresh depth, moved by a stage transform and an opacity.
struct Overlay {
    uint16_t depth = 0;
    void Show(uint16_t id, const StageTransform& t, double opacity, MovieContext& ctx) {
        const auto alpha = SwfColorTransformAlpha::Opacity(opacity);
        if (depth == 0) {
            depth = ctx.NewDepth();
            ctx.movie.AddTag(PlaceObject2Tag::Place(depth, id, t.ToSwf(), alpha));
        } else {
            ctx.movie.AddTag(PlaceObject2Tag::Modify(depth, t.ToSwf(), alpha));
        }
    }
    void Remove(MovieContext& ctx) {
        RemoveDepth(depth, ctx);
        depth = 0;
    }
};

}  // namespace

PageFlipTransition::PageFlipTransition() : TransitionClass("Page Flip") {}

// The stage is an open book with its spine down the middle. The right half
// of the outgoing slide is a page that turns over onto the left: seen from
// the front it narrows towards the spine (its width times the cosine of the
// turn), and from the half-way point its back opens out over the left half,
// carrying the left half of the incoming slide. The page darkens towards its
// free edge as it stands up and comes a little towards us (a few percent
// taller), and it casts a soft shadow beside its free edge onto the page it
// uncovers or is about to cover. Under the turning page the incoming slide
// shows on the right from the start; the left half of the outgoing slide
// stays where it was until the page's back covers it.
//
// Depths, bottom up: the incoming slide masked to the right half (until the
// end), the outgoing left half (still), the shadow, the page's front with its
// shading, later the page's back with its shading. Every piece of a slide is
// a masked copy, and the outgoing slide itself goes at once.
bool PageFlipTransition::Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const {
    if (!placesSlides()) return true;
    const int n = FrameCount(ctx.fps);
    if (n <= 0) return Transition::Render(incoming, outgoing, ctx);
    if (n == 1) {
        // The only frame is the page turned.
        PlaceSlide(incoming, ctx);
        EndFrame(ctx);
        RemoveSlide(outgoing, ctx);
        return true;
    }

    const int32_t width = ctx.StageWidth(), height = ctx.StageHeight(), spine = width / 2;
    const double half = width - spine, middle = height / 2.0;
    const uint16_t leftHalf = DefinePolygons({RectanglePolygon(0, 0, spine, height)}, ctx);
    const uint16_t rightHalf = DefinePolygons({RectanglePolygon(spine, 0, width - spine, height)}, ctx);
    // Shading over the right half, light at the spine, dark at the free edge;
    // mirrored about the spine for the back. The shadow: dark against the
    // free edge, fading out over a quarter of a page.
    const uint16_t shading = DefineFade(spine, width - spine, height, 40, 200, ctx);
    const uint16_t shadow = DefineFade(0, (width - spine) / 4, height, 150, 0, ctx);

    // The page at `p` of the turn: how far across it reaches from the spine
    // (positive on the right, negative once over on the left), how upright
    // it stands (0 flat, 1 edge on) and its transform of the stage.
    auto across = [](double p) { return std::cos(std::numbers::pi * p); };
    auto standing = [](double p) { return std::sin(std::numbers::pi * p); };
    auto page = [&](double p) {
        return StageTransform::ScaleAbout(std::abs(across(p)), 1 + 0.06 * standing(p), spine, middle);
    };
    const StageTransform mirror = StageTransform::ScaleAbout(-1, 1, spine, 0);
    // The shadow starts at the free edge and points away from the spine.
    auto cast = [&](double p) {
        const double edge = spine + half * across(p), side = across(p) >= 0 ? 1 : -1;
        return StageTransform::Translate(edge, 0) * StageTransform::ScaleAbout(side * (0.3 + standing(p)), 1, 0, 0);
    };

    const uint16_t incomingMask = PlaceMaskedSlide(incoming, rightHalf, ctx);
    SlidePiece still(outgoing, leftHalf, {}, ctx);
    Overlay shadowOverlay, shade;
    if (outgoing && outgoing->characterId != 0) shadowOverlay.Show(shadow, cast(1.0 / n), 0.8 * standing(1.0 / n), ctx);
    SlidePiece front(outgoing, rightHalf, page(1.0 / n), ctx);
    if (front.placed()) shade.Show(shading, page(1.0 / n), standing(1.0 / n), ctx);
    SlidePiece back;
    RemoveSlide(outgoing, ctx);
    for (int i = 1; i <= n; ++i) {
        const double p = static_cast<double>(i) / n;
        if (i == n) {
            // The page lies flat on the left: the incoming slide, whole.
            RemoveDepth(incomingMask, ctx);
            still.Remove(ctx);
            shadowOverlay.Remove(ctx);
            front.Remove(ctx);
            back.Remove(ctx);
            shade.Remove(ctx);
        } else if (across(p) > 1e-9) {
            if (i > 1) {
                front.Move(page(p), ctx);
                if (front.placed()) {
                    shade.Show(shading, page(p), standing(p), ctx);
                    shadowOverlay.Show(shadow, cast(p), 0.8 * standing(p), ctx);
                }
            }
        } else {
            // Past edge on: the front is gone; the back, with shading of its
            // own on top, opens over the left.
            front.Remove(ctx);
            if (across(p) < -1e-9 && incoming && incoming->characterId != 0) {
                if (!back.placed()) {
                    shade.Remove(ctx);
                    back = SlidePiece(incoming, leftHalf, page(p), ctx);
                } else {
                    back.Move(page(p), ctx);
                }
                shade.Show(shading, page(p) * mirror, standing(p), ctx);
                shadowOverlay.Show(shadow, cast(p), 0.8 * standing(p), ctx);
            } else {
                shade.Remove(ctx);
                shadowOverlay.Remove(ctx);
            }
        }
        EndFrame(ctx);
    }
    return true;
}

}  // namespace quillet
