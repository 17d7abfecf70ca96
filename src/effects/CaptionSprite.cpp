#include "effects/CaptionSprite.h"

#include <algorithm>
#include <cmath>

#include "effects/CaptionLayout.h"
#include "effects/FontFace.h"
#include "swf/SwfActions.h"
#include "swf/SwfTags.h"
#include "swf/SwfWriter.h"

namespace quillet {

namespace {

int16_t Short(int64_t v) { return static_cast<int16_t>(std::clamp<int64_t>(v, -32768, 32767)); }

SwfColor CaptionColor(const Caption& caption) {
    // Lowest byte red; opacity in percent.
    const int alpha = std::clamp(caption.alpha, 0, 100);
    return SwfColor(static_cast<uint8_t>(caption.color), static_cast<uint8_t>(caption.color >> 8),
                    static_cast<uint8_t>(caption.color >> 16), static_cast<uint8_t>((alpha * 255 + 50) / 100));
}

}  // namespace

CaptionEffectPlan PlanCaptionEffect(CaptionEffectKind kind, float fps, int32_t stageWidth) {
    CaptionEffectPlan plan;
    // One second of frames; a rate under one still gets one frame.
    const int n = std::max(1, static_cast<int>(fps));
    switch (kind) {
        case CaptionEffectKind::None:
            break;
        case CaptionEffectKind::FadeIn: {
            plan.fades = true;
            plan.start.alphaMult = 0;
            double a = 0;
            const double step = 1.0 / n;
            for (int i = 0; i < n; ++i) {
                a = std::min(a + step, 1.0);
                plan.frames.push_back({0, 0, static_cast<int16_t>(a * 256 + 0.5)});
            }
            break;
        }
        case CaptionEffectKind::FlyFromLeft:
        case CaptionEffectKind::FlyFromRight:
        case CaptionEffectKind::FlyFromTop:
        case CaptionEffectKind::FlyFromBottom: {
            const int32_t step = stageWidth / n;
            const bool positive = kind == CaptionEffectKind::FlyFromRight || kind == CaptionEffectKind::FlyFromBottom;
            const bool vertical = kind == CaptionEffectKind::FlyFromTop || kind == CaptionEffectKind::FlyFromBottom;
            int32_t offset = positive ? stageWidth : -stageWidth;
            auto at = [&](int32_t o) { return vertical ? CaptionEffectFrame{0, o, 256} : CaptionEffectFrame{o, 0, 256}; };
            plan.start = at(offset);
            for (int i = 0; i < n; ++i) {
                offset += positive ? -step : step;
                plan.frames.push_back(at(offset));
            }
            break;
        }
    }
    return plan;
}

int CaptionFrames(uint32_t milliseconds, float fps) { return static_cast<int>(milliseconds * 0.001 * fps); }

std::string CaptionName(int caption, int slide) {
    return slide > 0 ? "caption " + std::to_string(caption) + " of slide " + std::to_string(slide)
                     : "show caption " + std::to_string(caption);
}

CaptionWriter::CaptionWriter(FontCatalog& fonts) : fonts_(fonts) {}

FontFace* CaptionWriter::FaceFor(const Caption& caption, const std::string& where) {
    bool fellBack = false;
    FontFace* face = fonts_.Find(caption.fontName, caption.bold, caption.italic, &fellBack);
    if (fellBack && counted_.insert(where).second) {
        Missing& m = missing_[caption.fontName];
        if (m.captions++ == 0) m.firstCaption = where;
    }
    return face;
}

void CaptionWriter::Collect(const Caption& caption, const std::string& where) {
    const std::u32string text = DrawnCaptionText(caption);
    if (text.empty()) return;  // draws nothing, needs no face
    FontFace* face = FaceFor(caption, where);
    if (!face) return;
    FaceUse& use = uses_[face];
    for (char32_t c : text)
        if (c != U'\r' && c != U'\n') use.codes.insert(c == U'\t' ? U' ' : c);
}

std::vector<std::string> CaptionWriter::Warnings() const {
    std::vector<std::string> lines;
    for (const auto& [name, m] : missing_) {
        std::string line = m.firstCaption + ": the font \"" + name + "\" is not installed; " + kFallbackFontFamily +
                           " is used instead";
        if (m.captions > 1)
            line += " (also for " + std::to_string(m.captions - 1) + " more caption" + (m.captions > 2 ? "s" : "") + ")";
        lines.push_back(line);
    }
    return lines;
}

uint16_t CaptionWriter::DefineFont(FontFace& face, FaceUse& use, MovieContext& ctx) {
    const uint16_t id = ctx.NewCharacterId();
    const std::vector<char32_t> codes(use.codes.begin(), use.codes.end());  // ascending, as the tag wants them
    for (size_t i = 0; i < codes.size(); ++i) use.index[codes[i]] = static_cast<uint32_t>(i);
    ctx.movie.AddTag(MakeFontTag(face, codes, id));
    use.fontId = id;
    return id;
}

uint16_t CaptionWriter::Place(const Caption& caption, const std::string& where, MovieContext& ctx, uint16_t depth) {
    const std::u32string text = DrawnCaptionText(caption);
    if (text.empty()) return 0;
    FontFace* face = FaceFor(caption, where);
    if (!face) return 0;
    const int32_t stageWidth = ctx.StageWidth(), stageHeight = ctx.StageHeight();
    CaptionLayout layout = LayOutCaption(caption, text, *face, stageWidth, stageHeight);
    if (!layout.HasInk()) return 0;

    FaceUse& use = uses_[face];
    if (!use.fontId) {
        // A caption nobody collected brings its characters along.
        if (use.codes.empty()) Collect(caption, where);
        DefineFont(*face, use, ctx);
    }

    // The text: one record per line (and per 255 characters), the first
    // carrying the font, height and colour.
    const uint16_t textId = ctx.NewCharacterId();
    const uint16_t spriteId = ctx.NewCharacterId();
    auto tag = std::make_unique<DefineText2Tag>(textId);
    tag->bounds = layout.ink;
    // Record offsets are 16-bit: text reaching further (a huge size over
    // several lines) is written k times smaller and scaled back by the
    // text's own matrix.
    int64_t reach = 0;
    for (const CaptionLine& line : layout.lines) {
        reach = std::max<int64_t>(reach, std::abs(int64_t{line.baseline}));
        for (const CaptionPlacedChar& c : line.chars) reach = std::max<int64_t>(reach, std::abs(int64_t{c.x}));
    }
    const int32_t k = static_cast<int32_t>(std::min<int64_t>(1 + reach / 32767, 64));
    auto down = [k](int64_t v) { return static_cast<int32_t>(std::lround(static_cast<double>(v) / k)); };
    if (k > 1) tag->matrix = SwfMatrix::Scale(k << 16, k << 16);
    bool first = true;
    for (const CaptionLine& line : layout.lines) {
        SwfTextRecord record;
        for (size_t i = 0; i < line.chars.size(); ++i) {
            auto found = use.index.find(line.chars[i].code);
            if (found == use.index.end()) continue;  // not in the font already written
            if (record.glyphs.empty()) {
                record.hasXOffset = record.hasYOffset = true;
                record.xOffset = Short(down(line.chars[i].x));
                record.yOffset = Short(down(line.baseline));
                if (first) {
                    record.hasFont = record.hasColor = true;
                    record.fontId = use.fontId;
                    record.textHeight = static_cast<uint16_t>(std::max(1, down(layout.textHeight)));
                    record.color = CaptionColor(caption);
                    first = false;
                }
            }
            // The advance runs to the next character drawn.
            size_t next = i + 1;
            while (next < line.chars.size() && !use.index.count(line.chars[next].code)) ++next;
            const int64_t to = next < line.chars.size() ? line.chars[next].x : int64_t{line.chars[i].x} + line.advances[i];
            record.glyphs.push_back({found->second, down(to) - down(line.chars[i].x)});
            if (record.glyphs.size() == 255) {
                tag->records.push_back(std::move(record));
                record = SwfTextRecord();
            }
        }
        if (!record.glyphs.empty()) tag->records.push_back(std::move(record));
    }
    ctx.movie.AddTag(std::move(tag));

    // The sprite: the wait, the effect, the hold and the removal.
    std::vector<std::unique_ptr<SwfTag>> tags;
    int frames = 0;
    auto show = [&] {
        tags.push_back(std::make_unique<ShowFrameTag>());
        ++frames;
    };
    for (int i = CaptionFrames(caption.startTime, ctx.fps); i > 0; --i) show();
    const CaptionEffectPlan plan = PlanCaptionEffect(caption.EffectKind(), ctx.fps, stageWidth);
    const int visible = caption.showTillNext ? 0 : std::max(1, CaptionFrames(caption.duration, ctx.fps));
    auto transform = [&](int32_t alphaMult) {
        return plan.fades ? std::optional(SwfColorTransformAlpha::Alpha(alphaMult)) : std::nullopt;
    };
    tags.push_back(PlaceObject2Tag::Place(1, textId, SwfMatrix::Translate(plan.start.x, plan.start.y),
                                          transform(plan.start.alphaMult)));
    int shown = 0;
    if (plan.frames.empty()) {
        show();
        ++shown;
    }
    for (const CaptionEffectFrame& f : plan.frames) {
        if (visible && shown == visible) break;
        tags.push_back(PlaceObject2Tag::Modify(1, SwfMatrix::Translate(f.x, f.y), transform(f.alphaMult)));
        show();
        ++shown;
    }
    if (visible) {
        for (; shown < visible; ++shown) show();
        tags.push_back(std::make_unique<RemoveObject2Tag>(1));
        show();
    }
    auto sprite = std::make_unique<DefineSpriteTag>(spriteId);
    for (size_t i = 0; i < tags.size(); ++i) {
        if (frames > 1 && i + 1 == tags.size()) {
            // Sprites loop; this one plays once and stays on its last frame.
            SwfActionList stop;
            stop.Emplace<ActionStop>();
            sprite->Add(std::make_unique<DoActionTag>(std::move(stop)));
        }
        sprite->Add(std::move(tags[i]));
    }
    ctx.movie.AddTag(std::move(sprite));

    if (!depth) depth = ctx.NewDepth();
    ctx.movie.AddTag(PlaceObject2Tag::Place(depth, spriteId, SwfMatrix::Translate(layout.left, layout.top)));
    return depth;
}

}  // namespace quillet
