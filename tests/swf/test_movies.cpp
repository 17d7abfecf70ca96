// Movies for the playback and outside-parser checks (tests/e2e/test_swf_movies.sh).
//
// With QUILLET_TEST_MOVIES_DIR set they are written there (the e2e script
// then parses them with yaswfp and plays them in Ruffle); otherwise they go to
// a scratch folder and are only read back by our reader. Bitmaps and the
// show's scripts are played through exported shows (test_picture_types,
// test_controls_playback). Every movie is 320 x 240 pixels at 12 fps on a grey (200, 200, 200) stage.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>

#include "support/TempDir.h"
#include "swf/SwfReader.h"
#include "swf/SwfTags.h"
#include "swf/SwfWriter.h"

using namespace quillet;
using quillet::test::TempDir;

namespace {

constexpr int kTw = 20;  // twips per pixel

class MovieDir {
public:
    MovieDir() {
        if (const char* env = std::getenv("QUILLET_TEST_MOVIES_DIR"); env && *env) {
            path_ = env;
            std::filesystem::create_directories(path_);
        } else {
            scratch_ = std::make_unique<TempDir>();
            path_ = scratch_->path().string();
        }
    }
    std::string file(const std::string& name) const { return (std::filesystem::path(path_) / name).string(); }

private:
    std::unique_ptr<TempDir> scratch_;
    std::string path_;
};

// A writer for a 320 x 240, 12 fps movie with the grey background.
std::unique_ptr<SwfWriter> Begin(const std::string& path, uint8_t version = 6) {
    auto w = std::make_unique<SwfWriter>();
    w->Setup(320 * kTw, 240 * kTw, 12.0f, version);
    EXPECT_TRUE(w->Open(path, true)) << path;
    w->AddTag(std::make_unique<SetBackgroundColorTag>(SwfColor(200, 200, 200)));
    return w;
}

void Finish(SwfWriter& w) {
    w.AddTag(std::make_unique<EndTag>());
    EXPECT_GT(w.Close(), 0u);
    EXPECT_TRUE(w.Good());
}

SwfRect PixelRect(int left, int top, int right, int bottom) { return SwfRect::FromPixels(left, top, right, bottom); }

std::unique_ptr<DefineShapeTag> SolidRect(uint16_t id, SwfRect r, SwfColor c) {
    return DefineShapeTag::Rectangle(id, r, SwfFillStyle::MakeSolid(c));
}

// Reads a movie back and checks the header our writer promised.
void ExpectReadable(const std::string& path, uint16_t frames) {
    SwfReader reader;
    ASSERT_TRUE(reader.ReadFile(path)) << path << ": " << reader.Error();
    EXPECT_EQ(reader.Header().frameCount, frames) << path;
    EXPECT_EQ(reader.Header().frameSize, PixelRect(0, 0, 320, 240));
}

// shapes.swf: solid fills (with and without alpha), a gradient, curves with an
// outline, and a placement with a colour transform.
void WriteShapes(const std::string& path) {
    auto w = Begin(path);
    w->AddTag(SolidRect(1, PixelRect(20, 20, 120, 100), {255, 0, 0}));
    w->AddTag(DefineShape3Tag::Rectangle(2, PixelRect(100, 60, 200, 140), SwfFillStyle::MakeSolid({0, 0, 255, 128})));
    // Black to white from left to right across 20..180 px: the gradient square
    // (-16384..16384) is scaled to the width and moved to the middle.
    const SwfRect gr = PixelRect(20, 150, 180, 220);
    const SwfMatrix gm = SwfMatrix::ScaleF(gr.Width() / 32768.0, gr.Height() / 32768.0, (gr.xMin + gr.xMax) / 2,
                                           (gr.yMin + gr.yMax) / 2);
    auto gradient = SwfFillStyle::MakeLinearGradient(gm, {{0, {0, 0, 0}}, {255, {255, 255, 255}}});
    w->AddTag(std::make_unique<DefineShape2Tag>(3, gr, [&] {
        SwfShapeBuilder b;
        b.SetFill1(b.AddFillStyle(gradient));
        b.Rectangle(gr.xMin, gr.yMin, gr.Width(), gr.Height());
        return b.Build();
    }()));
    // A green disc of radius 40 px around (260, 60) from eight curves, with a 2 px black outline.
    SwfShapeBuilder disc;
    disc.SetFill1(disc.AddFillStyle(SwfFillStyle::MakeSolid({0, 200, 0})));
    disc.SetLine(disc.AddLineStyle({2 * kTw, {0, 0, 0}}));
    const double cx = 260 * kTw, cy = 60 * kTw, r = 40 * kTw;
    const double pi = std::acos(-1.0);
    disc.MoveTo(int32_t(cx + r), int32_t(cy));
    for (int i = 1; i <= 8; ++i) {
        const double a = i * pi / 4, m = a - pi / 8, rc = r / std::cos(pi / 8);
        disc.CurveTo(int32_t(cx + rc * std::cos(m)), int32_t(cy + rc * std::sin(m)), int32_t(cx + r * std::cos(a)),
                     int32_t(cy + r * std::sin(a)));
    }
    w->AddTag(std::make_unique<DefineShape3Tag>(4, disc.Bounds(), disc.Build()));

    w->AddTag(PlaceObject2Tag::Place(1, 1));
    w->AddTag(PlaceObject2Tag::Place(2, 2));
    w->AddTag(PlaceObject2Tag::Place(3, 3));
    w->AddTag(PlaceObject2Tag::Place(4, 4));
    // The red rectangle again, moved to (200, 150) and half transparent.
    w->AddTag(PlaceObject2Tag::Place(5, 1, SwfMatrix::Translate(180 * kTw, 130 * kTw), SwfColorTransformAlpha::Opacity(0.5)));
    w->AddTag(std::make_unique<ShowFrameTag>());
    Finish(*w);
}

// sprite.swf: a three-frame clip moving a red square 100 px per frame, placed
// at (20, 100) on a six-frame main timeline: the square is at x = 20, 120,
// 220, then 20 again.
void WriteSprite(const std::string& path) {
    auto w = Begin(path);
    w->AddTag(SolidRect(1, PixelRect(0, 0, 40, 40), {255, 0, 0}));
    auto clip = std::make_unique<DefineSpriteTag>(2);
    clip->Add(PlaceObject2Tag::Place(1, 1));
    clip->Add(std::make_unique<FrameLabelTag>("left"));
    clip->Add(std::make_unique<ShowFrameTag>());
    clip->Add(PlaceObject2Tag::Modify(1, SwfMatrix::Translate(100 * kTw, 0)));
    clip->Add(std::make_unique<ShowFrameTag>());
    clip->Add(PlaceObject2Tag::Modify(1, SwfMatrix::Translate(200 * kTw, 0)));
    clip->Add(std::make_unique<ShowFrameTag>());
    EXPECT_EQ(clip->FrameCount(), 3);
    w->AddTag(std::move(clip));
    auto place = PlaceObject2Tag::Place(1, 2, SwfMatrix::Translate(20 * kTw, 100 * kTw));
    place->name = "mover";
    w->AddTag(std::move(place));
    for (int i = 0; i < 6; ++i) w->AddTag(std::make_unique<ShowFrameTag>());
    Finish(*w);
}

// text.swf: a two-glyph font ("A" a square, "B" a triangle) with layout,
// static text "ABA" in black with its baseline at y = 100, and an edit field
// with the same font below.
void WriteText(const std::string& path) {
    auto w = Begin(path);
    auto font = std::make_unique<DefineFont2Tag>(1);
    font->name = "Blocks";
    font->hasLayout = true;
    SwfShape square, triangle;
    auto fill = [](SwfShape& s, std::vector<std::pair<int, int>> pts) {
        auto start = SwfShapeRecord::Move(pts[0].first, pts[0].second);
        start.hasFill1 = true;
        start.fill1 = 1;
        s.records.push_back(start);
        for (size_t i = 1; i <= pts.size(); ++i) {
            const auto& a = pts[i - 1];
            const auto& b = pts[i % pts.size()];
            s.records.push_back(SwfShapeRecord::Line(b.first - a.first, b.second - a.second));
        }
    };
    fill(square, {{100, -700}, {700, -700}, {700, -100}, {100, -100}});
    fill(triangle, {{400, -700}, {700, -100}, {100, -100}});
    font->glyphs = {square, triangle};
    font->codes = {'A', 'B'};
    font->ascent = 800;
    font->descent = 224;
    font->advances = {1000, 1000};
    font->glyphBounds = {SwfRect(100, 700, -700, -100), SwfRect(100, 700, -700, -100)};
    w->AddTag(std::move(font));

    auto text = std::make_unique<DefineTextTag>(2);
    text->bounds = PixelRect(0, 60, 140, 110);
    SwfTextRecord run;
    run.hasFont = run.hasColor = run.hasXOffset = run.hasYOffset = true;
    run.fontId = 1;
    run.color = {0, 0, 0};
    run.xOffset = 0;
    run.yOffset = 100 * kTw;
    run.textHeight = 40 * kTw;  // 1024 font units = 40 px
    const int advance = 1000 * 40 * kTw / 1024;
    run.glyphs = {{0, advance}, {1, advance}, {0, advance}};
    text->records = {run};
    w->AddTag(std::move(text));

    auto edit = std::make_unique<DefineEditTextTag>(3);
    edit->bounds = PixelRect(0, 0, 200, 60);
    edit->hasFont = true;
    edit->fontId = 1;
    edit->fontHeight = 40 * kTw;
    edit->hasTextColor = true;
    edit->textColor = {0, 0, 160};
    edit->useOutlines = true;
    edit->hasText = true;
    edit->initialText = "BAB";
    edit->variableName = "caption";
    w->AddTag(std::move(edit));

    w->AddTag(PlaceObject2Tag::Place(1, 2, SwfMatrix::Translate(20 * kTw, 0)));
    w->AddTag(PlaceObject2Tag::Place(2, 3, SwfMatrix::Translate(20 * kTw, 140 * kTw)));
    w->AddTag(std::make_unique<ShowFrameTag>());
    Finish(*w);
}

}  // namespace

TEST(TestMovies, WriteAndReadBack) {
    MovieDir dir;
    WriteShapes(dir.file("shapes.swf"));
    ExpectReadable(dir.file("shapes.swf"), 1);
    WriteSprite(dir.file("sprite.swf"));
    ExpectReadable(dir.file("sprite.swf"), 6);
    WriteText(dir.file("text.swf"));
    ExpectReadable(dir.file("text.swf"), 1);
    // Reading back and writing again to the same bytes: SwfReader.EveryTagWeWriteReadsBackToTheSameBytes.
}
