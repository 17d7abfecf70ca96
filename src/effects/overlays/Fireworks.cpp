#include "effects/overlays/Fireworks.h"

namespace quillet {

FireworksEffect::FireworksEffect() : OverlayEffect("Fireworks") {}

std::unique_ptr<OverlayEffect> FireworksEffect::Create() const { return std::make_unique<FireworksEffect>(); }

}  // namespace quillet
