#include "effects/overlays/Strobe.h"

#include <algorithm>
#include <cmath>

#include "effects/SlideRender.h"
#include "swf/SwfTags.h"
#include "swf/SwfWriter.h"

namespace quillet {

StrobeEffect::StrobeEffect() : OverlayEffect("Strobe") {}

std::unique_ptr<OverlayEffect> StrobeEffect::Create() const { return std::make_unique<StrobeEffect>(); }

void StrobeEffect::Define(MovieContext& ctx) {
    // A white light over the whole stage that flashes and dies away, two and
    // a half times a second: a timeline of opacities, no program.
    const uint16_t lightId = ctx.NewCharacterId();
    ctx.movie.AddTag(DefineShapeTag::Rectangle(lightId, SwfRect(0, ctx.StageWidth(), 0, ctx.StageHeight()),
                                               SwfFillStyle::MakeSolid(SwfColor(255, 255, 255))));
    const double fps = ctx.fps > 0 ? ctx.fps : 12;
    const int period = std::max(3, static_cast<int>(std::lround(0.4 * fps)));
    characterId = ctx.NewCharacterId();
    auto sprite = std::make_unique<DefineSpriteTag>(characterId);
    for (int frame = 0; frame < period; ++frame) {
        // Bright at the flash, then falling off as a square.
        const double fade = 1.0 - static_cast<double>(frame) / period;
        const auto alpha = SwfColorTransformAlpha::Alpha(static_cast<int32_t>(std::lround(0.5 * fade * fade * 256)));
        if (frame == 0) sprite->Add(PlaceObject2Tag::Place(1, lightId, SwfMatrix(), alpha));
        else sprite->Add(PlaceObject2Tag::Modify(1, std::nullopt, alpha));
        sprite->Add(std::make_unique<ShowFrameTag>());
    }
    ctx.movie.AddTag(std::move(sprite));
}

}  // namespace quillet
