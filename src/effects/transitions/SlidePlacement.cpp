#include "effects/transitions/SlidePlacement.h"

#include <algorithm>
#include <cmath>

#include "effects/StageShapes.h"
#include "swf/SwfTags.h"
#include "swf/SwfWriter.h"

namespace quillet {

SlidePlacement SlidePlacement::Of(const SwfMatrix& m) {
    SlidePlacement p;
    if (m.hasScale) {
        p.a = m.scaleX / 65536.0;
        p.d = m.scaleY / 65536.0;
    }
    if (m.hasRotate) {
        p.b = m.rotateSkew0 / 65536.0;
        p.c = m.rotateSkew1 / 65536.0;
    }
    p.tx = m.translateX;
    p.ty = m.translateY;
    return p;
}

SwfMatrix SlidePlacement::ToMatrix() const {
    SwfMatrix m = SwfMatrix::Scale(ToFixed16(a), ToFixed16(d), SaturateField(std::round(tx)),
                                   SaturateField(std::round(ty)));
    const int32_t skew0 = ToFixed16(b), skew1 = ToFixed16(c);
    if (skew0 != 0 || skew1 != 0) {
        m.SetRotate(skew0, false, true);
        m.SetRotate(skew1, true, true);
    }
    return m;
}

SlidePlacement SlidePlacement::Moved(double dx, double dy) const {
    SlidePlacement p = *this;
    p.tx += dx;
    p.ty += dy;
    return p;
}

SlidePlacement SlidePlacement::ScaledAbout(double sx, double sy, double px, double py) const {
    SlidePlacement p = *this;
    p.a *= sx;
    p.c *= sx;
    p.b *= sy;
    p.d *= sy;
    // Written as the distance from the point, so that a scale of 1 gives the
    // translation back bit for bit.
    p.tx = px + sx * (tx - px);
    p.ty = py + sy * (ty - py);
    return p;
}

SlidePlacement SlidePlacement::ScaledWithin(double sx, double sy) const {
    SlidePlacement p = *this;
    p.a *= sx;
    p.b *= sx;
    p.c *= sy;
    p.d *= sy;
    return p;
}

StageBox SlideBox(const SlideOnStage& slide) {
    const SlidePlacement p = SlidePlacement::Of(slide.matrix);
    StageBox box{p.tx, p.ty, p.tx, p.ty};
    for (double x : {0.0, double(slide.width)})
        for (double y : {0.0, double(slide.height)}) {
            const double sx = p.a * x + p.c * y + p.tx, sy = p.b * x + p.d * y + p.ty;
            box.left = std::min(box.left, sx);
            box.right = std::max(box.right, sx);
            box.top = std::min(box.top, sy);
            box.bottom = std::max(box.bottom, sy);
        }
    return box;
}

StageBox StageBox::Within(const StageBox& other) const {
    return {std::max(left, other.left), std::max(top, other.top), std::min(right, other.right),
            std::min(bottom, other.bottom)};
}

void Reposition(uint16_t depth, const SlidePlacement& placement, MovieContext& ctx, std::optional<double> opacity) {
    std::optional<SwfColorTransformAlpha> alpha;
    if (opacity) {
        // The rounding SetOpacity uses, so both ways give the same alpha.
        const double o = std::clamp(*opacity, 0.0, 1.0);
        alpha = SwfColorTransformAlpha::Alpha(static_cast<int32_t>(o * 256 + 0.5));
    }
    ctx.movie.AddTag(PlaceObject2Tag::Modify(depth, placement.ToMatrix(), alpha));
}

void MoveOneSlide(SlideOnStage* incoming, SlideOnStage* outgoing, bool movesIncoming, int frames, MovieContext& ctx,
                  const std::function<void(uint16_t depth, const SlidePlacement& rest, double p)>& move,
                  const std::function<void(double p)>& alsoAt) {
    PlaceSlide(incoming, ctx);
    SlideOnStage* moving = movesIncoming ? incoming : outgoing;
    uint16_t depth = 0;
    SlidePlacement rest;
    if (ShowsPicture(moving)) {
        rest = SlidePlacement::Of(moving->matrix);
        if (movesIncoming) {
            depth = incoming->depth;
        } else {
            depth = PlaceSlideCopy(outgoing, ctx);
            RemoveSlide(outgoing, ctx);
        }
    }
    for (int i = 1; i <= frames; ++i) {
        const double p = double(i) / frames;
        if (depth != 0) {
            if (movesIncoming || i < frames) move(depth, rest, p);
            else RemoveDepth(depth, ctx);
        }
        if (alsoAt) alsoAt(p);
        EndFrame(ctx);
    }
    if (movesIncoming) RemoveSlide(outgoing, ctx);
}

}  // namespace quillet
