#include "effects/overlays/Bubbles.h"

namespace quillet {

BubblesEffect::BubblesEffect() : OverlayEffect("Bubbles") {}

std::unique_ptr<OverlayEffect> BubblesEffect::Create() const { return std::make_unique<BubblesEffect>(); }

}  // namespace quillet
