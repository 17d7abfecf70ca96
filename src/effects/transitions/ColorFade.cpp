#include "effects/transitions/ColorFade.h"

#include <algorithm>

#include "effects/SlideRender.h"
#include "swf/SwfTags.h"
#include "swf/SwfWriter.h"
#include "xml/XmlReader.h"
#include "xml/XmlWriter.h"

namespace quillet {

namespace {

constinit const OptionSpec kOptions[] = {{.kind = OptionKind::Color,
                                          .attribute = "fade_color",
                                          .label = "Color:",
                                          .defaultValue = 0xFFFFFF,  // white
                                          .labelId = OptionLabelId(0),
                                          .controlId = OptionControlId(0)}};

}  // namespace

ColorFadeTransition::ColorFadeTransition() : TransitionClass("Color Fade", kOptions) {}

bool ColorFadeTransition::Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const {
    if (!placesSlides()) return true;
    // Half the frames fade the colour in, half fade it out; an odd count
    // drops its last frame, and a single frame leaves no time for either.
    const int half = FrameCount(ctx.fps) / 2;
    if (half <= 0) return Transition::Render(incoming, outgoing, ctx);

    // A stage-sized sheet of the colour on a fresh depth above both slides,
    // placed fully transparent. The colour keeps red in its lowest byte.
    const uint16_t depth = ctx.NewDepth();
    const uint16_t shapeId = ctx.NewCharacterId();
    const uint32_t rgb = fadeColor();
    const SwfColor color(static_cast<uint8_t>(rgb), static_cast<uint8_t>(rgb >> 8), static_cast<uint8_t>(rgb >> 16));
    ctx.movie.AddTag(DefineShapeTag::Rectangle(shapeId, SwfRect(0, ctx.StageWidth(), 0, ctx.StageHeight()),
                                               SwfFillStyle::MakeSolid(color)));
    ctx.movie.AddTag(PlaceObject2Tag::Place(depth, shapeId, SwfMatrix(), SwfColorTransformAlpha::Alpha(0)));

    const double step = 1.0 / half;
    double p = 0.0;
    for (int i = 0; i < half; ++i) {
        p = std::min(p + step, 1.0);
        SetOpacity(depth, p, ctx);
        EndFrame(ctx);
    }
    // The slides change under the full colour.
    PlaceSlide(incoming, ctx);
    RemoveSlide(outgoing, ctx);
    double q = 1.0;
    for (int i = 0; i < half; ++i) {
        q = std::max(q - step, 0.0);
        SetOpacity(depth, q, ctx);
        EndFrame(ctx);
    }
    ctx.movie.AddTag(std::make_unique<RemoveObject2Tag>(depth));
    return true;
}

}  // namespace quillet
