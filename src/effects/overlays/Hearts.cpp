#include "effects/overlays/Hearts.h"

namespace quillet {

HeartsEffect::HeartsEffect() : OverlayEffect("Hearts") {}

std::unique_ptr<OverlayEffect> HeartsEffect::Create() const { return std::make_unique<HeartsEffect>(); }

}  // namespace quillet
