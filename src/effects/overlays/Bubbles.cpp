#include "effects/overlays/Bubbles.h"

#include "effects/overlays/OverlayParts.h"

namespace quillet {

BubblesEffect::BubblesEffect() : OverlayEffect("Bubbles") {}

std::unique_ptr<OverlayEffect> BubblesEffect::Create() const { return std::make_unique<BubblesEffect>(); }

void BubblesEffect::Define(MovieContext& ctx) {
    // Sized to the stage read from the movie's frame rectangle; a 640-pixel
    // stage shows bubbles of up to 20 px in radius.
    const double w = StagePixelsWide(ctx), h = StagePixelsHigh(ctx), fps = ctx.fps > 0 ? ctx.fps : 12;
    const double k = w / 640;
    const double radius = 20.0;

    // A clear bubble: nearly transparent inside, a bright rim, a highlight.
    SwfShapeBuilder bubble;
    const int32_t r = static_cast<int32_t>(radius * 20);
    bubble.SetFill1(bubble.AddFillStyle(RadialFill(0, 0, r,
                                                   {{0, SwfColor(210, 235, 255, 25)},
                                                    {170, SwfColor(200, 230, 255, 50)},
                                                    {228, SwfColor(255, 255, 255, 170)},
                                                    {244, SwfColor(255, 255, 255, 220)},
                                                    {255, SwfColor(170, 210, 255, 110)}})));
    AddCircle(bubble, 0, 0, r);
    const int32_t hx = -r * 2 / 5, hr = r / 4;
    bubble.SetFill1(bubble.AddFillStyle(
        RadialFill(hx, hx, hr, {{0, SwfColor(255, 255, 255, 230)}, {255, SwfColor(255, 255, 255, 0)}})));
    AddCircle(bubble, hx, hx, hr);
    const uint16_t shapeId = DefineAlphaShape(bubble, ctx);

    // A bubble starts between 0.4 and 1.0 of full size (bubble_scale, in
    // percent of the stage-sized bubble), rises across the stage in 5.0 s or
    // less and grows by 1/120 of itself every twelfth of a second on the way,
    // wobbling 6.0 px to each side on a sine.
    const std::string fresh =
        "bubble_scale := 60 rand 100 / 0.4 + {K} *\n"
        "rise := {H} {F} 5.0 * / 100 rand 100 / 0.6 * 1 + *\n"
        "t := 628 rand 100 /\n"
        "xpos := {W} rand\n";
    const std::vector<std::pair<std::string, double>> values = {
        {"W", w}, {"H", h}, {"F", fps}, {"K", 100 * k}, {"M", radius * k},
        {"G", 1 + (1.0 / 120) * 12 / fps}, {"S", 0.4 * 12 / fps}, {"A", 6.0 * k}};
    const std::string init = FillIn(fresh + "ypos := {H} rand\n", values);
    const std::string update = FillIn(
        "ypos := ypos rise -\n"
        "t := t {S} +\n"
        "bubble_scale := bubble_scale {G} *\n"
        "ypos 0 {M} 2 * - < ifnot:rising\n" +
            fresh + "ypos := {H} {M} +\n"
            "rising:\n"
            "'' ._xscale := bubble_scale\n"
            "'' ._yscale := bubble_scale\n"
            "'' ._x := xpos t sin {A} * +\n"
            "'' ._y := ypos\n",
        values);
    const uint16_t particleId =
        DefineProgramSprite({{shapeId, {}, {}}}, ParticleProgram("bubble", init, update), ctx);

    const int count = ParticleCount(ctx, 22, 6, 30);
    characterId = DefineProgramSprite({{particleId, "bubble", {}}}, EffectProgram(CopyLoop("bubble", count), ""), ctx);
}

}  // namespace quillet
