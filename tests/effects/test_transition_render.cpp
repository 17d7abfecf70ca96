// Renders transitions into a real movie file and plays it back on the stage
// model: frames, depths, colour transforms, masks and matrices as the player
// will see them.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "effects/StageModel.h"
#include "effects/StageShapes.h"
#include "effects/transitions/ColorFade.h"
#include "effects/transitions/WipeOn.h"
#include "options/OptionTable.h"
#include "support/TempDir.h"

using namespace quillet;
using namespace quillet::test;

namespace {

std::unique_ptr<Transition> Make(const char* name) { return TransitionRegistry::instance().Find(name)->Clone(); }

// Every transition with its defaults, then with each other item of each list
// and each box turned over, one option at a time; and counts at their ends.
std::vector<Variant> EveryVariant() {
    std::vector<Variant> variants;
    const auto& registry = TransitionRegistry::instance();
    for (size_t i = 0; i < registry.count(); ++i) {
        const Transition& t = *registry.At(int(i));
        variants.push_back({t.name(), {}});
        const OptionTable table = t.Options();
        for (size_t k = 0; k < table.size(); ++k) {
            if (table[k].kind == OptionKind::Bool) variants.push_back({t.name(), {{k, table[k].defaultValue ? 0 : 1}}});
            if (table[k].kind != OptionKind::List) continue;
            for (size_t item = 0; item < table[k].items.size(); ++item)
                if (double(item) != table[k].defaultValue) variants.push_back({t.name(), {{k, double(item)}}});
        }
    }
    for (const char* name : {"Sliding Bars", "Blinds In", "Blinds Out"})
        for (double count : {1, 200}) variants.push_back({name, {{1, count}}});
    // A plain move by the stage's width to the right.
    const std::vector<std::pair<size_t, double>> moveRight = {{0, kStageW}, {1, 0}, {2, 1}, {3, 1}, {4, 0}};
    variants.push_back({"Slide In From", moveRight});
    variants.push_back({"Slide Out To", moveRight});
    return variants;
}

}  // namespace

TEST(TransitionRender, EveryTransitionTakesItsFramesKeepsTheListAndLandsTheIncomingSlideToTheTwip) {
    // A slide smaller than the stage, the first slide (no outgoing one), one
    // filling the stage and a blank one; frame rates at both ends, a single
    // frame and an odd count that puts no frame half way. Each transition's
    // defaults meet every timing; each other option value a few.
    const StageSetup small, first{{kInId, 2, SwfMatrix(), 0, 0, kStageW, kStageH, 1, ""}, false},
        full{kFullIncoming}, blank{{0, 2, SwfMatrix(), 0, 0, kStageW, kStageH, 2, ""}};
    struct Run {
        uint32_t ms;
        float fps;
        const StageSetup* setup;
        const char* setupName;
    };
    std::vector<Run> defaultRuns = {{1000, 7, &full, "full"}, {1000, 7, &blank, "blank"}};
    for (auto [ms, fps] : {std::pair{0u, 12.0f}, {80u, 12.0f}, {1000u, 7.0f}, {2000u, 1.0f}, {1000u, 120.0f}})
        defaultRuns.insert(defaultRuns.end(), {{ms, fps, &small, "small"}, {ms, fps, &first, "first"}});
    const std::vector<Run> optionRuns = {
        {1000, 7, &small, "small"}, {2000, 1, &first, "first"}, {80, 12, &blank, "blank"}};
    const std::vector<Point> grid = Grid(0, 0, kStageW, kStageH, 16, 12);
    for (const Variant& v : EveryVariant())
        for (const Run& run : v.options.empty() ? defaultRuns : optionRuns) {
            const StageSetup& setup = *run.setup;
            SCOPED_TRACE(v.Describe() + ", " + std::to_string(run.ms) + " ms at " + std::to_string(int(run.fps)) +
                         " fps, " + run.setupName);
            Stage stage(v.Make(), run.ms, run.fps, setup);
            // Color Fade takes an even number, Fade Out none without a slide
            // to fade, and "None" none at all.
            auto frames = static_cast<int>(run.ms * 0.001 * run.fps + 0.5);
            if (v.name == "Color Fade") frames -= frames % 2;
            if ((v.name == "Fade Out" && !setup.withOutgoing) || v.name == "None") frames = 0;
            ASSERT_EQ(stage.Frames(), frames);
            const SlideOnStage& in = stage.in;
            if (frames > 0) {
                // The last frame: the incoming slide alone, whole and to the
                // twip, over its place; the outgoing one, wherever it still
                // shows, where the camera left it.
                stage.PlayTo(frames);
                for (Point p : grid) {
                    const Seen s = stage.At(p);
                    ASSERT_EQ(s.other, 0) << "at " << p.x << "," << p.y;
                    if (s.out > 0) {
                        const Point home = *Affine(stage.out.matrix).Inverse(p);
                        ASSERT_NEAR(s.outAt->x, home.x, 1) << "at " << p.x << "," << p.y;
                        ASSERT_NEAR(s.outAt->y, home.y, 1) << "at " << p.x << "," << p.y;
                    }
                    if (in.characterId == 0 || !InSlide(in, p)) {
                        ASSERT_EQ(s.in, 0) << "at " << p.x << "," << p.y;
                        continue;
                    }
                    ASSERT_EQ(s.in, 1) << "at " << p.x << "," << p.y;
                    ASSERT_NEAR(s.inAt->x, p.x - in.x, 1e-6);
                    ASSERT_NEAR(s.inAt->y, p.y - in.y, 1e-6);
                }
            }
            // Then the incoming slide alone remains, on the depth it now
            // claims, in place and untinted.
            stage.PlayAll();
            if (in.characterId == 0) {
                EXPECT_TRUE(stage.list.empty());
                continue;
            }
            ASSERT_EQ(stage.list.size(), 1u);
            const auto& [depth, layer] = *stage.list.begin();
            EXPECT_EQ(depth, in.depth);
            EXPECT_EQ(layer.character, kInId);
            EXPECT_EQ(layer.matrix, SwfMatrix::Translate(in.x, in.y));
            EXPECT_EQ(in.matrix, layer.matrix);
            if (layer.colour) {
                EXPECT_EQ(layer.colour->redMult, 256);
                EXPECT_EQ(layer.colour->alphaMult, 256);
            }
        }
}

TEST(TransitionRender, EveryTransitionGainsGroundFrameByFrame) {
    // How much of the incoming slide's place shows it: little on the first
    // frame, never less on a later one (but for the grid's grain), some of it
    // half way, on an odd frame count that puts no frame at the half-way point.
    // The spins turn the picture across its place; their own test follows them.
    const SlideOnStage& in = kSmallIncoming;
    const std::vector<Point> grid = Grid(in.x, in.y, in.width, in.height, 24, 18);
    for (const Variant& v : EveryVariant()) {
        if (v.name == "None" || v.name.starts_with("Spin")) continue;
        SCOPED_TRACE(v.Describe());
        Stage play(v.Make(), 1000, 7);
        double shown = 0;
        for (int f = 1; f <= play.Frames(); ++f) {
            play.PlayTo(f);
            double sum = 0;
            for (Point p : grid) sum += play.At(p).in;
            const double now = sum / grid.size();
            EXPECT_GE(now, shown - 0.02) << "frame " << f;
            shown = std::max(shown, now);
            if (f == 1) {
                EXPECT_LT(now, 0.6);
            }
            if (f == 4) {
                EXPECT_GT(now, 0.02);
            }
        }
    }
}

TEST(TransitionRender, FadesWriteTheirAlphaRamps) {
    const StageSetup full{kFullIncoming};
    Stage cross(Make("Cross Fade"), 2000, 12, full);  // 24 frames
    ASSERT_EQ(cross.Frames(), 24);
    EXPECT_FALSE(cross.Place(0, 2, true)->move);  // placed first, then faded in the same frame
    EXPECT_EQ(cross.Alpha(0, 2), 11);             // 256 / 24 + 0.5
    EXPECT_EQ(cross.Alpha(0, 1), 245);
    EXPECT_EQ(cross.Alpha(11, 2), 128);
    EXPECT_EQ(cross.Alpha(11, 1), 128);
    EXPECT_EQ(cross.Alpha(23, 2), 256);
    EXPECT_EQ(cross.Alpha(23, 1), 0);
    EXPECT_TRUE(cross.Removes(24, 1));

    Stage fadeIn(Make("Fade In"), 1000, 12, full);  // 12 frames; the outgoing slide stays as it is
    ASSERT_EQ(fadeIn.Frames(), 12);
    EXPECT_EQ(fadeIn.Alpha(5, 2), 128);
    EXPECT_EQ(fadeIn.Place(5, 1), nullptr);
    EXPECT_EQ(fadeIn.Alpha(11, 2), 256);
    EXPECT_TRUE(fadeIn.Removes(12, 1));

    // Fade Out: the slides change at once; a copy of the outgoing slide, with
    // its zoomed matrix, fades on a fresh depth above.
    Stage fadeOut(Make("Fade Out"), 1000, 12, full);
    ASSERT_EQ(fadeOut.Frames(), 12);
    EXPECT_TRUE(fadeOut.Removes(0, 1));
    auto* copy = fadeOut.Place(0, 3, true);
    ASSERT_TRUE(copy && !copy->move);
    EXPECT_EQ(*copy->characterId, kOutId);
    EXPECT_EQ(*copy->matrix, fadeOut.out.matrix);
    EXPECT_EQ(fadeOut.Alpha(0, 3), 235);
    EXPECT_EQ(fadeOut.Alpha(11, 3), 0);
    EXPECT_TRUE(fadeOut.Removes(12, 3));
}

TEST(TransitionRender, ColorFadeSwitchesSlidesUnderTheFullColour) {
    auto t = std::make_unique<ColorFadeTransition>();
    t->SetOptionValue(0, 0x4080FF);  // red in the lowest byte
    Stage r(std::move(t), 1250, 12, {kFullIncoming});  // 15 frames: an odd count loses one
    ASSERT_EQ(r.Frames(), 14);
    auto* shape = dynamic_cast<DefineShapeTag*>(r.frames[0][0]);
    ASSERT_TRUE(shape);
    EXPECT_EQ(shape->GetId(), 11);
    EXPECT_EQ(shape->bounds, SwfRect(0, kStageW, 0, kStageH));
    EXPECT_EQ(shape->shape.fillStyles.at(0).color, SwfColor(0xFF, 0x80, 0x40));
    auto* sheet = r.Place(0, 3, true);
    ASSERT_TRUE(sheet && !sheet->move);
    EXPECT_EQ(*sheet->characterId, 11);
    EXPECT_EQ(sheet->colorTransform->alphaMult, 0);  // placed transparent
    EXPECT_EQ(r.Alpha(0, 3), 37);
    EXPECT_EQ(r.Alpha(6, 3), 256);
    EXPECT_EQ(r.Place(6, 2), nullptr);
    ASSERT_TRUE(r.Place(7, 2));  // between the phases
    EXPECT_TRUE(r.Removes(7, 1));
    EXPECT_EQ(r.Alpha(7, 3), 219);
    EXPECT_EQ(r.Alpha(13, 3), 0);
    EXPECT_TRUE(r.Removes(14, 3));
}

TEST(TransitionRender, WipeOnUncoversTheSlideFromEachDirection) {
    // Half way the side where the wipe starts shows the incoming slide, the far
    // side still the outgoing one; on the first frame the centre is not yet reached.
    static const int dx[] = {0, 0, 1, -1, 1, -1, 1, -1, 1, -1, 1, -1};
    static const int dy[] = {-1, 1, 0, 0, 1, 1, -1, -1, 1, 1, -1, -1};
    for (int dir = 0; dir < 12; ++dir) {
        SCOPED_TRACE(dir);
        auto t = std::make_unique<WipeOnTransition>();
        t->SetOptionValue(0, dir);
        Stage r(std::move(t), 1000, 12, {kFullIncoming});
        ASSERT_EQ(r.Frames(), 12);
        EXPECT_EQ(r.in.depth, 4);  // above its mask
        const Point centre{kStageW / 2.0, kStageH / 2.0};
        r.PlayTo(1);
        EXPECT_EQ(r.At(centre).top, kOutId);
        r.PlayTo(6);
        const double ox = dx[dir] * kStageW * 0.4, oy = dy[dir] * kStageH * 0.4;
        EXPECT_EQ(r.At({centre.x - ox, centre.y - oy}).in, 1);
        EXPECT_EQ(r.At({centre.x + ox, centre.y + oy}).out, 1);
    }
}

TEST(TransitionRender, SpinsTurnAboutThePlacementPointAndEndUprightOrGone) {
    // Spin In: the incoming slide grows from nothing about its own position.
    auto angles = [](float spins, bool clockwise) {
        auto t = Make("Spin In");
        t->SetOptionValue(0, spins);
        t->SetOptionValue(1, clockwise ? 0 : 1);
        Stage r(std::move(t), 1000, 12, {{kInId, 2, SwfMatrix(), 400, 200, 6400, 4800, 2, ""}});
        EXPECT_EQ(r.Frames(), 12);
        std::vector<double> result;
        for (size_t f = 0; f < 12; ++f) {
            const SwfMatrix m = *r.Place(f, 2)->matrix;
            EXPECT_EQ(m.translateX, 400);
            EXPECT_EQ(m.translateY, 200);
            EXPECT_NEAR(m.rotateSkew0, -m.rotateSkew1, 1);  // +0.5 then truncation toward zero
            EXPECT_NEAR(std::hypot(m.scaleX, m.rotateSkew0) / 65536, (f + 1) / 12.0, 1e-4);
            result.push_back(std::atan2(m.rotateSkew0, m.scaleX) * 180 / std::numbers::pi);
        }
        return result;
    };
    for (double a : angles(0, true)) EXPECT_EQ(a, 0);
    auto cw = angles(0.25f, true), ccw = angles(0.25f, false);
    EXPECT_NEAR(cw[0], -82.5, 0.01);  // a positive angle turns clockwise on screen (y down)
    EXPECT_NEAR(ccw[0], 82.5, 0.01);
    for (size_t f = 1; f < 12; ++f) EXPECT_GT(cw[f], cw[f - 1]);

    // Spin Out: a copy of the outgoing slide, with its zoomed matrix, turns
    // and shrinks above the incoming one, which is in place from the start.
    auto out = Make("Spin Out");
    out->SetOptionValue(0, 0.5);
    Stage r(std::move(out), 1000, 12, {kFullIncoming});
    ASSERT_EQ(r.Frames(), 12);
    EXPECT_FALSE(r.Place(0, 2, true)->move);
    EXPECT_TRUE(r.Removes(0, 1));
    ASSERT_EQ(*r.Place(0, 3, true)->characterId, kOutId);
    for (size_t f = 0; f < 12; ++f) {
        const SwfMatrix m = *r.Place(f, 3)->matrix;
        EXPECT_EQ(m.translateX, -400);
        EXPECT_NEAR(std::hypot(m.scaleX, m.rotateSkew0) / 65536, 1.2 * (11 - f) / 12.0, 1e-4);
        EXPECT_NEAR(std::atan2(m.rotateSkew0, m.scaleX) * 180 / std::numbers::pi, f == 11 ? 0 : 180.0 * (f + 1) / 12, 0.01);
    }
}

TEST(StageShapes, MorphPolygonsCloseInBothStatesWithMatchingRecords) {
    // Clockwise, counter-clockwise, and one that starts as a point.
    const std::vector<StagePolygon> start = {RectanglePolygon(0, 0, 400, 200),
                                             {{1000, 1000}, {1000, 1300}, {1500, 1000}},
                                             {{3000, 3000}, {3000, 3000}, {3000, 3000}, {3000, 3000}}};
    const std::vector<StagePolygon> end = {RectanglePolygon(-100, -50, 600, 300),
                                           {{900, 900}, {900, 1500}, {1700, 900}},
                                           RectanglePolygon(2000, 2000, 2000, 2000)};
    TempDir dir;
    uint32_t nextId = 0, nextDepth = 0;
    {
        SwfWriter writer;
        writer.Setup(kStageW, kStageH, 12.0f, 6);
        ASSERT_TRUE(writer.Open(dir.file("m.swf"), true));
        MovieContext ctx{writer, 12.0f, nextId, nextDepth};
        DefineMorphPolygons(start, end, ctx);
        writer.AddTag(std::make_unique<EndTag>());
        writer.Close();
    }
    SwfReader reader;
    ASSERT_TRUE(reader.ReadFile(dir.file("m.swf"))) << reader.Error();
    const DefineMorphShapeTag* morph = nullptr;
    for (auto& tag : reader.Tags())
        if (auto* m = dynamic_cast<DefineMorphShapeTag*>(tag.get())) morph = m;
    ASSERT_NE(morph, nullptr);
    ASSERT_EQ(morph->startEdges.records.size(), morph->endEdges.records.size());
    for (const SwfShape* edges : {&morph->startEdges, &morph->endEdges}) {
        int paths = 0;
        int64_t sumX = 0, sumY = 0;
        for (size_t i = 0; i <= edges->records.size(); ++i) {
            const bool move = i == edges->records.size() || edges->records[i].kind == SwfShapeRecord::Kind::StyleChange;
            if (move && i > 0) {
                EXPECT_EQ(sumX, 0) << "path " << paths;  // each polygon comes back to its first point
                EXPECT_EQ(sumY, 0) << "path " << paths;
            }
            if (move) {
                ++paths, sumX = sumY = 0;
                continue;
            }
            EXPECT_EQ(edges->records[i].kind, morph->startEdges.records[i].kind);
            sumX += edges->records[i].dx, sumY += edges->records[i].dy;
        }
        EXPECT_EQ(paths, 4);  // three polygons, and the end
    }
}

TEST(TransitionRender, LinearUncoveringShowsTheIncomingSlideInProportionToTime) {
    // Blinds and wipes from a side show the incoming slide over the
    // share of the stage that the time says, frame by frame: a mask, ratio or
    // offset one frame behind or ahead shows here though the order is right.
    // The grid is a pixel fine across the moving edges.
    const struct {
        Variant variant;
        bool edgesAcross;  // the moving edges run across the stage (horizontal slats, up/down wipes)
    } kCases[] = {
        {{"Blinds In", {{0, 0}}}, true},  {{"Blinds In", {{0, 3}}}, false}, {{"Blinds Out", {{0, 1}}}, true},
        {{"Blinds Out", {{0, 2}}}, false}, {{"Wipe On", {{0, 0}}}, true},   {{"Wipe Off", {{0, 3}}}, false},
    };
    const std::vector<Point> across = Grid(0, 0, kStageW, kStageH, 16, 480);
    const std::vector<Point> along = Grid(0, 0, kStageW, kStageH, 640, 16);
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.variant.Describe());
        const std::vector<Point>& grid = c.edgesAcross ? across : along;
        Stage stage(c.variant.Make(), 1000, 12.0f, {.in = kFullIncoming});
        ASSERT_EQ(stage.Frames(), 12);
        for (int frame = 1; frame < 12; ++frame) {
            stage.PlayTo(frame);
            const auto shown = std::count_if(grid.begin(), grid.end(), [&](Point p) { return stage.At(p).in > 0.5; });
            // Within the grid's pixel on each of twenty slats; a frame off is 1/12.
            EXPECT_NEAR(double(shown) / double(grid.size()), frame / 12.0, 0.02) << "frame " << frame;
        }
    }
}
