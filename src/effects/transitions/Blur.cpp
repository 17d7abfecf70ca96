#include "effects/transitions/Blur.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "effects/SlideRender.h"
#include "swf/SwfTags.h"
#include "swf/SwfWriter.h"

namespace quillet {

namespace {

constexpr int kCopies = 8;  // points on the ring; the first copy is the slide itself

// The ring's widest radius: a fortieth of the stage's diagonal (16 px at 640x480).
double MaxRadius(const MovieContext& ctx) {
    return std::hypot(static_cast<double>(ctx.StageWidth()), static_cast<double>(ctx.StageHeight())) / 40.0;
}

// Opacity of copy k (1-based, bottom first) so that the K copies together
// show the average of their pictures at `opacity` over what lies beneath:
// each copy keeps opacity/K of the result and the background 1 - opacity.
double CopyOpacity(int k, double opacity) {
    const double denominator = kCopies - (kCopies - k) * opacity;
    return denominator > 0 ? opacity / denominator : 0;
}

SwfMatrix Shifted(const SwfMatrix& rest, int k, double radius) {
    const double angle = 2 * std::numbers::pi * (k - 1) / kCopies;
    SwfMatrix m = rest;
    m.translateX = SaturateField(rest.translateX + std::trunc(radius * std::cos(angle)));
    m.translateY = SaturateField(rest.translateY + std::trunc(radius * std::sin(angle)));
    return m;
}

}  // namespace

BlurTransition::BlurTransition(std::string name, bool focusesIn) : Transition(std::move(name)), focusesIn_(focusesIn) {}

bool BlurTransition::Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const {
    if (!placesSlides()) return true;
    const int n = FrameCount(ctx.fps);
    if (n <= 0) return Transition::Render(incoming, outgoing, ctx);

    // Blur In stacks the copies on the incoming slide, the slide itself at
    // the bottom; Blur Out replaces the outgoing slide with a stack of copies
    // above the incoming one.
    PlaceSlide(incoming, ctx);
    SlideOnStage* blurred = focusesIn_ ? incoming : outgoing;
    std::vector<uint16_t> depths;
    SwfMatrix rest;
    if (blurred && blurred->characterId != 0) {
        rest = blurred->matrix;
        if (focusesIn_) depths.push_back(blurred->depth);
        while (static_cast<int>(depths.size()) < kCopies) depths.push_back(PlaceSlideCopy(blurred, ctx));
        if (!focusesIn_) RemoveSlide(outgoing, ctx);
    }

    const double maxRadius = MaxRadius(ctx);
    for (int i = 1; i <= n; ++i) {
        const double p = static_cast<double>(i) / n;
        const double opacity = focusesIn_ ? p : 1 - p;
        const double radius = maxRadius * (focusesIn_ ? 1 - p : p);
        for (int k = 1; k <= static_cast<int>(depths.size()); ++k) {
            const double a = CopyOpacity(k, opacity);
            ctx.movie.AddTag(PlaceObject2Tag::Modify(
                depths[k - 1], Shifted(rest, k, radius),
                SwfColorTransformAlpha::Alpha(static_cast<int32_t>(static_cast<uint16_t>(a * 256 + 0.5)))));
        }
        EndFrame(ctx);
    }
    // On the last frame Blur In's copies coincide with the slide, which is
    // fully opaque at the bottom of the stack; Blur Out's are transparent.
    for (size_t k = focusesIn_ ? 1 : 0; k < depths.size(); ++k)
        ctx.movie.AddTag(std::make_unique<RemoveObject2Tag>(depths[k]));
    if (focusesIn_) RemoveSlide(outgoing, ctx);
    return true;
}

}  // namespace quillet
