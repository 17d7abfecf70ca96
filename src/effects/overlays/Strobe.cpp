#include "effects/overlays/Strobe.h"

namespace quillet {

StrobeEffect::StrobeEffect() : OverlayEffect("Strobe") {}

std::unique_ptr<OverlayEffect> StrobeEffect::Create() const { return std::make_unique<StrobeEffect>(); }

}  // namespace quillet
