#include "effects/SlideRender.h"

#include "swf/SwfTags.h"
#include "swf/SwfWriter.h"

namespace quillet {

int32_t MovieContext::StageWidth() const { return movie.FrameRect().Width(); }
int32_t MovieContext::StageHeight() const { return movie.FrameRect().Height(); }

void PlaceSlide(SlideOnStage* slide, MovieContext& ctx, std::optional<SwfColorTransformAlpha> colorTransform) {
    if (!slide || slide->characterId == 0) return;
    slide->matrix = SwfMatrix::Translate(slide->x, slide->y);
    auto place = PlaceObject2Tag::Place(slide->depth, slide->characterId, slide->matrix, colorTransform);
    if (!slide->instanceName.empty()) place->name = slide->instanceName;
    ctx.movie.AddTag(std::move(place));
}

void RemoveSlide(const SlideOnStage* slide, MovieContext& ctx) {
    if (!slide || slide->characterId == 0) return;
    ctx.movie.AddTag(std::make_unique<RemoveObject2Tag>(slide->depth));
}

uint16_t PlaceSlideCopy(const SlideOnStage* slide, MovieContext& ctx) {
    if (!slide || slide->characterId == 0) return 0;
    uint16_t depth = ctx.NewDepth();
    SwfMatrix m = SwfMatrix::Scale(slide->matrix.scaleX, slide->matrix.scaleY, slide->matrix.translateX,
                                   slide->matrix.translateY);
    ctx.movie.AddTag(PlaceObject2Tag::Place(depth, slide->characterId, m));
    return depth;
}

void SetOpacity(uint16_t depth, double opacity, MovieContext& ctx) {
    if (opacity < 0) opacity = 0;
    if (opacity > 1) opacity = 1;
    auto alpha = static_cast<int32_t>(static_cast<uint16_t>(opacity * 256 + 0.5));
    ctx.movie.AddTag(PlaceObject2Tag::Modify(depth, std::nullopt, SwfColorTransformAlpha::Alpha(alpha)));
}

void EndFrame(MovieContext& ctx) { ctx.movie.AddTag(std::make_unique<ShowFrameTag>()); }

bool PassFrames(SlideOnStage* incoming, SlideOnStage* outgoing, int frames, MovieContext& ctx) {
    PlaceSlide(incoming, ctx);
    for (int i = 0; i < frames; ++i) EndFrame(ctx);
    RemoveSlide(outgoing, ctx);
    return true;
}

}  // namespace quillet
