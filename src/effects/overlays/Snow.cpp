#include "effects/overlays/Snow.h"

#include "effects/overlays/OverlayParts.h"

namespace quillet {

SnowEffect::SnowEffect() : OverlayEffect("Snow") {}

std::unique_ptr<OverlayEffect> SnowEffect::Create() const { return std::make_unique<SnowEffect>(); }

void SnowEffect::Define(MovieContext& ctx) {
    const double w = StagePixelsWide(ctx), h = StagePixelsHigh(ctx), fps = ctx.fps > 0 ? ctx.fps : 12;
    const double k = w / 640;  // flakes and their swing grow with the stage

    // A soft white flake, 7 px in radius at full size.
    SwfShapeBuilder flakeShape;
    const int32_t r = static_cast<int32_t>(140 * k + 0.5);
    flakeShape.SetFill1(flakeShape.AddFillStyle(
        RadialFill(0, 0, r, {{0, SwfColor(255, 255, 255, 255)}, {150, SwfColor(250, 252, 255, 235)},
                             {255, SwfColor(235, 240, 255, 0)}})));
    AddCircle(flakeShape, 0, 0, r);
    const uint16_t shapeId = DefineAlphaShape(flakeShape, ctx);

    // Each flake falls at a speed between min_speed and max_speed (a crossing
    // of 9 s down to 3.5 s), the larger ones faster; the wind moves it aside
    // by -0.2 of its fall, and it swings by swing_factor on a sine of its height.
    const std::string fresh =
        "therand := min_rand max_rand min_rand - rand +\n"
        "r_xy := therand\n"
        "'' ._xscale := r_xy\n"
        "'' ._yscale := r_xy\n"
        "'' ._alpha := therand 0.4 * 60 +\n"
        "speed := min_speed max_speed min_speed - therand min_rand - * max_rand min_rand - / +\n"
        "swing_factor := 100 rand 100 / 0.5 +\n"
        "phase := 628 rand 100 /\n"
        "xpos := swf_width 1.2 * rand\n";
    const std::string init = FillIn(
        "swf_width := {W}\n"
        "swf_height := {H}\n"
        "min_speed := {MIN}\n"
        "max_speed := {MAX}\n"
        "min_rand := 35\n"
        "max_rand := 100\n" +
            fresh + "ypos := swf_height rand\n",
        {{"W", w}, {"H", h}, {"MIN", h / (fps * 9)}, {"MAX", h / (fps * 3.5)}});
    const std::string update = FillIn(
        "ypos := ypos speed +\n"
        "xpos := xpos speed '-0.2' * +\n"
        "ypos swf_height {M} + > ifnot:landed\n" +
            fresh + "ypos := 0 {M} -\n"
            "landed:\n"
            "xpos 0 {M} - < ifnot:inside\n"
            "xpos := xpos swf_width + {M} 2 * +\n"
            "inside:\n"
            "'' ._x := xpos ypos {P} / phase + sin swing_factor * {A} * +\n"
            "'' ._y := ypos\n",
        {{"M", 8 * k}, {"P", h / 5}, {"A", 9 * k}});
    const uint16_t flakeId = DefineProgramSprite({{shapeId, {}, {}}}, ParticleProgram("flake", init, update), ctx);

    const int count = ParticleCount(ctx, 70, 15, 90);
    characterId = DefineProgramSprite({{flakeId, "flake", {}}}, EffectProgram(CopyLoop("flake", count), ""), ctx);
}

}  // namespace quillet
