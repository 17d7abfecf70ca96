#include "effects/transitions/PagePieces.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "swf/SwfTags.h"
#include "swf/SwfWriter.h"

namespace quillet {

StageTransform StageTransform::Rotate(double degrees) {
    // Whole quarter turns come out exact, so an upright end is exactly upright.
    const double turns = degrees / 90.0;
    if (turns == std::round(turns)) {
        static constexpr double kSin[] = {0, 1, 0, -1};
        const int q = static_cast<int>(std::fmod(std::fmod(turns, 4.0) + 4.0, 4.0));
        const double s = kSin[q], c = kSin[(q + 1) % 4];
        return {c, s, -s, c, 0, 0};
    }
    const double r = degrees * std::numbers::pi / 180.0;
    return {std::cos(r), std::sin(r), -std::sin(r), std::cos(r), 0, 0};
}

StageTransform StageTransform::From(const SwfMatrix& m) {
    return {m.scaleX / 65536.0, m.rotateSkew0 / 65536.0, m.rotateSkew1 / 65536.0, m.scaleY / 65536.0,
            double(m.translateX), double(m.translateY)};
}

StageTransform StageTransform::operator*(const StageTransform& in) const {
    return {a * in.a + c * in.b, b * in.a + d * in.b, a * in.c + c * in.d, b * in.c + d * in.d,
            a * in.tx + c * in.ty + tx, b * in.tx + d * in.ty + ty};
}

SwfMatrix StageTransform::ToSwf() const {
    auto twips = [](double v) { return static_cast<int32_t>(std::lround(v)); };
    SwfMatrix m = SwfMatrix::Scale(ToFixed16(a), ToFixed16(d), twips(tx), twips(ty));
    const int32_t skew0 = ToFixed16(b), skew1 = ToFixed16(c);
    if (skew0 != 0 || skew1 != 0) {
        m.SetRotate(skew0, false, true);
        m.SetRotate(skew1, true, true);
    }
    return m;
}

SwfColorTransformAlpha Shade(double brightness) {
    SwfColorTransformAlpha ct;
    ct.hasMultTerms = true;
    const int32_t mult = static_cast<int32_t>(std::lround(std::clamp(brightness, 0.0, 1.0) * 256));
    ct.redMult = ct.greenMult = ct.blueMult = mult;
    return ct;
}

SlidePiece::SlidePiece(const SlideOnStage* slide, uint16_t maskId, const StageTransform& transform,
                       MovieContext& ctx, std::optional<SwfColorTransformAlpha> colour) {
    if (!slide || slide->characterId == 0) return;
    base_ = StageTransform::From(slide->matrix);
    maskDepth_ = ctx.NewDepth();
    copyDepth_ = ctx.NewDepth();
    auto clip = PlaceObject2Tag::Place(maskDepth_, maskId, transform.ToSwf());
    clip->clipDepth = copyDepth_;
    ctx.movie.AddTag(std::move(clip));
    ctx.movie.AddTag(PlaceObject2Tag::Place(copyDepth_, slide->characterId, (transform * base_).ToSwf(), colour));
}

void SlidePiece::Move(const StageTransform& transform, MovieContext& ctx,
                      std::optional<SwfColorTransformAlpha> colour) const {
    if (!placed()) return;
    ctx.movie.AddTag(PlaceObject2Tag::Modify(maskDepth_, transform.ToSwf()));
    ctx.movie.AddTag(PlaceObject2Tag::Modify(copyDepth_, (transform * base_).ToSwf(), colour));
}

void SlidePiece::Remove(MovieContext& ctx) {
    if (!placed()) return;
    ctx.movie.AddTag(std::make_unique<RemoveObject2Tag>(maskDepth_));
    ctx.movie.AddTag(std::make_unique<RemoveObject2Tag>(copyDepth_));
    maskDepth_ = copyDepth_ = 0;
}

}  // namespace quillet
