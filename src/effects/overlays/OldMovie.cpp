#include "effects/overlays/OldMovie.h"

namespace quillet {

OldMovieEffect::OldMovieEffect() : OverlayEffect("Old Movie") {}

std::unique_ptr<OverlayEffect> OldMovieEffect::Create() const { return std::make_unique<OldMovieEffect>(); }

}  // namespace quillet
