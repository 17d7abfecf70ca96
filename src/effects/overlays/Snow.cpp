#include "effects/overlays/Snow.h"

namespace quillet {

SnowEffect::SnowEffect() : OverlayEffect("Snow") {}

std::unique_ptr<OverlayEffect> SnowEffect::Create() const { return std::make_unique<SnowEffect>(); }

}  // namespace quillet
