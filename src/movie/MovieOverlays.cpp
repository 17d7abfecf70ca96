#include "movie/MovieOverlays.h"

#include "effects/SlideRender.h"
#include "swf/SwfTags.h"
#include "swf/SwfWriter.h"

namespace quillet {

void MovieOverlays::Show(const OverlayEffect& effect, MovieContext& ctx) {
    Remove(ctx);
    if (effect.IsNone()) return;
    OverlayEffect* used = nullptr;
    for (auto& defined : defined_)
        if (defined->name() == effect.name()) used = defined.get();
    if (!used) {
        defined_.push_back(effect.Clone());
        used = defined_.back().get();
    }
    if (used->characterId == 0) used->Define(ctx);
    shownDepth_ = ctx.NewDepth();
    used->Place(ctx, shownDepth_);
}

void MovieOverlays::Remove(MovieContext& ctx) {
    if (shownDepth_ == 0) return;
    ctx.movie.AddTag(std::make_unique<RemoveObject2Tag>(shownDepth_));
    shownDepth_ = 0;
}

}  // namespace quillet
