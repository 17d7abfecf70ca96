// The transitions that cut slides with shaped masks (Window, Circular Sweep
// On, Slide Triangle Open, Curtain, Page Flip), sampled on the stage model:
// pieces that carry the picture of a zoomed outgoing slide with them, the
// sweep's hand where the clock says, and windows that end just covering the
// stage and turn the way they were asked.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "effects/StageModel.h"

using namespace quillet;
using namespace quillet::test;

TEST(TransitionShapes, PiecesCarryTheirPictureWithThem) {
    // A masked copy moves with its mask: mask transform after the slide's own
    // matrix, the zoomed one for the outgoing slide. The Window's closing copy
    // stays still while its window shrinks about the stage's centre.
    std::vector<Variant> cases = {{"Curtain", {}}, {"Page Flip", {}}, {"Window", {{0, 0}}}, {"Window", {{0, 8}}}};
    for (int direction = 0; direction < 9; ++direction) cases.push_back({"Slide Triangle Open", {{0, direction}}});
    for (const Variant& c : cases) {
        SCOPED_TRACE(c.Describe());
        Stage play(c.Make(), 1000, 12.0f);
        int copies = 0;
        for (int f = 1; f < play.Frames(); ++f) {
            play.PlayTo(f);
            for (const auto& [depth, layer] : play.list) {
                const auto mask = play.list.find(depth - 1);
                if (depth == play.in.depth || mask == play.list.end() || mask->second.clipDepth != depth) continue;
                ASSERT_TRUE(layer.character == kOutId || layer.character == kInId);
                const Affine slide(layer.character == kOutId ? play.out.matrix : play.in.matrix);
                const Affine want = c.name == "Window" ? slide : Affine(mask->second.matrix) * slide;
                const Affine got(layer.matrix);
                for (auto [w, g] : {std::pair{want.a, got.a}, {want.b, got.b}, {want.c, got.c}, {want.d, got.d}})
                    EXPECT_NEAR(g, w, 1e-4) << "frame " << f;
                EXPECT_NEAR(got.tx, want.tx, 2) << "frame " << f;
                EXPECT_NEAR(got.ty, want.ty, 2) << "frame " << f;
                ++copies;
            }
        }
        EXPECT_GT(copies, 0);
    }
}

TEST(TransitionShapes, TheSweepsHandIsWhereTheClockSays) {
    // From 12 o'clock clockwise (y grows downwards), a full turn over the
    // frames: just behind the hand the incoming slide shows, just ahead of
    // it not, near the centre and out in the stage's corners alike.
    for (float fps : {12.0f, 7.0f}) {
        Stage play(TransitionRegistry::instance().Find("Circular Sweep On")->Clone(), 1000, fps);
        const int n = play.Frames();
        for (int f = 1; f < n; ++f) {
            play.PlayTo(f);
            const double hand = 2 * std::numbers::pi * f / n;
            for (double radius : {1000.0, 6000.0})
                for (double off : {-0.08, 0.08}) {
                    const double a = hand + off;
                    const Point p{kStageW / 2 + radius * std::sin(a), kStageH / 2 - radius * std::cos(a)};
                    if (p.x < kSmallIncoming.x || p.y < kSmallIncoming.y || p.x > kSmallIncoming.x + kSmallIncoming.width ||
                        p.y > kSmallIncoming.y + kSmallIncoming.height)
                        continue;  // beside the incoming slide
                    EXPECT_EQ(play.At(p).top, off < 0 ? kInId : kOutId)
                        << fps << " fps, frame " << f << ", radius " << radius << (off < 0 ? ", behind" : ", ahead");
                }
        }
    }
}

TEST(TransitionShapes, WindowsEndJustCoveringTheStageAndTurnAsAsked) {
    std::vector<Point> rim;  // the stage's outline, a twip inside
    for (int k = 0; k <= 40; ++k) {
        const double x = 1 + (kStageW - 2) * k / 40.0, y = 1 + (kStageH - 2) * k / 40.0;
        rim.insert(rim.end(), {{x, 1}, {x, kStageH - 1.0}, {1, y}, {kStageW - 1.0, y}});
    }
    for (int type = 1; type < 12; type += 2) {  // the opening ones
        SCOPED_TRACE(type);
        auto t = TransitionRegistry::instance().Find("Window")->Clone();
        t->SetOptionValue(0, type);
        Stage play(std::move(t), 1000, 12.0f);
        play.PlayTo(11);
        const Layer* mask = play.FirstMask();
        ASSERT_NE(mask, nullptr);
        const Outline window = play.ShapeAt(*mask);
        // Frame 11 of 12: the window's matrix grown to the full size, and a
        // little short of it.
        auto covered = [&](double grow) {
            Affine m(mask->matrix);
            m.a *= grow, m.b *= grow, m.c *= grow, m.d *= grow;
            return std::all_of(rim.begin(), rim.end(), [&](Point p) { return Inside(window, *m.Inverse(p)); });
        };
        EXPECT_TRUE(covered(12.0 / 11));
        EXPECT_FALSE(covered(12.0 / 11 * 0.95));
    }
    // Turning: the window's angle goes up frame by frame when turning
    // clockwise on the screen, down otherwise, closing or opening.
    for (int type : {6, 7})
        for (bool clockwise : {true, false}) {
            SCOPED_TRACE(std::to_string(type) + (clockwise ? " clockwise" : " anticlockwise"));
            auto t = TransitionRegistry::instance().Find("Window")->Clone();
            t->SetOptionValue(0, type);
            t->SetOptionValue(1, 1);
            t->SetOptionValue(2, 0.5);
            t->SetOptionValue(3, clockwise);
            Stage play(std::move(t), 1000, 12.0f);
            double last = 0;
            for (int f = 1; f < 12; ++f) {
                play.PlayTo(f);
                const Layer* mask = play.FirstMask();
                ASSERT_NE(mask, nullptr);
                const Affine m(mask->matrix);
                double angle = std::atan2(m.b, m.a) * 180 / std::numbers::pi;
                if (f > 1) {
                    const double step = std::remainder(angle - last, 360.0);
                    EXPECT_NEAR(step, clockwise ? 15 : -15, 0.01) << "frame " << f;  // half a turn over 12 frames
                }
                last = angle;
            }
        }
}
