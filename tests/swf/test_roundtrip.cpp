// Reading what we write: every tag class written, read back and written again
// gives the same bytes; ids move together; malformed movies are refused with
// a reason.
#include <gtest/gtest.h>

#include <cstring>

#include "support/TempDir.h"
#include "swf/SwfActions.h"
#include "swf/SwfReader.h"
#include "swf/SwfTags.h"
#include "swf/SwfWriter.h"

using namespace quillet;
using quillet::test::TempDir;
using quillet::test::readFile;
using quillet::test::writeFile;

namespace {

SwfShape SquareGlyph() {
    SwfShape g;
    g.records.push_back(SwfShapeRecord::Move(0, -800));
    g.records.back().hasFill0 = true;
    g.records.back().fill0 = 1;
    g.records.push_back(SwfShapeRecord::Line(800, 0));
    g.records.push_back(SwfShapeRecord::Line(0, 800));
    g.records.push_back(SwfShapeRecord::Line(-800, 0));
    g.records.push_back(SwfShapeRecord::Curve(-100, -400, 100, -400));
    return g;
}

// One tag of every class, with most optional parts set.
void AddEveryTag(SwfWriter& w) {
    w.AddTag(std::make_unique<SetBackgroundColorTag>(SwfColor(10, 20, 30)));
    auto jt = std::make_unique<JPEGTablesTag>(std::vector<uint8_t>{0xFF, 0xD8, 0xFF, 0xD9});
    w.AddTag(std::move(jt));
    w.AddTag(std::make_unique<DefineBitsTag>(1, std::vector<uint8_t>{0xFF, 0xD8, 1, 2, 0xFF, 0xD9}));
    w.AddTag(std::make_unique<DefineBitsJPEG2Tag>(2, std::vector<uint8_t>(100, 7)));
    const std::vector<uint8_t> alpha(16, 128);
    w.AddTag(std::make_unique<DefineBitsJPEG3Tag>(3, std::vector<uint8_t>{0xFF, 0xD8, 0xFF, 0xD9},
                                                  ZlibCompress(alpha.data(), alpha.size())));
    // Lossless bitmaps of 4 x 3 pixels in each format (rows padded to 4 bytes).
    std::vector<uint8_t> bytes(16 * 4 + 4 * 3 * 4);
    for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<uint8_t>(i * 13);
    auto lossless = [&](std::unique_ptr<SwfLosslessBase> t, uint16_t id, uint8_t format, uint16_t colors, size_t n) {
        t->SetId(id);
        t->format = format;
        t->width = 4;
        t->height = 3;
        t->colorTableSize = colors;
        t->zlibData = ZlibCompress(bytes.data(), n);
        w.AddTag(std::move(t));
    };
    lossless(std::make_unique<DefineBitsLosslessTag>(), 4, SwfLosslessBase::ColorMapped8, 16, 16 * 3 + 4 * 3);
    lossless(std::make_unique<DefineBitsLosslessTag>(), 5, SwfLosslessBase::Rgb15, 0, 8 * 3);
    lossless(std::make_unique<DefineBitsLossless2Tag>(), 6, SwfLosslessBase::Rgb24, 0, 4 * 3 * 4);

    SwfShapeBuilder b;
    const uint32_t solid = b.AddFillStyle(SwfFillStyle::MakeSolid({255, 0, 0, 128}));
    const uint32_t bitmap = b.AddFillStyle(SwfFillStyle::MakeBitmap(4, SwfMatrix::Scale(20 << 16, 20 << 16), false, false));
    const uint32_t grad = b.AddFillStyle(SwfFillStyle::MakeLinearGradient(
        SwfMatrix::ScaleF(0.1, 0.1, 1000, 1000), {{0, {255, 0, 0}}, {255, {0, 0, 255, 10}}}));
    b.AddFillStyle(SwfFillStyle::MakeRadialGradient(SwfMatrix(), {{0, {1, 2, 3}}, {128, {4, 5, 6}}, {255, {7, 8, 9}}}));
    const uint32_t line = b.AddLineStyle({40, {0, 0, 0}});
    b.SetFill1(solid);
    b.SetLine(line);
    b.Rectangle(0, 0, 2000, 1000);
    b.SetFill1(bitmap);
    b.Polygon({{100, 100}, {500, 100}, {300, -400}});
    b.SetFill0(grad);
    b.MoveTo(-100, -100);
    b.CurveTo(0, -300, 100, -100);
    b.LineTo(-100, -100);
    // An edge too long for one record is split.
    b.LineTo(200000, -100);
    SwfShapeWithStyle shape = b.Build();
    SwfShapeRecord change;
    change.hasNewStyles = true;
    change.newFillStyles.push_back(SwfFillStyle::MakeSolid({0, 255, 0}));
    change.newLineStyles.push_back({20, {1, 1, 1}});
    change.hasFill1 = true;
    change.fill1 = 1;
    shape.records.push_back(change);
    shape.records.push_back(SwfShapeRecord::Line(0, 300));
    w.AddTag(std::make_unique<DefineShape3Tag>(7, b.Bounds(), shape));
    w.AddTag(std::make_unique<DefineShape2Tag>(8, b.Bounds(), shape));
    w.AddTag(DefineShapeTag::Rectangle(9, SwfRect(-20, 400, 0, 300), SwfFillStyle::MakeBitmap(5, SwfMatrix::Scale(20 << 16, 20 << 16))));

    auto morph = std::make_unique<DefineMorphShapeTag>();
    morph->SetId(10);
    morph->startBounds = SwfRect(0, 100, 0, 100);
    morph->endBounds = SwfRect(0, 200, 0, 200);
    SwfMorphFillStyle mf;
    mf.startColor = {255, 0, 0};
    mf.endColor = {0, 0, 255, 0};
    morph->fillStyles.push_back(mf);
    SwfMorphFillStyle mb;
    mb.type = SwfFillStyle::ClippedBitmap;
    mb.bitmapId = 4;
    morph->fillStyles.push_back(mb);
    SwfMorphFillStyle mg;
    mg.type = SwfFillStyle::LinearGradient;
    mg.gradient.push_back({0, 255, {1, 2, 3}, {4, 5, 6}});
    morph->fillStyles.push_back(mg);
    morph->lineStyles.push_back({20, 40, {1, 2, 3}, {4, 5, 6}});
    morph->startEdges = SquareGlyph();
    morph->endEdges = SquareGlyph();
    w.AddTag(std::move(morph));

    auto font = std::make_unique<DefineFontTag>(11);
    font->glyphs = {SquareGlyph(), SquareGlyph()};
    w.AddTag(std::move(font));
    auto info = std::make_unique<DefineFontInfoTag>();
    info->fontId = 11;
    info->name = "Square";
    info->codes = {'A', 'B'};
    w.AddTag(std::move(info));
    auto info2 = std::make_unique<DefineFontInfo2Tag>();
    info2->fontId = 11;
    info2->name = "Square";
    info2->languageCode = 1;
    info2->codes = {'A', 'B'};
    w.AddTag(std::move(info2));
    auto font2 = std::make_unique<DefineFont2Tag>(12);
    font2->name = "Square2";
    font2->hasLayout = true;
    font2->glyphs = {SquareGlyph(), SquareGlyph(), SwfShape()};
    font2->codes = {'A', 'B', ' '};
    font2->ascent = 900;
    font2->descent = 200;
    font2->leading = -10;
    font2->advances = {1000, 1000, 500};
    font2->glyphBounds = {SwfRect(0, 800, -800, 0), SwfRect(0, 800, -800, 0), SwfRect()};
    font2->kerning = {{'A', 'B', -50}};
    w.AddTag(std::move(font2));
    auto emptyFont = std::make_unique<DefineFont2Tag>(13);
    emptyFont->name = "Empty";
    w.AddTag(std::move(emptyFont));

    auto text = std::make_unique<DefineTextTag>(14);
    text->bounds = SwfRect(0, 2000, -400, 100);
    SwfTextRecord run;
    run.hasFont = run.hasColor = run.hasXOffset = run.hasYOffset = true;
    run.fontId = 11;
    run.color = {0, 0, 0};
    run.xOffset = 0;
    run.yOffset = 300;
    run.textHeight = 400;
    run.glyphs = {{0, 400}, {1, -3}};
    text->records = {run};
    w.AddTag(std::move(text));
    auto text2 = std::make_unique<DefineText2Tag>(15);
    run.fontId = 12;
    run.color = {1, 2, 3, 4};
    text2->records = {run, run};
    w.AddTag(std::move(text2));
    auto edit = std::make_unique<DefineEditTextTag>(16);
    edit->bounds = SwfRect(0, 2000, 0, 400);
    edit->hasFont = true;
    edit->fontId = 12;
    edit->hasTextColor = true;
    edit->textColor = {9, 8, 7, 6};
    edit->hasMaxLength = true;
    edit->maxLength = 10;
    edit->hasLayout = true;
    edit->align = DefineEditTextTag::Center;
    edit->leading = -2;
    edit->variableName = "pl:text";
    edit->hasText = true;
    edit->initialText = "AB";
    edit->useOutlines = true;
    w.AddTag(std::move(edit));

    auto sound = std::make_unique<DefineSoundTag>(17);
    sound->stereo = true;
    sound->sampleCount = 1152;
    sound->data = {0, 0, 0xFF, 0xFB, 1, 2};
    w.AddTag(std::move(sound));
    SwfSoundInfo si;
    si.hasInPoint = si.hasOutPoint = si.hasLoops = si.hasEnvelope = si.syncNoMultiple = true;
    si.inPoint = 5;
    si.outPoint = 500;
    si.loopCount = 3;
    si.envelope = {{0, 0, 32768}, {44100, 32768, 0}};
    w.AddTag(std::make_unique<StartSoundTag>(17, si));
    auto head = std::make_unique<SoundStreamHeadTag>();
    head->samplesPerBlock = 3675;
    head->latencySeek = -3;
    w.AddTag(std::move(head));
    auto head2 = std::make_unique<SoundStreamHead2Tag>();
    head2->streamFormat = SwfSoundFormat::Adpcm;
    w.AddTag(std::move(head2));
    w.AddTag(std::make_unique<SoundStreamBlockTag>(std::vector<uint8_t>{1, 2, 3, 4}));

    auto button = std::make_unique<DefineButtonTag>(18);
    SwfButtonRecord rec;
    rec.characterId = 9;
    rec.matrix = SwfMatrix::Translate(-5, 5);
    button->records = {rec};
    button->actions.Emplace<ActionGetURL>("http://example.org/", "_blank");
    w.AddTag(std::move(button));
    auto button2 = std::make_unique<DefineButton2Tag>(19);
    rec.colorTransform = SwfColorTransformAlpha::Alpha(100);
    rec.states = SwfButtonRecord::HitTest;
    // A record in no state but with the reserved bits set must not come
    // back as the end of the list (a fuzzed movie had one).
    SwfButtonRecord stateless = rec;
    stateless.states = 0;
    stateless.reservedBits = 0xC0;
    button2->records = {rec, stateless};
    SwfButtonCondAction press;
    press.conditions = SwfButtonCondAction::OverUpToOverDown;
    press.actions.Emplace<ActionPlay>();
    SwfButtonCondAction release;
    release.actions.Emplace<ActionStop>();
    button2->actions.push_back(std::move(press));
    button2->actions.push_back(std::move(release));
    w.AddTag(std::move(button2));
    auto bsound = std::make_unique<DefineButtonSoundTag>(19);
    bsound->soundIds = {0, 17, 0, 17};
    bsound->soundInfos[3].syncStop = true;
    w.AddTag(std::move(bsound));
    auto cx = std::make_unique<DefineButtonCxformTag>();
    cx->buttonId = 18;
    cx->colorTransform.hasAddTerms = true;
    cx->colorTransform.redAdd = -30;
    w.AddTag(std::move(cx));

    auto sprite = std::make_unique<DefineSpriteTag>(20);
    sprite->Add(PlaceObject2Tag::Place(1, 7, SwfMatrix::Translate(100, 0)));
    sprite->Add(std::make_unique<DoActionTag>());
    sprite->Add(std::make_unique<FrameLabelTag>("inside"));
    sprite->Add(std::make_unique<ShowFrameTag>());
    sprite->Add(PlaceObject2Tag::Modify(1, SwfMatrix::Translate(200, 0)));
    sprite->Add(std::make_unique<ShowFrameTag>());
    w.AddTag(std::move(sprite));
    auto init = std::make_unique<DoInitActionTag>(20, SwfActionList());
    init->actions.Emplace<ActionStop>();
    w.AddTag(std::move(init));

    auto exp = std::make_unique<ExportAssetsTag>();
    exp->assets = {{20, "clip"}, {7, "shape"}};
    w.AddTag(std::move(exp));
    auto imp = std::make_unique<ImportAssetsTag>();
    imp->url = "lib.swf";
    imp->assets = {{21, "other"}};
    w.AddTag(std::move(imp));
    auto dbg = std::make_unique<EnableDebuggerTag>();
    dbg->password = "x";
    w.AddTag(std::move(dbg));
    auto dbg2 = std::make_unique<EnableDebugger2Tag>();
    dbg2->password = "y";
    w.AddTag(std::move(dbg2));
    auto video = std::make_unique<DefineVideoStreamTag>();
    video->SetId(22);
    video->frameCount = 1;
    video->width = 16;
    video->height = 16;
    w.AddTag(std::move(video));
    auto vf = std::make_unique<VideoFrameTag>();
    vf->streamId = 22;
    vf->data = {1, 2, 3};
    w.AddTag(std::move(vf));
    w.AddTag(std::make_unique<SwfRawTag>(SwfTagCode::Protect, std::vector<uint8_t>{}, true));
    w.AddTag(std::make_unique<SwfRawTag>(777, std::vector<uint8_t>{9, 9, 9}));

    auto place = PlaceObject2Tag::Place(1, 7, SwfMatrix::ScaleF(0.5, 0.5, 20, 40), SwfColorTransformAlpha::Opacity(0.25));
    place->ratio = 3;
    place->name = "sld_1";
    place->clipDepth = 5;
    SwfClipAction onLoad;
    onLoad.events = SwfClipAction::kLoad;
    onLoad.actions.Emplace<ActionStop>();
    place->clipActions.push_back(std::move(onLoad));
    SwfClipAction onKey;
    onKey.events = SwfClipAction::kKeyPress;
    onKey.keyCode = 13;
    onKey.actions.Emplace<ActionPlay>();
    place->clipActions.push_back(std::move(onKey));
    w.AddTag(std::move(place));
    auto old = std::make_unique<PlaceObjectTag>(9, 2, SwfMatrix::Translate(1, 1));
    SwfColorTransform c;
    c.hasMultTerms = true;
    c.redMult = 128;
    old->colorTransform = c;
    w.AddTag(std::move(old));
    w.AddTag(std::make_unique<FrameLabelTag>("slide_1", true));
    SwfActionList script;
    script.Emplace<ActionStop>();
    w.AddTag(std::make_unique<DoActionTag>(std::move(script)));
    w.AddTag(std::make_unique<ShowFrameTag>());
    w.AddTag(std::make_unique<RemoveObjectTag>(9, 2));
    w.AddTag(std::make_unique<RemoveObject2Tag>(1));
    w.AddTag(std::make_unique<FreeCharacterTag>(9));
    w.AddTag(std::make_unique<ShowFrameTag>());
    w.AddTag(std::make_unique<EndTag>());
}

std::string WriteEveryTag(const std::string& path) {
    SwfWriter w;
    w.Setup(400 * 20, 300 * 20, 15.0f, 6);
    EXPECT_TRUE(w.Open(path, true));
    AddEveryTag(w);
    w.Close();
    return readFile(path);
}

// Writes the tags back through a writer with the header of `reader`.
std::string Rewrite(SwfReader& reader, const std::string& path) {
    const SwfHeader& h = reader.Header();
    SwfWriter w;
    w.Setup(h.frameSize.Width(), h.frameSize.Height(), static_cast<float>(h.frameRateRaw >> 8), h.version);
    EXPECT_TRUE(w.Open(path, true));
    for (auto& t : reader.Tags()) w.AddTag(*t);
    w.Close();
    return readFile(path);
}

}  // namespace

TEST(SwfReader, EveryTagWeWriteReadsBackToTheSameBytes) {
    TempDir dir;
    const std::string original = WriteEveryTag(dir.file("all.swf"));
    SwfReader reader;
    ASSERT_TRUE(reader.ReadFile(dir.file("all.swf"))) << reader.Error();
    // The header is what Rewrite starts from; the frame count is counted anew.
    EXPECT_EQ(reader.Header().frameCount, 2);
    // Only the two codes we do not interpret come back raw.
    int raw = 0;
    for (const auto& t : reader.Tags())
        if (dynamic_cast<SwfRawTag*>(t.get())) ++raw;
    EXPECT_EQ(raw, 2);
    ASSERT_EQ(reader.Tags().size(), reader.Locations().size());
    EXPECT_EQ(reader.Locations().front().offset, 8u + 8u + 4u);
    EXPECT_EQ(reader.Tags().back()->Code(), SwfTagCode::End);

    EXPECT_EQ(Rewrite(reader, dir.file("again.swf")), original);
}

TEST(SwfReader, OffsetIdsMovesEveryIdATagDefinesOrUses) {
    TempDir dir;
    WriteEveryTag(dir.file("all.swf"));
    SwfReader reader;
    ASSERT_TRUE(reader.ReadFile(dir.file("all.swf")));
    auto tags = reader.TakeTags();
    for (auto& t : tags) t->OffsetIds(100);
    for (auto& t : tags) {
        if (t->HasId()) {
            EXPECT_GT(t->GetId(), 100) << SwfTagName(t->Code());
        }
    }
    for (auto& t : tags) {
        switch (t->Code()) {
        case SwfTagCode::DefineShape3: {
            auto& s = static_cast<DefineShape3Tag&>(*t);
            EXPECT_EQ(s.shape.fillStyles[1].bitmapId, 104);
            EXPECT_EQ(s.shape.fillStyles[0].bitmapId, 0xFFFF);  // a solid fill has none
            break;
        }
        case SwfTagCode::DefineButtonSound: {
            auto& b = static_cast<DefineButtonSoundTag&>(*t);
            EXPECT_EQ(b.buttonId, 119);
            EXPECT_EQ(b.soundIds, (std::array<uint16_t, 4>{0, 117, 0, 117}));
            break;
        }
        case SwfTagCode::DefineSprite: {
            auto& s = static_cast<DefineSpriteTag&>(*t);
            EXPECT_EQ(*static_cast<PlaceObject2Tag&>(*s.Tags()[0]).characterId, 107);
            break;
        }
        case SwfTagCode::DefineText: EXPECT_EQ(static_cast<DefineTextTag&>(*t).records[0].fontId, 111); break;
        case SwfTagCode::DefineEditText: EXPECT_EQ(static_cast<DefineEditTextTag&>(*t).fontId, 112); break;
        case SwfTagCode::DoInitAction: EXPECT_EQ(static_cast<DoInitActionTag&>(*t).spriteId, 120); break;
        case SwfTagCode::ExportAssets: EXPECT_EQ(static_cast<ExportAssetsTag&>(*t).assets[0].id, 120); break;
        case SwfTagCode::DefineFontInfo2: EXPECT_EQ(static_cast<DefineFontInfo2Tag&>(*t).fontId, 111); break;
        case SwfTagCode::VideoFrame: EXPECT_EQ(static_cast<VideoFrameTag&>(*t).streamId, 122); break;
        case SwfTagCode::RemoveObject: EXPECT_EQ(static_cast<RemoveObjectTag&>(*t).characterId, 109); break;
        case SwfTagCode::DefineButton2:
            EXPECT_EQ(static_cast<DefineButton2Tag&>(*t).records[0].characterId, 109);
            break;
        case SwfTagCode::DefineMorphShape:
            EXPECT_EQ(static_cast<DefineMorphShapeTag&>(*t).fillStyles[1].bitmapId, 104);
            break;
        default: break;
        }
    }
}

TEST(SwfReader, RefusesMalformedMoviesWithAReason) {
    TempDir dir;
    const std::string good = WriteEveryTag(dir.file("all.swf"));
    auto readBytes = [](const std::string& bytes) {
        SwfReader r;
        const bool ok = r.ReadMemory(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
        return ok ? std::string() : r.Error();
    };
    EXPECT_EQ(readBytes(good), "");
    EXPECT_NE(readBytes("FWS").find("too short"), std::string::npos);
    EXPECT_NE(readBytes("hello world, not a movie").find("does not begin with FWS"), std::string::npos);
    EXPECT_NE(readBytes(std::string("ZWS\x0d\x10\x00\x00\x00", 8)).find("LZMA"), std::string::npos);

    // Cut short: the length field no longer matches.
    EXPECT_NE(readBytes(good.substr(0, good.size() - 10)).find("length field says"), std::string::npos);
    // Cut short with a matching length field: a tag runs past the end.
    std::string cut = good.substr(0, 200);
    cut[4] = char(200);
    cut[5] = cut[6] = cut[7] = 0;
    EXPECT_NE(readBytes(cut).find("runs past the end"), std::string::npos);
    // Bytes after End.
    std::string extra = good + "xx";
    extra[4] = char(uint8_t(extra[4]) + 2);
    EXPECT_NE(readBytes(extra).find("after the End tag"), std::string::npos);

    // A DefineShape whose fill style count is absurd for its length.
    auto movieWith = [](std::vector<uint8_t> tagBytes) {
        SwfStream s;
        s.WriteBytes("FWS", 3);
        s.WriteU8(6);
        s.WriteU32(0);
        SwfRect(0, 200, 0, 200).Write(s);
        s.WriteU16(12 << 8);
        s.WriteU16(1);
        s.WriteBytes(tagBytes);
        s.WriteU16(0);
        std::vector<uint8_t> b = s.Bytes();
        const uint32_t n = static_cast<uint32_t>(b.size());
        std::memcpy(&b[4], &n, 4);
        return std::string(b.begin(), b.end());
    };
    // DefineShape3, 8 body bytes: id, bounds 0, then 0xFF 0xFF 0xFF (65535 fill styles).
    const std::string absurd = movieWith({(32 << 6 | 8) & 0xFF, (32 << 6) >> 8, 1, 0, 0, 0xFF, 0xFF, 0xFF, 0, 0});
    const std::string why = readBytes(absurd);
    EXPECT_NE(why.find("tag 32 (DefineShape3)"), std::string::npos) << why;
    EXPECT_NE(why.find("fill style list"), std::string::npos) << why;
    // A PlaceObject2 with a body left over.
    const std::string leftover = movieWith({(26 << 6 | 5) & 0xFF, (26 << 6) >> 8, 0x00, 1, 0, 9, 9});
    EXPECT_NE(readBytes(leftover).find("left over"), std::string::npos);
    // A sprite inside a sprite.
    const std::string nested =
        movieWith({(39 << 6 | 10) & 0xFF, (39 << 6) >> 8, 1, 0, 1, 0, (39 << 6 | 4) & 0xFF, (39 << 6) >> 8, 2, 0, 0, 0, 0, 0});
    EXPECT_NE(readBytes(nested).find("sprite inside a sprite"), std::string::npos) << readBytes(nested);

    // Compressed input: damaged data and a bomb beyond the length field.
    std::string cws = "CWS";
    cws += char(6);
    cws += std::string("\x20\x00\x00\x00", 4);
    cws += "garbage";
    EXPECT_FALSE(readBytes(cws).empty());
    writeFile(dir.file("bad.swf"), cws);
    SwfReader r;
    EXPECT_FALSE(r.ReadFile(dir.file("bad.swf")));
    EXPECT_NE(r.Error().find("compressed"), std::string::npos) << r.Error();
    EXPECT_FALSE(r.ReadFile(dir.file("nothing-here.swf")));
    EXPECT_NE(r.Error().find("cannot open"), std::string::npos);
    EXPECT_FALSE(r.ReadFile(dir.path().string()));
}

