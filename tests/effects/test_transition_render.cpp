// Renders transitions into a real movie file and reads it back with our SWF
// reader: frames, depths, colour transforms, masks and matrices as the player
// will see them.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <map>
#include <numbers>

#include "effects/SlideRender.h"
#include "effects/StageShapes.h"
#include "effects/Transition.h"
#include "effects/transitions/ColorFade.h"
#include "effects/transitions/Spin.h"
#include "effects/transitions/WipeOn.h"
#include "support/TempDir.h"
#include "swf/SwfReader.h"
#include "swf/SwfTags.h"

using namespace quillet;

namespace {

constexpr int32_t kW = 640 * 20, kH = 480 * 20;

// One transition written into a 640x480, 12 fps movie and read back. The
// outgoing slide (character 5) is at depth 1, the incoming one (character 10)
// at depth 2; the counters continue from there.
struct Rendered {
    std::vector<std::vector<SwfTag*>> frames;  // tags of each frame; the last entry trails the last ShowFrame
    SwfReader reader;
    SlideOnStage in, out;

    Rendered(std::unique_ptr<Transition> t, uint32_t ms, bool withOutgoing = true,
             SlideOnStage incoming = {10, 2, SwfMatrix(), 0, 0, kW, kH, 2, ""}, float fps = 12.0f)
        : in(incoming), out{5, 1, SwfMatrix::Scale(0x13333, 0x13333, -400, -300), 0, 0, kW, kH, 1, ""} {
        test::TempDir dir;
        uint32_t nextId = 10, nextDepth = 2;
        {
            SwfWriter writer;
            writer.Setup(kW, kH, fps, 6);
            EXPECT_TRUE(writer.Open(dir.file("t.swf"), true));
            MovieContext ctx{writer, fps, nextId, nextDepth};
            t->SetDuration(ms);
            EXPECT_TRUE(t->Render(&in, withOutgoing ? &out : nullptr, ctx));
            writer.AddTag(std::make_unique<EndTag>());
            writer.Close();
        }
        EXPECT_TRUE(reader.ReadFile(dir.file("t.swf"))) << reader.Error();
        frames.emplace_back();
        for (auto& tag : reader.Tags()) {
            if (tag->Code() == SwfTagCode::End) continue;
            if (tag->Code() == SwfTagCode::ShowFrame) frames.emplace_back();
            else frames.back().push_back(tag.get());
        }
    }
    size_t FrameCount() const { return frames.size() - 1; }
    // The last (or first) PlaceObject2 for `depth` among the tags before
    // ShowFrame number `frame` (0-based).
    PlaceObject2Tag* Place(size_t frame, uint16_t depth, bool first = false) const {
        PlaceObject2Tag* found = nullptr;
        for (SwfTag* tag : frames.at(frame))
            if (auto* p = dynamic_cast<PlaceObject2Tag*>(tag); p && p->depth == depth) {
                found = p;
                if (first) break;
            }
        return found;
    }
    int Alpha(size_t frame, uint16_t depth) const {
        auto* p = Place(frame, depth);
        if (!p || !p->colorTransform) return -1;
        EXPECT_EQ(p->colorTransform->redMult, 256);
        return p->colorTransform->alphaMult;
    }
    bool Removes(size_t frame, uint16_t depth) const {
        for (SwfTag* tag : frames.at(frame))
            if (auto* r = dynamic_cast<RemoveObject2Tag*>(tag); r && r->depth == depth) return true;
        return false;
    }
};

std::unique_ptr<Transition> Make(const char* name) { return TransitionRegistry::instance().Find(name)->Clone(); }

// Whether the convex outline of a shape, moved by (tx, ty), holds the point (edges count as inside).
bool Covers(const SwfShapeWithStyle& shape, int32_t tx, int32_t ty, double px, double py) {
    std::vector<std::pair<double, double>> pts;
    double x = 0, y = 0;
    for (const auto& r : shape.records) {
        if (r.kind == SwfShapeRecord::Kind::StyleChange && r.hasMove) x = r.moveX, y = r.moveY;
        else x += r.dx, y += r.dy;
        pts.emplace_back(x + tx, y + ty);
    }
    int sign = 0;
    for (size_t i = 0; i + 1 < pts.size(); ++i) {
        double c = (pts[i + 1].first - pts[i].first) * (py - pts[i].second) -
                   (pts[i + 1].second - pts[i].second) * (px - pts[i].first);
        if (c == 0) continue;
        if (sign != 0 && (c > 0) != (sign > 0)) return false;
        sign = c > 0 ? 1 : -1;
    }
    return true;
}

}  // namespace

TEST(TransitionRender, EveryTransitionKeepsTheDisplayListConsistent) {
    // Places only on free depths, changes and removals only on used ones, and
    // in the end the incoming slide alone remains, on the depth it now claims.
    const auto& registry = TransitionRegistry::instance();
    // A slide smaller than the stage, off its corner, and the frame rates at both ends.
    const SlideOnStage small{10, 2, SwfMatrix(), 2000, 1000, kW / 3, kH / 2, 2, ""};
    const struct {
        uint32_t ms;
        float fps;
    } kTimings[] = {{0, 12}, {80, 12}, {1500, 12}, {1000, 1}, {1000, 120}};
    for (size_t i = 0; i < registry.count(); ++i)
        for (const auto& timing : kTimings)
            for (bool withOutgoing : {false, true}) {
                const uint32_t ms = timing.ms;
                Rendered r(registry.At(int(i))->Clone(), ms, withOutgoing, small, timing.fps);
                SCOPED_TRACE(registry.At(int(i))->name() + " " + std::to_string(ms) + " ms at " +
                             std::to_string(timing.fps) + (withOutgoing ? " out" : ""));
                std::map<uint16_t, uint16_t> list;  // depth -> character
                std::map<uint16_t, SwfMatrix> matrix;
                std::map<uint16_t, int> alpha;
                if (withOutgoing) list[1] = 5;
                for (const auto& frame : r.frames)
                    for (SwfTag* tag : frame) {
                        if (auto* p = dynamic_cast<PlaceObject2Tag*>(tag)) {
                            EXPECT_EQ(list.count(p->depth), p->move ? 1u : 0u) << "depth " << p->depth;
                            if (!p->move) list[p->depth] = *p->characterId, alpha[p->depth] = 256;
                            if (p->matrix) matrix[p->depth] = *p->matrix;
                            if (p->colorTransform) alpha[p->depth] = p->colorTransform->alphaMult;
                        } else if (auto* rm = dynamic_cast<RemoveObject2Tag*>(tag)) {
                            EXPECT_EQ(list.erase(rm->depth), 1u) << "depth " << rm->depth;
                        }
                    }
                // The incoming slide alone is left, exactly in place and opaque.
                EXPECT_EQ(list, (std::map<uint16_t, uint16_t>{{r.in.depth, 10}}));
                EXPECT_EQ(matrix[r.in.depth], SwfMatrix::Translate(small.x, small.y));
                EXPECT_EQ(alpha[r.in.depth], 256);
                // Every class takes its frames; Color Fade an even number, Fade
                // Out none without a slide to fade, and "None" none at all.
                const auto& t = *registry.At(int(i));
                auto frames = static_cast<uint32_t>(ms * 0.001 * timing.fps + 0.5);
                if (t.name() == "Color Fade") frames -= frames % 2;
                if ((t.name() == "Fade Out" && !withOutgoing) || t.name() == "None") frames = 0;
                EXPECT_EQ(r.FrameCount(), frames);
            }
}

TEST(TransitionRender, FadesWriteTheirAlphaRamps) {
    Rendered cross(Make("Cross Fade"), 2000);  // 24 frames
    ASSERT_EQ(cross.FrameCount(), 24u);
    EXPECT_FALSE(cross.Place(0, 2, true)->move);  // placed first, then faded in the same frame
    EXPECT_EQ(cross.Alpha(0, 2), 11);             // 256 / 24 + 0.5
    EXPECT_EQ(cross.Alpha(0, 1), 245);
    EXPECT_EQ(cross.Alpha(11, 2), 128);
    EXPECT_EQ(cross.Alpha(11, 1), 128);
    EXPECT_EQ(cross.Alpha(23, 2), 256);
    EXPECT_EQ(cross.Alpha(23, 1), 0);
    EXPECT_TRUE(cross.Removes(24, 1));

    Rendered fadeIn(Make("Fade In"), 1000);  // 12 frames; the outgoing slide stays as it is
    ASSERT_EQ(fadeIn.FrameCount(), 12u);
    EXPECT_EQ(fadeIn.Alpha(5, 2), 128);
    EXPECT_EQ(fadeIn.Place(5, 1), nullptr);
    EXPECT_EQ(fadeIn.Alpha(11, 2), 256);
    EXPECT_TRUE(fadeIn.Removes(12, 1));

    // Fade Out: the slides change at once; a copy of the outgoing slide, with
    // its zoomed matrix, fades on a fresh depth above.
    Rendered fadeOut(Make("Fade Out"), 1000);
    ASSERT_EQ(fadeOut.FrameCount(), 12u);
    EXPECT_TRUE(fadeOut.Removes(0, 1));
    auto* copy = fadeOut.Place(0, 3, true);
    ASSERT_TRUE(copy && !copy->move);
    EXPECT_EQ(*copy->characterId, 5);
    EXPECT_EQ(*copy->matrix, fadeOut.out.matrix);
    EXPECT_EQ(fadeOut.Alpha(0, 3), 235);
    EXPECT_EQ(fadeOut.Alpha(11, 3), 0);
    EXPECT_TRUE(fadeOut.Removes(12, 3));
    EXPECT_EQ(Rendered(Make("Fade Out"), 1000, false).FrameCount(), 0u);
}

TEST(TransitionRender, ColorFadeSwitchesSlidesUnderTheFullColour) {
    auto t = std::make_unique<ColorFadeTransition>();
    t->SetOptionValue(0, 0x4080FF);  // red in the lowest byte
    Rendered r(std::move(t), 1250);  // 15 frames: an odd count loses one
    ASSERT_EQ(r.FrameCount(), 14u);
    auto* shape = dynamic_cast<DefineShapeTag*>(r.frames[0][0]);
    ASSERT_TRUE(shape);
    EXPECT_EQ(shape->GetId(), 11);
    EXPECT_EQ(shape->bounds, SwfRect(0, kW, 0, kH));
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
    EXPECT_EQ(Rendered(Make("Color Fade"), 100).FrameCount(), 0u);  // one frame: no room for either phase
}

TEST(TransitionRender, WipeOnMovesAMaskOverTheSlideFromEachDirection) {
    for (int dir = 0; dir < 12; ++dir) {
        auto t = std::make_unique<WipeOnTransition>();
        t->SetOptionValue(0, dir);
        Rendered r(std::move(t), 1000);  // 12 frames
        SCOPED_TRACE(dir);
        ASSERT_EQ(r.FrameCount(), 12u);
        auto* shape = dynamic_cast<DefineShapeTag*>(r.frames[0][0]);
        ASSERT_TRUE(shape);
        auto* mask = r.Place(0, 3, true);
        ASSERT_TRUE(mask && mask->clipDepth);
        EXPECT_EQ(*mask->clipDepth, 4);
        EXPECT_EQ(r.in.depth, 4);
        EXPECT_EQ(*r.Place(0, 4, true)->characterId, 10);
        auto at = [&](size_t frame) { return *r.Place(frame, 3)->matrix; };
        EXPECT_EQ(at(11), SwfMatrix::Translate(0, 0));
        for (double x : {0, kW})
            for (double y : {0, kH}) EXPECT_TRUE(Covers(shape->shape, 0, 0, x, y)) << x << "," << y;
        // Half way the side where the wipe starts shows, the far side does not.
        static const int dx[] = {0, 0, 1, -1, 1, -1, 1, -1, 1, -1, 1, -1};
        static const int dy[] = {-1, 1, 0, 0, 1, 1, -1, -1, 1, 1, -1, -1};
        const SwfMatrix m = at(5);
        const double ox = dx[dir] * kW * 0.4, oy = dy[dir] * kH * 0.4;
        EXPECT_TRUE(Covers(shape->shape, m.translateX, m.translateY, kW / 2 - ox, kH / 2 - oy));
        EXPECT_FALSE(Covers(shape->shape, m.translateX, m.translateY, kW / 2 + ox, kH / 2 + oy));
        EXPECT_FALSE(Covers(shape->shape, at(0).translateX, at(0).translateY, kW / 2, kH / 2));
        EXPECT_TRUE(r.Removes(12, 3));
    }
}

TEST(TransitionRender, SpinsTurnAboutThePlacementPointAndEndUprightOrGone) {
    // Spin In: the incoming slide grows from nothing about its own position.
    auto angles = [](float spins, bool clockwise) {
        auto t = Make("Spin In");
        t->SetOptionValue(0, spins);
        t->SetOptionValue(1, clockwise ? 0 : 1);
        Rendered r(std::move(t), 1000, true, {10, 2, SwfMatrix(), 400, 200, 6400, 4800, 2, ""});
        EXPECT_EQ(r.FrameCount(), 12u);
        std::vector<double> result;
        for (size_t f = 0; f < 12; ++f) {
            const SwfMatrix m = *r.Place(f, 2)->matrix;
            EXPECT_EQ(m.translateX, 400);
            EXPECT_EQ(m.translateY, 200);
            EXPECT_NEAR(m.rotateSkew0, -m.rotateSkew1, 1);  // +0.5 then truncation toward zero
            EXPECT_NEAR(std::hypot(m.scaleX, m.rotateSkew0) / 65536, (f + 1) / 12.0, 1e-4);
            result.push_back(std::atan2(m.rotateSkew0, m.scaleX) * 180 / std::numbers::pi);
        }
        EXPECT_EQ(*r.Place(11, 2)->matrix, SwfMatrix::Translate(400, 200));
        EXPECT_EQ(r.in.matrix, SwfMatrix::Translate(400, 200));
        EXPECT_TRUE(r.Removes(12, 1));
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
    Rendered r(std::move(out), 1000);
    ASSERT_EQ(r.FrameCount(), 12u);
    EXPECT_FALSE(r.Place(0, 2, true)->move);
    EXPECT_TRUE(r.Removes(0, 1));
    ASSERT_EQ(*r.Place(0, 3, true)->characterId, 5);
    for (size_t f = 0; f < 12; ++f) {
        const SwfMatrix m = *r.Place(f, 3)->matrix;
        EXPECT_EQ(m.translateX, -400);
        EXPECT_NEAR(std::hypot(m.scaleX, m.rotateSkew0) / 65536, 1.2 * (11 - f) / 12.0, 1e-4);
        EXPECT_NEAR(std::atan2(m.rotateSkew0, m.scaleX) * 180 / std::numbers::pi, f == 11 ? 0 : 180.0 * (f + 1) / 12, 0.01);
    }
    EXPECT_TRUE(r.Removes(12, 3));
}

TEST(StageShapes, MorphPolygonsCloseInBothStatesWithMatchingRecords) {
    // Clockwise, counter-clockwise, and one that starts as a point.
    const std::vector<StagePolygon> start = {RectanglePolygon(0, 0, 400, 200),
                                             {{1000, 1000}, {1000, 1300}, {1500, 1000}},
                                             {{3000, 3000}, {3000, 3000}, {3000, 3000}, {3000, 3000}}};
    const std::vector<StagePolygon> end = {RectanglePolygon(-100, -50, 600, 300),
                                           {{900, 900}, {900, 1500}, {1700, 900}},
                                           RectanglePolygon(2000, 2000, 2000, 2000)};
    test::TempDir dir;
    uint32_t nextId = 0, nextDepth = 0;
    {
        SwfWriter writer;
        writer.Setup(kW, kH, 12.0f, 6);
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
