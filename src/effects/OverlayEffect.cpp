#include "effects/OverlayEffect.h"

#include "effects/SlideRender.h"
#include "effects/overlays/Bubbles.h"
#include "effects/overlays/Fireworks.h"
#include "effects/overlays/Hearts.h"
#include "effects/overlays/OldMovie.h"
#include "effects/overlays/Snow.h"
#include "effects/overlays/Strobe.h"
#include "swf/SwfTags.h"
#include "swf/SwfWriter.h"

namespace quillet {

OverlayEffect::OverlayEffect() : name_("None") {}

OverlayEffect::OverlayEffect(std::string name) : name_(std::move(name)) {}

OverlayEffect::~OverlayEffect() = default;

std::unique_ptr<OverlayEffect> OverlayEffect::Create() const { return std::make_unique<OverlayEffect>(); }

std::unique_ptr<OverlayEffect> OverlayEffect::Clone() const {
    std::unique_ptr<OverlayEffect> copy = Create();
    copy->SetName(name_);
    return copy;
}

void OverlayEffect::Define(MovieContext&) {}

void OverlayEffect::Place(MovieContext& ctx, uint16_t depth) const {
    if (characterId == 0) return;
    ctx.movie.AddTag(PlaceObject2Tag::Place(depth, characterId, SwfMatrix()));
}

OverlayEffectRegistry::OverlayEffectRegistry() {
    // Menu order, not sorted.
    Add(std::make_unique<OverlayEffect>());
    Add(std::make_unique<BubblesEffect>());
    Add(std::make_unique<FireworksEffect>());
    Add(std::make_unique<HeartsEffect>());
    Add(std::make_unique<OldMovieEffect>());
    Add(std::make_unique<SnowEffect>());
    Add(std::make_unique<StrobeEffect>());
}

const OverlayEffectRegistry& OverlayEffectRegistry::instance() {
    static const OverlayEffectRegistry registry;
    return registry;
}

std::unique_ptr<OverlayEffect> MakeOverlayEffect(const std::string& name) {
    if (name.empty()) return std::make_unique<OverlayEffect>(std::string());
    if (const OverlayEffect* prototype = OverlayEffectRegistry::instance().Find(name)) return prototype->Create();
    return std::make_unique<OverlayEffect>();
}

}  // namespace quillet
