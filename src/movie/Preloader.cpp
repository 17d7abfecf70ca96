#include "movie/Preloader.h"

#include <algorithm>
#include <cstdlib>

#include "effects/CaptionLayout.h"
#include "effects/FontFace.h"
#include "model/Slide.h"
#include "model/SlideShow.h"
#include "swf/SwfActions.h"
#include "swf/SwfTags.h"
#include "swf/SwfWriter.h"

namespace quillet {

namespace {

constexpr const char* kBarName = "PreloadBar";
constexpr const char* kBarBackName = "BarBg";
constexpr const char* kBarFrontName = "BarFg";
constexpr const char* kBarFrontPath = "PreloadBar/BarFg";
constexpr const char* kPercentVariable = "percentLoaded";
constexpr const char* kTextHolder = "pl";
constexpr const char* kTextVariable = "pl:text";
constexpr const char* kDigits = "01234567890%";
constexpr const char* kStartVariable = "plStart";
constexpr int kXScaleProperty = 2;
// The smart type trusts a load rate measured over at least this long.
constexpr int kSmartMinimumMs = 500;

// name = obj.method() with obj = _root: pushes the call's result.
void PushRootCall(SwfActionList& list, const char* method) {
    list.Emplace<ActionPush>().Integer(0).String("_root");
    list.Emplace<ActionGetVariable>();
    list.Emplace<ActionPush>().String(method);
    list.Emplace<ActionCallMethod>();
}

void PushVariable(SwfActionList& list, const char* name) {
    list.Emplace<ActionPush>().String(name);
    list.Emplace<ActionGetVariable>();
}

// if (top of stack) play(): Not, If over the Play.
void AppendPlayIf(SwfActionList& list) {
    list.Emplace<ActionNot>();
    list.Emplace<ActionIf>(static_cast<int16_t>(1));
    list.Emplace<ActionPlay>();
}

std::unique_ptr<DefineShapeTag> BarShape(uint16_t id, int32_t width, int32_t height, SwfColor fill,
                                         std::optional<SwfColor> outline) {
    SwfShapeBuilder b;
    b.SetFill1(b.AddFillStyle(SwfFillStyle::MakeSolid(fill)));
    if (outline) {
        SwfLineStyle line;
        line.width = 20;
        line.color = *outline;
        b.SetLine(b.AddLineStyle(line));
    }
    b.Rectangle(0, 0, width, height);
    return std::make_unique<DefineShapeTag>(id, b.Bounds(), b.Build());
}

// A clip holding one shape at depth 1.
uint16_t ShapeClip(uint16_t shapeId, MovieContext& ctx) {
    auto clip = std::make_unique<DefineSpriteTag>(ctx.NewCharacterId());
    if (shapeId) clip->Add(PlaceObject2Tag::Place(1, shapeId));
    clip->Add(std::make_unique<ShowFrameTag>());
    const uint16_t id = clip->GetId();
    ctx.movie.AddTag(std::move(clip));
    return id;
}

// The text as the movie's strings hold it: UTF-8 from version 6 on, else
// Windows-1252 (what the player reads there), '?' for what that lacks.
std::string MovieText(const std::u32string& text, uint8_t version) {
    std::string out;
    for (char32_t c : text) {
        if (version >= 6) {
            if (c < 0x80) out += static_cast<char>(c);
            else if (c < 0x800) out += {static_cast<char>(0xC0 | c >> 6), static_cast<char>(0x80 | (c & 0x3F))};
            else if (c < 0x10000)
                out += {static_cast<char>(0xE0 | c >> 12), static_cast<char>(0x80 | (c >> 6 & 0x3F)),
                        static_cast<char>(0x80 | (c & 0x3F))};
            else
                out += {static_cast<char>(0xF0 | c >> 18), static_cast<char>(0x80 | (c >> 12 & 0x3F)),
                        static_cast<char>(0x80 | (c >> 6 & 0x3F)), static_cast<char>(0x80 | (c & 0x3F))};
            continue;
        }
        char byte = '?';
        if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) byte = static_cast<char>(c);
        else
            for (int b = 0x80; b < 0xA0; ++b)  // a lone high byte decodes as Windows-1252
                if (DecodeCaptionText(std::string(1, static_cast<char>(b))) == std::u32string(1, c))
                    byte = static_cast<char>(b);
        out += byte;
    }
    return out;
}

}  // namespace

SwfActionList BuildPreloadCheck(const PreloadScriptSettings& settings) {
    SwfActionList list;
    list.Emplace<ActionSetTarget>("_root");
    // plLoaded, plTotal, then percentLoaded = int(plLoaded * 100 / plTotal).
    list.Emplace<ActionPush>().String("plLoaded");
    PushRootCall(list, "getBytesLoaded");
    list.Emplace<ActionSetVariable>();
    list.Emplace<ActionPush>().String("plTotal");
    PushRootCall(list, "getBytesTotal");
    list.Emplace<ActionSetVariable>();
    list.Emplace<ActionPush>().String(kPercentVariable);
    PushVariable(list, "plLoaded");
    list.Emplace<ActionPush>().Integer(100);
    list.Emplace<ActionMultiply>();
    PushVariable(list, "plTotal");
    list.Emplace<ActionDivide>();
    list.Emplace<ActionToInteger>();
    list.Emplace<ActionSetVariable>();
    // The bar and the text follow.
    list.Emplace<ActionPush>().String(kBarFrontPath).Integer(kXScaleProperty);
    PushVariable(list, kPercentVariable);
    list.Emplace<ActionSetProperty>();
    list.Emplace<ActionPush>().String(kTextVariable).String(settings.text.empty() ? "" : settings.text + " ");
    PushVariable(list, kPercentVariable);
    list.Emplace<ActionStringAdd>();
    list.Emplace<ActionPush>().String("%");
    list.Emplace<ActionStringAdd>();
    list.Emplace<ActionSetVariable>();
    // if (!(percentLoaded < amount)) play()
    PushVariable(list, kPercentVariable);
    list.Emplace<ActionPush>().Integer(std::clamp(settings.amount, 0, 100));
    list.Emplace<ActionLess2>();
    list.Emplace<ActionNot>();
    AppendPlayIf(list);
    if (settings.smart) {
        // elapsed = getTimer() - plStart
        list.Emplace<ActionPush>().String("plElapsed");
        list.Emplace<ActionGetTime>();
        PushVariable(list, kStartVariable);
        list.Emplace<ActionSubtract>();
        list.Emplace<ActionSetVariable>();
        // 500 < elapsed and 0 < loaded and !(playMs < (total - loaded) * elapsed / loaded)
        list.Emplace<ActionPush>().Integer(kSmartMinimumMs);
        PushVariable(list, "plElapsed");
        list.Emplace<ActionLess2>();
        list.Emplace<ActionPush>().Integer(0);
        PushVariable(list, "plLoaded");
        list.Emplace<ActionLess2>();
        list.Emplace<ActionAnd>();
        list.Emplace<ActionPush>().Double(static_cast<double>(settings.playMs));
        PushVariable(list, "plTotal");
        PushVariable(list, "plLoaded");
        list.Emplace<ActionSubtract>();
        PushVariable(list, "plElapsed");
        list.Emplace<ActionMultiply>();
        PushVariable(list, "plLoaded");
        list.Emplace<ActionDivide>();
        list.Emplace<ActionLess2>();
        list.Emplace<ActionNot>();
        list.Emplace<ActionAnd>();
        AppendPlayIf(list);
    }
    list.Emplace<ActionSetTarget>("");
    return list;
}

bool Preloader::Prepare(const SlideShow& show, FontCatalog& fonts, std::string* error) {
    show_ = &show;
    fonts_ = &fonts;
    imported_ = !show.swfData.preloadImportSrc.empty();
    if (!imported_) return true;
    std::string why;
    if (!ReadImportedMovie(show.swfData.preloadImportSrc, import_, &why)) {
        if (error) *error = show.swfData.preloadImportSrc + ": the preloader cannot be used: " + why;
        return false;
    }
    return true;
}

void Preloader::Write(MovieContext& ctx) {
    placed_.clear();
    if (imported_) {
        CopyIntoTimeline(FreshCopy(import_), ctx, &placed_);
        return;
    }
    WriteOwn(ctx);
}

void Preloader::WriteRemoval(MovieContext& ctx) {
    for (uint16_t depth : placed_) ctx.movie.AddTag(std::make_unique<RemoveObject2Tag>(depth));
}

void Preloader::WriteOwn(MovieContext& ctx) {
    const SwfData& data = show_->swfData;
    const int32_t stageW = ctx.StageWidth(), stageH = ctx.StageHeight();
    const SwfColor color = SwfColor::FromRgb(data.preloadTextColor);

    // The text's font: the digits, the percent sign, the space and the text.
    std::u32string text = DecodeCaptionText(data.preloadText);
    std::vector<char32_t> codes(text.begin(), text.end());
    for (const char* c = kDigits; *c; ++c) codes.push_back(static_cast<char32_t>(*c));
    codes.push_back(U' ');
    codes.erase(std::remove_if(codes.begin(), codes.end(), [](char32_t c) { return c < 32 || c > 0xFFFF; }),
                codes.end());
    std::sort(codes.begin(), codes.end());
    codes.erase(std::unique(codes.begin(), codes.end()), codes.end());
    const FontRecord& record = data.preloadFont;
    FontFace* face = fonts_->Find(data.preloadFontName, record.weight >= 700, record.italic != 0);
    const int pixels = std::clamp(record.height == 0 ? 13 : std::abs(record.height), 6, 200);
    uint16_t fontId = 0;
    if (face) {
        fontId = ctx.NewCharacterId();
        ctx.movie.AddTag(MakeFontTag(*face, codes, fontId));
    }

    // The bar: half the stage wide, centred, the text above it.
    const int32_t barW = std::max<int32_t>(stageW / 2, 20), barH = 8 * 20;
    const int32_t barX = (stageW - barW) / 2, barY = (stageH - barH) / 2;
    const uint16_t backShape = ctx.NewCharacterId();
    ctx.movie.AddTag(BarShape(backShape, barW, barH, SwfColor(64, 64, 64), color));
    const uint16_t backClip = ShapeClip(backShape, ctx);
    const uint16_t frontShape = ctx.NewCharacterId();
    ctx.movie.AddTag(BarShape(frontShape, barW, barH, color, std::nullopt));
    const uint16_t frontClip = ShapeClip(frontShape, ctx);

    auto bar = std::make_unique<DefineSpriteTag>(ctx.NewCharacterId());
    auto back = PlaceObject2Tag::Place(1, backClip);
    back->name = kBarBackName;
    bar->Add(std::move(back));
    auto front = PlaceObject2Tag::Place(3, frontClip, SwfMatrix::Scale(0, 0x10000));
    front->name = kBarFrontName;
    bar->Add(std::move(front));
    bar->Add(std::make_unique<ShowFrameTag>());
    const uint16_t barId = bar->GetId();
    ctx.movie.AddTag(std::move(bar));

    const uint16_t holderId = ShapeClip(0, ctx);
    auto field = std::make_unique<DefineEditTextTag>(ctx.NewCharacterId());
    const int32_t lineH = pixels * 20 * 3 / 2;
    field->bounds = SwfRect(0, stageW, 0, lineH);
    field->hasFont = fontId != 0;
    field->fontId = fontId;
    field->useOutlines = fontId != 0;
    field->fontHeight = static_cast<uint16_t>(pixels * 20);
    field->hasTextColor = true;
    field->textColor = color;
    field->hasLayout = true;
    field->align = DefineEditTextTag::Center;
    field->variableName = kTextVariable;
    field->hasText = true;
    const std::string movieText = MovieText(text, ctx.movie.Version());
    field->initialText = movieText;
    const uint16_t fieldId = field->GetId();
    ctx.movie.AddTag(std::move(field));

    PreloadScriptSettings settings;
    settings.text = movieText;
    settings.amount = data.preloadAmount;
    settings.smart = data.preloadType == SwfData::PreloadType::Smart;
    for (const auto& slide : show_->slides()) settings.playMs += slide->duration;

    auto placeBar = PlaceObject2Tag::Place(ctx.NewDepth(), barId, SwfMatrix::Translate(barX, barY));
    placeBar->name = kBarName;
    SwfClipAction check;
    check.events = SwfClipAction::kEnterFrame;
    check.actions = BuildPreloadCheck(settings);
    placeBar->clipActions.push_back(std::move(check));
    placed_.insert(placeBar->depth);
    ctx.movie.AddTag(std::move(placeBar));
    auto holder = PlaceObject2Tag::Place(ctx.NewDepth(), holderId);
    holder->name = kTextHolder;
    placed_.insert(holder->depth);
    ctx.movie.AddTag(std::move(holder));
    auto placeText = PlaceObject2Tag::Place(ctx.NewDepth(), fieldId, SwfMatrix::Translate(0, barY - lineH - 4 * 20));
    placed_.insert(placeText->depth);
    ctx.movie.AddTag(std::move(placeText));

    SwfActionList script;
    if (settings.smart) {
        script.Emplace<ActionPush>().String(kStartVariable);
        script.Emplace<ActionGetTime>();
        script.Emplace<ActionSetVariable>();
    }
    script.Emplace<ActionStop>();
    ctx.movie.AddTag(std::make_unique<DoActionTag>(std::move(script)));
    ctx.movie.AddTag(std::make_unique<ShowFrameTag>());
}

}  // namespace quillet
