// Captions drawn with real faces: the entrance effects' frames, the text's
// characters and layout, glyph outlines, and the characters a movie gets.
#include <gtest/gtest.h>

#include <cmath>

#include "effects/CaptionDefaults.h"
#include "effects/CaptionLayout.h"
#include "effects/CaptionSprite.h"
#include "effects/FontFace.h"
#include "effects/GlyphShapes.h"
#include "swf/SwfActions.h"
#include "swf/SwfReader.h"
#include "swf/SwfTags.h"
#include "swf/SwfWriter.h"
#include "support/TempDir.h"

using namespace quillet;

namespace {

template <class T>
std::vector<const T*> TagsOf(const std::vector<std::unique_ptr<SwfTag>>& tags) {
    std::vector<const T*> found;
    for (const auto& tag : tags)
        if (auto* t = dynamic_cast<const T*>(tag.get())) found.push_back(t);
    return found;
}

}  // namespace

TEST(CaptionEffect, FramesFollowTheIntegerFrameRateAndTheStageWidth) {
    using K = CaptionEffectKind;
    struct Case {
        K kind;
        float fps;
        int32_t stageWidth;
        size_t frames;
        CaptionEffectFrame start, last;
    };
    const Case cases[] = {
        {K::None, 12, 8000, 0, {0, 0, 256}, {0, 0, 256}},
        // 8000 / 12 = 666 a frame: the caption stops 8 twips short.
        {K::FlyFromRight, 12, 8000, 12, {8000, 0, 256}, {8, 0, 256}},
        {K::FlyFromLeft, 12, 8000, 12, {-8000, 0, 256}, {-8, 0, 256}},
        // The vertical moves travel the stage's width too.
        {K::FlyFromTop, 12, 8000, 12, {0, -8000, 256}, {0, -8, 256}},
        {K::FlyFromBottom, 12.5f, 8000, 12, {0, 8000, 256}, {0, 8, 256}},
        {K::FlyFromRight, 7, 12800, 7, {12800, 0, 256}, {4, 0, 256}},
        {K::FadeIn, 12.5f, 8000, 12, {0, 0, 0}, {0, 0, 256}},
        // A rate under one still plays one frame, without dividing by zero.
        {K::FlyFromRight, 0.5f, 8000, 1, {8000, 0, 256}, {0, 0, 256}},
        {K::FadeIn, 120, 8000, 120, {0, 0, 0}, {0, 0, 256}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(CaptionEffectNames()[static_cast<size_t>(c.kind)] + " at " + std::to_string(c.fps));
        const CaptionEffectPlan plan = PlanCaptionEffect(c.kind, c.fps, c.stageWidth);
        ASSERT_EQ(plan.frames.size(), c.frames);
        EXPECT_EQ(plan.fades, c.kind == K::FadeIn);
        EXPECT_EQ(std::tie(plan.start.x, plan.start.y, plan.start.alphaMult),
                  std::tie(c.start.x, c.start.y, c.start.alphaMult));
        if (plan.frames.empty()) continue;
        const CaptionEffectFrame& last = plan.frames.back();
        EXPECT_EQ(std::tie(last.x, last.y, last.alphaMult), std::tie(c.last.x, c.last.y, c.last.alphaMult));
        // Every frame moves by the same step or fades a little more.
        for (size_t i = 1; i < plan.frames.size(); ++i) {
            EXPECT_EQ(plan.frames[i].x - plan.frames[i - 1].x, plan.frames[1 % plan.frames.size()].x - plan.frames[0].x);
            EXPECT_GE(plan.frames[i].alphaMult, plan.frames[i - 1].alphaMult);
        }
    }
    // Half way through a fade the text is half transparent.
    const CaptionEffectPlan fade = PlanCaptionEffect(K::FadeIn, 12, 8000);
    EXPECT_EQ(fade.frames[5].alphaMult, 128);
}

TEST(CaptionText, ValidUtf8IsReadAsSuchAnythingElseAsWindows1252) {
    const std::pair<std::string, std::u32string> cases[] = {
        {"", U""},
        {"plain", U"plain"},
        {"caf\xc3\xa9 \xc3\x9f\xe2\x82\xac", U"caf\u00e9 \u00df\u20ac"},
        {"\xf0\x9f\x93\xb7", U"\U0001F4F7"},
        // Bytes of the older program: a lone accented letter, the euro sign, quotes.
        {"caf\xe9", U"caf\u00e9"},
        {"\x80 \x93x\x94 \x9f", U"\u20ac \u201cx\u201d \u0178"},
        // Overlong forms, surrogates, values past U+10FFFF and cut sequences are not UTF-8.
        {"\xc0\xaf", U"\u00c0\u00af"},
        {"\xed\xa0\x80", U"\u00ed\u00a0\u20ac"},
        {"\xf4\x90\x80\x80", U"\u00f4\u0090\u20ac\u20ac"},
        {"ab\xc3", U"ab\u00c3"},
        {"\xc3\xa9\xe9", U"\u00c3\u00a9\u00e9"},
    };
    for (const auto& [bytes, text] : cases) EXPECT_EQ(DecodeCaptionText(bytes), text) << bytes;
}

TEST(GlyphShapes, CubicsBecomeQuadraticsWithinTheTolerance) {
    auto cubic = [](GlyphPoint p0, GlyphPoint c1, GlyphPoint c2, GlyphPoint p3, double t) {
        const double u = 1 - t;
        return GlyphPoint{u * u * u * p0.x + 3 * u * u * t * c1.x + 3 * u * t * t * c2.x + t * t * t * p3.x,
                          u * u * u * p0.y + 3 * u * u * t * c1.y + 3 * u * t * t * c2.y + t * t * t * p3.y};
    };
    struct Case {
        GlyphPoint p0, c1, c2, p3;
    };
    const Case cases[] = {
        {{0, 0}, {0, 500}, {1000, 500}, {1000, 0}},     // an arch
        {{0, 0}, {1000, 1000}, {0, 1000}, {1000, 0}},   // a loop
        {{0, 0}, {800, 600}, {-200, 600}, {600, 0}},    // an S with a cusp-like turn
        {{0, 0}, {1, 1}, {2, 2}, {3, 3}},               // a straight line
        {{10, 10}, {10, 10}, {10, 10}, {10, 10}},       // a point
    };
    for (double tolerance : {0.05, 1.0}) {
        for (const Case& c : cases) {
            auto quads = QuadraticsFromCubic(c.p0, c.c1, c.c2, c.p3, tolerance);
            ASSERT_FALSE(quads.empty());
            EXPECT_DOUBLE_EQ(quads.back().second.x, c.p3.x);
            EXPECT_DOUBLE_EQ(quads.back().second.y, c.p3.y);
            // Every point of the stand-ins lies near the cubic (densely sampled).
            constexpr int kCoarse = 8000;
            std::vector<GlyphPoint> curve;
            for (int i = 0; i <= kCoarse; ++i) curve.push_back(cubic(c.p0, c.c1, c.c2, c.p3, double(i) / kCoarse));
            auto distance = [&](GlyphPoint q) {
                size_t nearest = 0;
                double best = 1e18;
                for (size_t i = 0; i < curve.size(); ++i)
                    if (double d = std::hypot(curve[i].x - q.x, curve[i].y - q.y); d < best) best = d, nearest = i;
                // Refined around the nearest sample.
                for (int k = -200; k <= 200; ++k) {
                    const double t = std::clamp((double(nearest) + k / 200.0) / kCoarse, 0.0, 1.0);
                    const GlyphPoint p = cubic(c.p0, c.c1, c.c2, c.p3, t);
                    best = std::min(best, std::hypot(p.x - q.x, p.y - q.y));
                }
                return best;
            };
            GlyphPoint from = c.p0;
            double worst = 0;
            for (const auto& [control, to] : quads) {
                for (int i = 0; i <= 20; ++i) {
                    const double t = i / 20.0, u = 1 - t;
                    GlyphPoint q{u * u * from.x + 2 * u * t * control.x + t * t * to.x,
                                 u * u * from.y + 2 * u * t * control.y + t * t * to.y};
                    worst = std::max(worst, distance(q));
                }
                from = to;
            }
            EXPECT_LE(worst, tolerance * 1.01) << c.c1.x << "," << c.c1.y;
        }
    }
}

TEST(FontFace, GlyphsCloseAndMatchTheFaceMetrics) {
    FontCatalog fonts;
    bool fellBack = true;
    FontFace* sans = fonts.Find("dejavu sans", false, false, &fellBack);
    ASSERT_NE(sans, nullptr);
    EXPECT_FALSE(fellBack);
    EXPECT_EQ(sans->Family(), "DejaVu Sans");
    // DejaVu Sans: 2048 units an em, Windows ascent 1901 and descent 483.
    EXPECT_EQ(sans->Ascent(), 951);
    EXPECT_EQ(sans->Descent(), 242);
    EXPECT_EQ(fonts.Find("DejaVu Sans", false, false), sans);
    EXPECT_NE(fonts.Find("DejaVu Sans", true, false), sans);
    FontFace* missing = fonts.Find("No Such Face 12", true, false, &fellBack);
    EXPECT_TRUE(fellBack);
    EXPECT_EQ(missing, fonts.Find("DejaVu Sans", true, false));
    EXPECT_TRUE(missing->Bold());

    // A family with one regular face only is thickened and slanted when asked.
    FontFace* plain = fonts.Find("DejaVu Math TeX Gyre", false, false, &fellBack);
    FontFace* both = fonts.Find("DejaVu Math TeX Gyre", true, true, &fellBack);
    ASSERT_NE(plain, both);
    EXPECT_FALSE(fellBack);
    EXPECT_FALSE(plain->Bold() || plain->Italic());
    EXPECT_TRUE(both->Bold() && both->Italic());
    const FontGlyph &l = plain->Glyph(U'l'), &slanted = both->Glyph(U'l');
    // Thickened by a 24th of the em (its advance with it), its top leaning right.
    EXPECT_NEAR(slanted.advance, l.advance + 43, 1);
    EXPECT_GT(slanted.bounds.xMax, l.bounds.xMax + (l.bounds.yMax - l.bounds.yMin) / 10);

    for (char32_t code : {U'o', U'\u00e9', U'\u00df', U'W', U'8', U' ', U'\u4e00'}) {
        const FontGlyph& g = sans->Glyph(code);
        SCOPED_TRACE(static_cast<uint32_t>(code));
        EXPECT_EQ(g.present, code != U'\u4e00');
        EXPECT_GT(g.advance, 0);
        // Each contour returns to where it started.
        int64_t x = 0, y = 0, startX = 0, startY = 0;
        bool open = false;
        for (const SwfShapeRecord& r : g.shape.records) {
            if (r.kind == SwfShapeRecord::Kind::StyleChange) {
                if (open) {
                    EXPECT_EQ(std::tie(x, y), std::tie(startX, startY));
                }
                if (r.hasMove) x = startX = r.moveX, y = startY = r.moveY;
                open = true;
            } else {
                x += r.dx + r.anchorDx;
                y += r.dy + r.anchorDy;
            }
        }
        if (open) {
            EXPECT_EQ(std::tie(x, y), std::tie(startX, startY));
        }
        if (code == U' ') continue;
        // Ink above the baseline within the ascent; only descenders go below.
        EXPECT_GE(g.bounds.yMin, -sans->Ascent());
        EXPECT_LE(g.bounds.yMax, sans->Descent());
        EXPECT_LT(g.bounds.yMin, 0);
    }
    // A known pair of this face is kerned closer; pairs without an entry are not.
    EXPECT_LT(sans->Kerning(U'A', U'V'), 0);
    EXPECT_EQ(sans->Kerning(U'o', U'o'), 0);
}

TEST(CaptionLayout, BlocksStandWhereTheirAlignmentSays) {
    FontCatalog fonts;
    FontFace& face = *fonts.Find("DejaVu Sans", false, false);
    const int32_t W = 12800, H = 9600;
    Caption base;
    base.text = "Quillet";
    base.fontSize = 36;  // an em of 48 pixels, 960 twips
    const CaptionLayout one = LayOutCaption(base, DecodeCaptionText(base.text), face, W, H);
    EXPECT_EQ(one.textHeight, 960);
    // Ascent + descent of DejaVu Sans at 960 twips: (951 + 242) * 960 / 1024.
    EXPECT_NEAR(one.height, 1118, 1);
    ASSERT_GT(one.width, 0);

    struct Case {
        bool toStage;
        int32_t hAlign, vAlign, x, y;
        int32_t left, top;  // expected, twips
    };
    const int32_t w = one.width, h = one.height;
    const Case cases[] = {
        {true, Caption::Left, Caption::Top, 0, 0, 0, 0},
        {true, Caption::HCenter, Caption::VCenter, 0, 0, (W - w) / 2, (H - h) / 2},
        {true, Caption::Right, Caption::Bottom, 0, 0, W - w, H - h},
        {true, Caption::HCenter, Caption::Bottom, 5, -10, (W - w) / 2 + 100, H - h - 200},
        {false, Caption::Left, Caption::Top, 30, 40, 600, 800},
        {false, Caption::HCenter, Caption::VCenter, 320, 240, 6400 - w / 2, 4800 - h / 2},
        {false, Caption::Right, Caption::Bottom, 320, 240, 6400 - w, 4800 - h},
        // Far off the stage is where it is asked to be.
        {false, Caption::Left, Caption::Top, -100000, 1000000, -2000000, 20000000},
    };
    for (const Case& c : cases) {
        Caption caption = base;
        caption.alignToDoc = c.toStage;
        caption.hAlign = c.hAlign;
        caption.vAlign = c.vAlign;
        caption.x = c.x;
        caption.y = c.y;
        const CaptionLayout l = LayOutCaption(caption, DecodeCaptionText(caption.text), face, W, H);
        EXPECT_EQ(std::tie(l.left, l.top), std::tie(c.left, c.top)) << c.toStage << c.hAlign << c.vAlign;
    }

    // Ink lies within the block give or take the side bearings.
    EXPECT_GE(one.ink.yMin, 0);
    EXPECT_LE(one.ink.yMax, one.height);
    EXPECT_NEAR(one.ink.xMin, 0, 120);
    EXPECT_NEAR(one.ink.xMax, one.width, 120);

    // Tracking widens every gap between characters; leading every gap between lines.
    Caption spaced = base;
    spaced.tracking = 3;
    EXPECT_EQ(LayOutCaption(spaced, U"Quillet", face, W, H).width, w + 6 * 60);
    Caption lines = base;
    lines.leading = 10;
    lines.hAlign = Caption::Right;
    const CaptionLayout three = LayOutCaption(lines, U"Quillet\r\nQ\rQuillet\nQ", face, W, H);
    ASSERT_EQ(three.lines.size(), 4u);
    EXPECT_EQ(three.width, w);
    EXPECT_NEAR(three.height, h + 3 * (h + 200), 2);
    EXPECT_NEAR(three.lines[3].baseline - three.lines[0].baseline, 3 * (h + 200), 2);
    // Right-aligned lines end together.
    EXPECT_EQ(three.lines[1].left + three.lines[1].width, w);
}

TEST(CaptionWriter, EachFaceOnceWithTheCharactersUsedAndEachCaptionASpriteThatTimesItself) {
    test::TempDir dir;
    const std::string path = dir.file("captions.swf");
    FontCatalog fonts;
    CaptionWriter captions(fonts);
    std::vector<Caption> list(7);
    list[0].text = "ba\xc3\xa9";  // DejaVu Sans under its own name
    list[0].fontName = "DejaVu Sans";
    list[1].text = "cab";  // the same face through a missing name
    list[1].fontName = "Nowhere Sans";
    list[2].text = "zz";
    list[2].fontName = "Nowhere Sans";
    list[3].text = "";  // nothing to draw
    list[4].text = "Big\nBig";
    list[4].fontName = "DejaVu Sans";
    list[4].fontSize = 1000;
    list[4].alpha = 0;
    list[4].x = -1000000;
    list[5].text = "Timed";
    list[5].fontName = "DejaVu Serif";
    list[5].startTime = 500;  // 6 frames at 12 fps
    list[5].duration = 2000;  // 24 frames
    list[5].showTillNext = false;
    list[5].effect = "FLY FROM left";
    list[6].text = "Short";
    list[6].fontName = "DejaVu Serif";
    list[6].duration = 250;  // 3 frames: the fade is cut short
    list[6].showTillNext = false;
    list[6].effect = "fade in";
    std::vector<uint16_t> depths;
    {
        SwfWriter writer;
        writer.Setup(12800, 9600, 12, 6);
        ASSERT_TRUE(writer.Open(path, true));
        uint32_t ids = 0, depth = 0;
        MovieContext ctx{writer, 12, ids, depth};
        for (size_t i = 0; i < list.size(); ++i) captions.Collect(list[i], CaptionName(int(i) + 1, 2));
        for (size_t i = 0; i < list.size(); ++i) depths.push_back(captions.Place(list[i], CaptionName(int(i) + 1, 2), ctx));
        writer.AddTag(std::make_unique<ShowFrameTag>());
        writer.AddTag(std::make_unique<EndTag>());
        writer.Close();
    }
    EXPECT_EQ(depths, (std::vector<uint16_t>{1, 2, 3, 0, 4, 5, 6}));
    ASSERT_EQ(captions.Warnings().size(), 1u);
    EXPECT_EQ(captions.Warnings()[0],
              "caption 2 of slide 2: the font \"Nowhere Sans\" is not installed; DejaVu Sans is used instead "
              "(also for 1 more caption)");

    SwfReader reader;
    ASSERT_TRUE(reader.ReadFile(path)) << reader.Error();
    const auto fontTags = TagsOf<DefineFont2Tag>(reader.Tags());
    ASSERT_EQ(fontTags.size(), 2u);
    EXPECT_EQ(fontTags[0]->name, "DejaVu Sans");
    EXPECT_EQ(fontTags[0]->codes, (std::vector<uint16_t>{'B', 'a', 'b', 'c', 'g', 'i', 'z', 0xE9}));
    EXPECT_EQ(fontTags[1]->name, "DejaVu Serif");
    EXPECT_EQ(fontTags[1]->codes, (std::vector<uint16_t>{'S', 'T', 'd', 'e', 'h', 'i', 'm', 'o', 'r', 't'}));

    const auto sprites = TagsOf<DefineSpriteTag>(reader.Tags());
    ASSERT_EQ(sprites.size(), 6u);
    // Frame by frame: what each sprite's frames hold.
    auto frames = [](const DefineSpriteTag& sprite) {
        std::vector<std::string> out(1);
        for (const auto& tag : sprite.Tags()) {
            if (dynamic_cast<const ShowFrameTag*>(tag.get())) out.emplace_back();
            else if (auto* p = dynamic_cast<const PlaceObject2Tag*>(tag.get())) out.back() += p->characterId ? "P" : "M";
            else if (dynamic_cast<const RemoveObject2Tag*>(tag.get())) out.back() += "R";
            else if (dynamic_cast<const DoActionTag*>(tag.get())) out.back() += "S";
        }
        out.pop_back();
        return out;
    };
    EXPECT_EQ(frames(*sprites[0]), std::vector<std::string>{"P"});
    // Six frames' wait, twelve of flight, twelve more shown, then gone and stopped.
    std::vector<std::string> timed(6, "");
    timed.push_back("PM");
    for (int i = 1; i < 12; ++i) timed.push_back("M");
    for (int i = 0; i < 12; ++i) timed.push_back("");
    timed.push_back("RS");
    EXPECT_EQ(frames(*sprites[4]), timed);
    EXPECT_EQ(frames(*sprites[5]), (std::vector<std::string>{"PM", "M", "M", "RS"}));

    // The text's colour carries the caption's opacity; the huge one is as tall as asked.
    const auto texts = TagsOf<DefineText2Tag>(reader.Tags());
    ASSERT_EQ(texts.size(), 6u);
    // Its second line lies 1000 * 4/3 * 20 * (951 + 242) / 1024 = 31068 twips
    // under the first, past what a record's offset holds: the text is written
    // at half size and scaled back by its own matrix.
    ASSERT_EQ(texts[3]->records.size(), 2u);
    EXPECT_EQ(texts[3]->matrix.scaleX, 2 << 16);
    EXPECT_EQ(texts[3]->records[0].textHeight, 13334);
    EXPECT_NEAR(2 * (texts[3]->records[1].yOffset - texts[3]->records[0].yOffset), 31068, 2);
    EXPECT_EQ(texts[3]->records[0].color.a, 0);
    EXPECT_EQ(texts[0]->matrix.scaleX, 1 << 16);
    EXPECT_EQ(texts[0]->records[0].color, SwfColor(255, 255, 255, 255));
}

TEST(PictureCaption, TheDayTakenComesFromExifElseTheFileTime) {
    test::TempDir dir;
    const std::string photo = "/usr/share/backgrounds/mate/nature/Storm.jpg";  // carries an Exif block
    struct Case {
        std::string name, make, day;
    };
    const Case cases[] = {
        // The original date wins over the date stored, whatever their order in the file.
        {"both.jpg",
         "cp " + photo + " F && exiftool -q -q -overwrite_original -DateTimeOriginal='2001:02:03 04:05:06' "
                         "-ModifyDate='2011:12:13 14:15:16' F",
         "2001-02-03"},
        {"stored.jpg",
         "cp " + photo + " F && exiftool -q -q -overwrite_original -DateTimeOriginal= -ModifyDate='2011:12:13 14:15:16' F",
         "2011-12-13"},
        // No Exif date (or a blank one): the file's own time, in local time.
        {"blank.jpg",
         "cp " + photo + " F && exiftool -q -q -overwrite_original -all= -DateTimeOriginal='0000:00:00 00:00:00' F "
                         "&& touch -d '2019-07-04 12:00' F",
         "2019-07-04"},
        {"plain.png", "convert -size 4x4 xc:red F && touch -d '2020-02-29 12:00' F", "2020-02-29"},
        {"missing.jpg", "true", ""},
    };
    for (const Case& c : cases) {
        const std::string path = dir.file(c.name);
        std::string make = c.make;
        for (size_t at; (at = make.find(" F")) != std::string::npos;) make.replace(at, 2, " '" + path + "'");
        ASSERT_EQ(std::system(make.c_str()), 0) << make;
        EXPECT_EQ(PictureDateText(path), c.day) << c.name;
    }
    EXPECT_EQ(PictureNameText("/photos/Summer 2024/beach.day.JPG"), "beach.day");
    // The made caption draws in an installed face and sits inside the stage.
    const Caption caption = MakePictureCaption("beach", 480);
    FontCatalog fonts;
    bool fellBack = true;
    FontFace* face = fonts.Find(caption.fontName, caption.bold, caption.italic, &fellBack);
    EXPECT_FALSE(fellBack);
    const CaptionLayout l = LayOutCaption(caption, U"beach", *face, 12800, 9600);
    EXPECT_EQ(l.textHeight, 22 * 80 / 3 + 1);  // 22 points, an em of about 30 pixels
    EXPECT_GT(l.top, 9600 - 2 * l.height);
    EXPECT_LT(l.top + l.height, 9600);
}
