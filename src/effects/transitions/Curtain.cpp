#include "effects/transitions/Curtain.h"

#include "effects/SlideRender.h"
#include "effects/StageShapes.h"
#include "effects/transitions/PagePieces.h"

namespace quillet {

CurtainTransition::CurtainTransition() : TransitionClass("Curtain") {}

bool CurtainTransition::Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const {
    if (!placesSlides()) return true;
    const int n = FrameCount(ctx.fps);
    if (n <= 0) return Transition::Render(incoming, outgoing, ctx);

    // The halves of the stage, each a masked copy of the outgoing slide above
    // the incoming one, gather towards their own edge: the stage transform
    // squeezes mask and picture together in x about that edge. The outgoing
    // slide itself goes at once, so nothing of it shows between the halves.
    const double w = ctx.StageWidth(), h = ctx.StageHeight();
    const int32_t half = ctx.StageWidth() / 2;
    PlaceSlide(incoming, ctx);
    SlidePiece left, right;
    if (outgoing && outgoing->characterId != 0) {
        const uint16_t leftMask = DefinePolygons({RectanglePolygon(0, 0, half, int32_t(h))}, ctx);
        const uint16_t rightMask = DefinePolygons({RectanglePolygon(half, 0, int32_t(w) - half, int32_t(h))}, ctx);
        left = SlidePiece(outgoing, leftMask, {}, ctx);
        right = SlidePiece(outgoing, rightMask, {}, ctx);
    }
    RemoveSlide(outgoing, ctx);
    for (int i = 1; i <= n; ++i) {
        if (i == n) {
            // Fully drawn aside: only the incoming slide is left.
            left.Remove(ctx);
            right.Remove(ctx);
        } else {
            // Slow to start, quick in the middle, settling at the sides.
            const double p = static_cast<double>(i) / n;
            const double open = p * p * (3 - 2 * p);
            const double s = 1 - open;
            left.Move(StageTransform::ScaleAbout(s, 1, 0, 0), ctx);
            right.Move(StageTransform::ScaleAbout(s, 1, w, 0), ctx);
        }
        EndFrame(ctx);
    }
    return true;
}

}  // namespace quillet
