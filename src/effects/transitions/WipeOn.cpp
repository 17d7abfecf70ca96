#include "effects/transitions/WipeOn.h"

#include "effects/SlideRender.h"
#include "effects/WipeMask.h"
#include "effects/transitions/KeywordTables.h"
#include "swf/SwfTags.h"
#include "swf/SwfWriter.h"

namespace quillet {

WipeOnTransition::WipeOnTransition() : WipeOnTransition("Wipe On") {}

WipeOnTransition::WipeOnTransition(std::string name) : TransitionClass(std::move(name), kWipeOnOptions) {}

bool WipeOnTransition::Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const {
    if (!placesSlides()) return true;
    const int n = FrameCount(ctx.fps);
    // Without frames there is nothing to wipe: the slides simply change.
    if (n <= 0) return Transition::Render(incoming, outgoing, ctx);
    if (!incoming || incoming->characterId == 0) return PassFrames(incoming, outgoing, n, ctx);

    const WipeMask mask = MakeWipeMask(direction(), ctx.StageWidth(), ctx.StageHeight());
    const uint16_t shapeId = ctx.NewCharacterId();
    ctx.movie.AddTag(std::make_unique<DefineShapeTag>(shapeId, mask.bounds, mask.shape));

    // The mask takes a fresh depth and clips the one right above it, where
    // the incoming slide moves for good: later tags for the slide (camera
    // moves, the next transition) address it there.
    const uint16_t maskDepth = ctx.NewDepth();
    incoming->depth = ctx.NewDepth();
    auto clip = PlaceObject2Tag::Place(maskDepth, shapeId, SwfMatrix::Translate(mask.startX, mask.startY));
    clip->clipDepth = incoming->depth;
    ctx.movie.AddTag(std::move(clip));
    PlaceSlide(incoming, ctx);

    // One equal step a frame; the last frame has the mask home, covering the
    // stage, so the slide shows whole when the mask goes.
    for (int i = 1; i <= n; ++i) {
        const double progress = static_cast<double>(i) / n;
        ctx.movie.AddTag(
            PlaceObject2Tag::Modify(maskDepth, SwfMatrix::Translate(mask.OffsetX(progress), mask.OffsetY(progress))));
        EndFrame(ctx);
    }
    ctx.movie.AddTag(std::make_unique<RemoveObject2Tag>(maskDepth));
    RemoveSlide(outgoing, ctx);
    return true;
}

}  // namespace quillet
