#include "effects/transitions/BarsMasks.h"

#include <algorithm>
#include <cmath>

#include "swf/SwfTags.h"
#include "swf/SwfWriter.h"

namespace quillet {

StageArea VisibleArea(const SlideOnStage& slide, const MovieContext& ctx) {
    const int64_t w = ctx.StageWidth(), h = ctx.StageHeight();
    const SwfMatrix& m = slide.matrix;
    int64_t x0 = m.translateX, y0 = m.translateY;
    int64_t x1 = x0 + static_cast<int64_t>(slide.width) * m.scaleX / 65536;
    int64_t y1 = y0 + static_cast<int64_t>(slide.height) * m.scaleY / 65536;
    if (x1 < x0) std::swap(x0, x1);  // a mirroring matrix
    if (y1 < y0) std::swap(y0, y1);
    x0 = std::max<int64_t>(x0, 0);
    y0 = std::max<int64_t>(y0, 0);
    x1 = std::min(x1, w);
    y1 = std::min(y1, h);
    if (x1 <= x0 || y1 <= y0) return {0, 0, static_cast<int32_t>(w), static_cast<int32_t>(h)};
    return {static_cast<int32_t>(x0), static_cast<int32_t>(y0), static_cast<int32_t>(x1 - x0),
            static_cast<int32_t>(y1 - y0)};
}

StageArea HomeArea(const SlideOnStage& slide, const MovieContext& ctx) {
    SlideOnStage home = slide;
    home.matrix = SwfMatrix::Translate(slide.x, slide.y);
    return VisibleArea(home, ctx);
}

std::vector<int32_t> Cuts(int32_t start, int32_t length, int parts) {
    parts = std::max(parts, 1);
    std::vector<int32_t> cuts(static_cast<size_t>(parts) + 1);
    for (int k = 0; k <= parts; ++k) cuts[k] = start + static_cast<int32_t>(int64_t(length) * k / parts);
    return cuts;
}

int32_t Remaining(int32_t distance, double progress) {
    return static_cast<int32_t>(std::trunc(distance * (1.0 - std::clamp(progress, 0.0, 1.0))));
}

int32_t AlphaFor(double opacity) { return static_cast<int32_t>(std::clamp(opacity, 0.0, 1.0) * 256.0 + 0.5); }

MaskedPiece::MaskedPiece(const SlideOnStage& slide, uint16_t maskId, bool morph, const PieceState& state,
                         MovieContext& ctx)
    : slideMatrix_(SwfMatrix::Scale(slide.matrix.scaleX, slide.matrix.scaleY, slide.matrix.translateX,
                                    slide.matrix.translateY)),
      morph_(morph),
      state_(state) {
    maskDepth_ = ctx.NewDepth();
    const uint16_t copyDepth = ctx.NewDepth();
    auto mask = PlaceObject2Tag::Place(maskDepth_, maskId, SwfMatrix::Translate(state.maskX, state.maskY));
    mask->clipDepth = copyDepth;
    if (morph_) mask->ratio = state.ratio;
    ctx.movie.AddTag(std::move(mask));
    std::optional<SwfColorTransformAlpha> colour;
    if (state.alpha != 256) colour = SwfColorTransformAlpha::Alpha(state.alpha);
    ctx.movie.AddTag(PlaceObject2Tag::Place(copyDepth, slide.characterId, SlideMatrix(state), colour));
}

SwfMatrix MaskedPiece::SlideMatrix(const PieceState& state) const {
    SwfMatrix m = slideMatrix_;
    m.translateX += state.slideX;
    m.translateY += state.slideY;
    return m;
}

void MaskedPiece::Update(const PieceState& state, MovieContext& ctx) {
    if (maskDepth_ == 0 || state == state_) return;
    if (state.maskX != state_.maskX || state.maskY != state_.maskY || (morph_ && state.ratio != state_.ratio)) {
        auto mask = PlaceObject2Tag::Modify(maskDepth_);
        if (state.maskX != state_.maskX || state.maskY != state_.maskY)
            mask->matrix = SwfMatrix::Translate(state.maskX, state.maskY);
        if (morph_ && state.ratio != state_.ratio) mask->ratio = state.ratio;
        ctx.movie.AddTag(std::move(mask));
    }
    if (state.slideX != state_.slideX || state.slideY != state_.slideY || state.alpha != state_.alpha) {
        auto copy = PlaceObject2Tag::Modify(static_cast<uint16_t>(maskDepth_ + 1));
        if (state.slideX != state_.slideX || state.slideY != state_.slideY) copy->matrix = SlideMatrix(state);
        if (state.alpha != state_.alpha) copy->colorTransform = SwfColorTransformAlpha::Alpha(state.alpha);
        ctx.movie.AddTag(std::move(copy));
    }
    state_ = state;
}

void MaskedPiece::Remove(MovieContext& ctx) {
    if (maskDepth_ == 0) return;
    ctx.movie.AddTag(std::make_unique<RemoveObject2Tag>(static_cast<uint16_t>(maskDepth_ + 1)));
    ctx.movie.AddTag(std::make_unique<RemoveObject2Tag>(maskDepth_));
    maskDepth_ = 0;
}

}  // namespace quillet
