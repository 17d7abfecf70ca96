#include "effects/overlays/Hearts.h"

#include "effects/overlays/OverlayParts.h"

namespace quillet {

HeartsEffect::HeartsEffect() : OverlayEffect("Hearts") {}

std::unique_ptr<OverlayEffect> HeartsEffect::Create() const { return std::make_unique<HeartsEffect>(); }

void HeartsEffect::Define(MovieContext& ctx) {
    const double w = StagePixelsWide(ctx), h = StagePixelsHigh(ctx), fps = ctx.fps > 0 ? ctx.fps : 12;
    const double k = w / 640;

    // A heart about 32 px wide, lit from its upper left.
    SwfShapeBuilder heart;
    const int32_t u = 20;  // one pixel
    heart.SetFill1(heart.AddFillStyle(RadialFill(-5 * u, -6 * u, 24 * u,
                                                 {{0, SwfColor(255, 170, 200, 235)},
                                                  {110, SwfColor(240, 40, 90, 235)},
                                                  {255, SwfColor(165, 0, 40, 235)}})));
    // Clockwise from the bottom tip: up the left side, over both lobes, down the right.
    heart.MoveTo(0, 15 * u);
    heart.CurveTo(-16 * u, 3 * u, -16 * u, -5 * u);
    heart.CurveTo(-15 * u, -15 * u, -8 * u, -15 * u);
    heart.CurveTo(-1 * u, -15 * u, 0, -8 * u);
    heart.CurveTo(1 * u, -15 * u, 8 * u, -15 * u);
    heart.CurveTo(15 * u, -15 * u, 16 * u, -5 * u);
    heart.CurveTo(16 * u, 3 * u, 0, 15 * u);
    const uint16_t shapeId = DefineAlphaShape(heart, ctx);

    // Hearts drift down like petals, swaying and tilting with the sway, and
    // beat gently: heart_scale is the size in percent, 70 to 140 on a
    // 640-pixel stage.
    const std::string fresh =
        "heart_scale := 70 rand 70 + {K} *\n"
        "fall := {H} {F} 7 * / 100 rand 100 / 1 + *\n"
        "t := 628 rand 100 /\n"
        "xpos := {W} rand\n";
    const std::vector<std::pair<std::string, double>> values = {
        {"W", w}, {"H", h}, {"F", fps}, {"K", k}, {"M", 20 * k}, {"S", 1.5 / fps}, {"A", 22 * k}};
    const std::string init = FillIn(fresh + "ypos := {H} rand\n", values);
    const std::string update = FillIn(
        "ypos := ypos fall +\n"
        "t := t {S} +\n"
        "ypos {H} {M} + > ifnot:falling\n" +
            fresh + "ypos := 0 {M} -\n"
            "falling:\n"
            "beat := t 5 * sin 0.07 * 1 + heart_scale *\n"
            "'' ._xscale := beat\n"
            "'' ._yscale := beat\n"
            "'' ._rotation := t sin 18 *\n"
            "'' ._x := xpos t sin {A} * +\n"
            "'' ._y := ypos\n",
        values);
    const uint16_t particleId = DefineProgramSprite({{shapeId, {}, {}}}, ParticleProgram("heart", init, update), ctx);

    const int count = ParticleCount(ctx, 14, 5, 20);
    characterId = DefineProgramSprite({{particleId, "heart", {}}}, EffectProgram(CopyLoop("heart", count), ""), ctx);
}

}  // namespace quillet
