#include "effects/overlays/OldMovie.h"

#include <algorithm>

#include "effects/overlays/OverlayParts.h"

namespace quillet {

OldMovieEffect::OldMovieEffect() : OverlayEffect("Old Movie") {}

std::unique_ptr<OverlayEffect> OldMovieEffect::Create() const { return std::make_unique<OldMovieEffect>(); }

void OldMovieEffect::Define(MovieContext& ctx) {
    const double w = StagePixelsWide(ctx), h = StagePixelsHigh(ctx);
    const double k = w / 640;
    const int32_t tw = ctx.StageWidth(), th = ctx.StageHeight();

    // The scratch: a thin light line down the whole frame.
    SwfShapeBuilder line;
    line.SetFill1(line.AddFillStyle(SwfFillStyle::MakeSolid(SwfColor(240, 232, 210, 200))));
    line.Rectangle(0, 0, std::max<int32_t>(40, static_cast<int32_t>(60 * k)), th);
    partIds[0] = DefineProgramSprite({{DefineAlphaShape(line, ctx), {}, {}}}, "", ctx);

    // A speck of dust: a dark, uneven blob about 12 px across.
    SwfShapeBuilder dot;
    dot.SetFill1(dot.AddFillStyle(SwfFillStyle::MakeSolid(SwfColor(25, 18, 10, 210))));
    dot.MoveTo(-120, -40);
    dot.CurveTo(-80, -140, 20, -110);
    dot.CurveTo(140, -80, 110, 20);
    dot.CurveTo(80, 130, -10, 100);
    dot.CurveTo(-60, 80, -80, 40);
    dot.CurveTo(-150, 20, -120, -40);
    partIds[1] = DefineProgramSprite({{DefineAlphaShape(dot, ctx), {}, {}}}, "", ctx);

    // The tone and flicker: a sepia wash over the frame, darker towards the
    // corners; its opacity changes every frame.
    SwfShapeBuilder tone;
    tone.SetFill1(tone.AddFillStyle(SwfFillStyle::MakeRadialGradient(
        SwfMatrix::ScaleF(tw * 0.62 / 16384, th * 0.62 / 16384, tw / 2, th / 2),
        {{0, SwfColor(120, 80, 30, 40)}, {170, SwfColor(90, 60, 20, 90)}, {255, SwfColor(25, 15, 5, 200)}})));
    tone.Rectangle(0, 0, tw, th);
    partIds[2] = DefineProgramSprite({{DefineAlphaShape(tone, ctx), {}, {}}}, "", ctx);

    // Every frame: the flicker, the scratch mostly shown and drifting 1 to 3
    // px a frame to one side (now and then jumping elsewhere with a new
    // drift), and three specks of dust at random places and sizes
    // (dustdotscale, in percent), each shown one frame in two.
    const std::string jump =
        "lx := {W} rand\n"
        "drift := 2 rand 2 * 1 - 3 rand 1 + * {K} *\n";
    std::string tick =
        "'flicker' ._alpha := 40 rand 60 +\n"
        "10 rand 1 < ifnot:keep\n" +
        jump +
        "keep:\n"
        "lx := lx drift +\n"
        "'dustline' ._x := lx\n"
        "'dustline' ._visible := 100 rand 15 >\n"
        "'dustline' ._alpha := 50 rand 40 +\n";
    for (int i = 1; i <= 3; ++i) {
        const std::string d = "'dustdot" + std::to_string(i) + "'";
        tick += "dustdotscale := 120 rand 40 + {S} *\n" +
                d + " ._visible := 2 rand 1 <\n" +
                d + " ._x := {W} rand\n" +
                d + " ._y := {H} rand\n" +
                d + " ._xscale := dustdotscale\n" +
                d + " ._yscale := dustdotscale\n" +
                d + " ._rotation := 360 rand\n";
    }
    const std::vector<std::pair<std::string, double>> values = {{"W", w}, {"H", h}, {"K", k}, {"S", k}};
    characterId = DefineProgramSprite({{partIds[2], "flicker", {}},
                                       {partIds[0], "dustline", {}},
                                       {partIds[1], "dustdot1", {}},
                                       {partIds[1], "dustdot2", {}},
                                       {partIds[1], "dustdot3", {}}},
                                      EffectProgram(FillIn(jump, values), FillIn(tick, values)), ctx);
}

}  // namespace quillet
