#include "effects/overlays/Fireworks.h"

#include <algorithm>
#include <cmath>

#include "effects/overlays/OverlayParts.h"
#include "swf/SwfTags.h"
#include "swf/SwfWriter.h"

namespace quillet {

FireworksEffect::FireworksEffect() : OverlayEffect("Fireworks") {}

std::unique_ptr<OverlayEffect> FireworksEffect::Create() const { return std::make_unique<FireworksEffect>(); }

void FireworksEffect::Place(MovieContext& ctx, uint16_t depth) const {
    if (characterId == 0) return;
    ctx.movie.AddTag(PlaceObject2Tag::Place(depth, characterId));
}

void FireworksEffect::Define(MovieContext& ctx) {
    const double w = StagePixelsWide(ctx), h = StagePixelsHigh(ctx), fps = ctx.fps > 0 ? ctx.fps : 12;
    const double k = w / 640;

    // A glowing spark, white: each burst colours its sparks.
    SwfShapeBuilder spark;
    const int32_t r = 120;
    spark.SetFill1(spark.AddFillStyle(RadialFill(0, 0, r,
                                                 {{0, SwfColor(255, 255, 255, 255)},
                                                  {120, SwfColor(255, 255, 255, 230)},
                                                  {255, SwfColor(255, 255, 255, 0)}})));
    AddCircle(spark, 0, 0, r);
    const uint16_t shapeId = DefineAlphaShape(spark, ctx);

    // A spark flies out in a random direction at up to fw_scale px a frame,
    // slowed by drag and pulled down a little, fading out over `life`. Most
    // travel nearly the same distance (a ball of sparks), the fastest 28 % of
    // the stage's width.
    const double drag = std::pow(0.92, 12 / fps);
    const int lifeFrames = std::max(6, static_cast<int>(std::lround(1.4 * fps)));
    const std::vector<std::pair<std::string, double>> sparkValues = {
        {"V", 0.28 * w * (1 - drag)}, {"D", drag}, {"G", 0.4 * k * (12 / fps) * (12 / fps)},
        {"L", lifeFrames}, {"K", 100 * k}};
    const std::string init = FillIn(
        "fw_scale := {V}\n"
        "a := 628 rand 100 /\n"
        "v := 30 rand 70 + 100 / fw_scale *\n"
        "vx := a cos v *\n"
        "vy := a sin v *\n"
        "life := 0\n"
        "'' ._xscale := {K}\n"
        "'' ._yscale := {K}\n",
        sparkValues);
    const std::string update = FillIn(
        "'' ._x := '' ._x vx +\n"
        "'' ._y := '' ._y vy +\n"
        "vx := vx {D} *\n"
        "vy := vy {D} * {G} +\n"
        "life := life 1 +\n"
        "'' ._alpha := 100 life 100 * {L} / -\n"
        "life {L} < if:burning\n"
        "'' ._visible := 0\n"
        "stop\n"
        "burning:\n",
        sparkValues);
    const uint16_t sparkId = DefineProgramSprite({{shapeId, {}, {}}}, ParticleProgram("spark", init, update), ctx);

    // A burst of `S` sparks every 0.6 s somewhere in the upper part of the
    // stage, in a bright colour; copies are reused round a ring of three
    // bursts (a copy made at a taken depth replaces the old one).
    const int perBurst = ParticleCount(ctx, 30, 16, 30);
    const int period = std::max(3, static_cast<int>(std::lround(0.6 * fps)));
    const std::string tick = FillIn(
        "t := t 1 +\n"
        "t {P} < if:waiting\n"
        "t := 0\n"
        "bx := {W} 0.15 * {W} 0.7 * rand +\n"
        "by := {H} 0.12 * {H} 0.4 * rand +\n"
        "hi := 255; mid := 200 rand 55 +; lo := 110 rand\n"
        "col := hi 65536 * mid 256 * + lo +\n"
        "pick := 3 rand\n"
        "pick 1 == ifnot:notgreen\n"
        "col := lo 65536 * hi 256 * + mid +\n"
        "notgreen:\n"
        "pick 2 == ifnot:notblue\n"
        "col := mid 65536 * lo 256 * + hi +\n"
        "notblue:\n"
        "j := 0\n"
        "sparking:\n"
        "j {S} < ifnot:waiting\n"
        "ring := n {R} %\n"
        "sp := 'spark' ring 1 + &\n"
        "'spark' sp ring {D0} + clone\n"
        "sp ._x := bx\n"
        "sp ._y := by\n"
        "col 1 sp eval 1 'Color' new 'setRGB' callm pop\n"
        "n := n 1 +\n"
        "j := j 1 +\n"
        "jump:sparking\n"
        "waiting:\n",
        {{"P", period}, {"W", w}, {"H", h}, {"S", perBurst}, {"R", 3 * perBurst}, {"D0", kFirstCopyDepth}});
    characterId = DefineProgramSprite({{sparkId, "spark", {}}},
                                      EffectProgram(FillIn("t := {P} 2 -\nn := 0\n", {{"P", period}}), tick), ctx);
}

}  // namespace quillet
