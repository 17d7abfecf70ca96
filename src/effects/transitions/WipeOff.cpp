#include "effects/transitions/WipeOff.h"

#include "effects/StageShapes.h"
#include "effects/WipeMask.h"
#include "effects/transitions/KeywordTables.h"
#include "swf/SwfTags.h"
#include "swf/SwfWriter.h"

namespace quillet {

WipeOffTransition::WipeOffTransition() : TransitionClass("Wipe Off", kWipeOffOptions) {}

bool WipeOffTransition::Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const {
    if (!placesSlides()) return true;
    const int n = FrameCount(ctx.fps);
    if (n <= 0) return Transition::Render(incoming, outgoing, ctx);

    // The incoming slide lies in place from the start; a copy of the outgoing
    // one above it shows through a mask that starts covering the stage and
    // moves on in the wipe's direction until it has left it. That is the
    // mask of a wipe the opposite way, run backwards, so that for the
    // diagonal directions the slanted edge trails.
    PlaceSlide(incoming, ctx);
    const int32_t d = direction();
    const int32_t opposite = d < 4 ? d ^ 1 : d < 8 ? 11 - d : 19 - d;
    const WipeMask mask = MakeWipeMask(d >= 0 && d < kWipeDirectionCount ? opposite : 3, ctx.StageWidth(),
                                       ctx.StageHeight());
    uint16_t copyDepth = 0;
    if (outgoing && outgoing->characterId != 0) {
        const uint16_t shapeId = ctx.NewCharacterId();
        ctx.movie.AddTag(std::make_unique<DefineShapeTag>(shapeId, mask.bounds, mask.shape));
        copyDepth = PlaceMaskedCopy(outgoing, shapeId, ctx);
        RemoveSlide(outgoing, ctx);
    }
    for (int i = 1; i <= n; ++i) {
        const double progress = static_cast<double>(i) / n;
        if (copyDepth != 0)
            ModifyMask(copyDepth - 1, SwfMatrix::Translate(mask.OffsetX(1 - progress), mask.OffsetY(1 - progress)),
                       std::nullopt, ctx);
        EndFrame(ctx);
    }
    RemoveDepth(copyDepth, ctx);
    RemoveDepth(copyDepth == 0 ? 0 : copyDepth - 1, ctx);
    return true;
}

}  // namespace quillet
