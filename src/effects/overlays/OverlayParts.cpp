#include "effects/overlays/OverlayParts.h"

#include <algorithm>
#include <cmath>

#include "effects/overlays/OverlayScript.h"
#include "swf/SwfTags.h"
#include "swf/SwfWriter.h"

namespace quillet {

void AddCircle(SwfShapeBuilder& shape, int32_t cx, int32_t cy, int32_t radius) {
    const double step = M_PI / 4;
    const double control = radius / std::cos(step / 2);
    auto at = [](double c, double r, double a) { return static_cast<int32_t>(std::lround(c + r * a)); };
    shape.MoveTo(cx + radius, cy);
    // Angles grow clockwise on the screen (y points down).
    for (int i = 0; i < 8; ++i) {
        const double mid = step * (i + 0.5), end = step * (i + 1);
        shape.CurveTo(at(cx, control, std::cos(mid)), at(cy, control, std::sin(mid)), at(cx, radius, std::cos(end)),
                      at(cy, radius, std::sin(end)));
    }
}

SwfFillStyle RadialFill(int32_t cx, int32_t cy, int32_t radius, std::vector<SwfGradientRecord> stops) {
    // The gradient square spans -16384..16384 twips before the matrix.
    const double scale = radius / 16384.0;
    return SwfFillStyle::MakeRadialGradient(SwfMatrix::ScaleF(scale, scale, cx, cy), std::move(stops));
}

uint16_t DefineAlphaShape(const SwfShapeBuilder& shape, MovieContext& ctx) {
    const uint16_t id = ctx.NewCharacterId();
    ctx.movie.AddTag(std::make_unique<DefineShape3Tag>(id, shape.Bounds(), shape.Build()));
    return id;
}

uint16_t DefineProgramSprite(const std::vector<PartPlacement>& parts, const std::string& program, MovieContext& ctx) {
    const uint16_t id = ctx.NewCharacterId();
    auto sprite = std::make_unique<DefineSpriteTag>(id);
    uint16_t depth = 0;
    for (const PartPlacement& part : parts) {
        auto place = PlaceObject2Tag::Place(++depth, part.characterId, part.matrix);
        if (!part.name.empty()) place->name = part.name;
        sprite->Add(std::move(place));
    }
    // A still part (no program) is one frame.
    if (program.empty()) sprite->Add(std::make_unique<ShowFrameTag>());
    for (int frame = 0; frame < 2 && !program.empty(); ++frame) {
        sprite->Add(std::make_unique<DoActionTag>(AssembleOverlayScript(program)));
        sprite->Add(std::make_unique<ShowFrameTag>());
    }
    ctx.movie.AddTag(std::move(sprite));
    return id;
}

std::string ParticleProgram(const std::string& templateName, const std::string& init, const std::string& update) {
    return "'' ._name '" + templateName + "' streq if:__idle\n" +
           "inited if:__run\n"
           "'' ._visible := 1\n" +
           init + "\ninited := 1\n__run:\n" + update +
           "\njump:__end\n"
           "__idle:\n"
           "'' ._visible := 0\n"
           "stop\n"
           "__end:\n";
}

std::string EffectProgram(const std::string& init, const std::string& tick) {
    return "inited if:__tick\n" + init + "\ninited := 1\n__tick:\n" + tick + "\n";
}

std::string CopyLoop(const std::string& templateName, int count) {
    const std::string t = "'" + templateName + "'";
    return "__i := 0\n"
           "__copy:\n"
           "__i " + std::to_string(count) + " < ifnot:__copied\n" +
           t + " " + t + " __i 1 + & __i " + std::to_string(kFirstCopyDepth) + " + clone\n" +
           "__i := __i 1 +\n"
           "jump:__copy\n"
           "__copied:\n";
}

std::string FillIn(std::string text, const std::vector<std::pair<std::string, double>>& values) {
    for (const auto& [name, value] : values) {
        const std::string key = "{" + name + "}", number = ScriptNumber(value);
        for (size_t at = text.find(key); at != std::string::npos; at = text.find(key, at + number.size()))
            text.replace(at, key.size(), number);
    }
    return text;
}

double StagePixelsWide(const MovieContext& ctx) { return ctx.StageWidth() / 20.0; }
double StagePixelsHigh(const MovieContext& ctx) { return ctx.StageHeight() / 20.0; }

int ParticleCount(const MovieContext& ctx, int per640x480, int minimum, int maximum) {
    const double area = StagePixelsWide(ctx) * StagePixelsHigh(ctx) / (640.0 * 480.0);
    return std::clamp(static_cast<int>(std::lround(per640x480 * area)), minimum, maximum);
}

}  // namespace quillet
