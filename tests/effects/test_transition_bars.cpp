// Sliding Bars, Blinds In and Out and Checker, with every value of their
// options, sampled on the stage model: bars and cells that clip rather than
// draw, the outgoing slide staying where the camera left it, something half
// way at any frame rate, and movies of a sensible size.
#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "effects/StageModel.h"
#include "effects/transitions/Checker.h"

using namespace quillet;
using namespace quillet::test;

TEST(TransitionBars, EveryOptionShowsOnlyTheSlidesAndSomethingOfEachHalfWay) {
    const StageSetup setups[] = {{kFullIncoming}, {}, {{kInId, 2, SwfMatrix(), 0, 0, kStageW, kStageH, 1, ""}, false}};
    struct Sweep {
        const char* name;
        size_t option;
        std::vector<int> values;
    };
    auto all = [](int count) {
        std::vector<int> values(static_cast<size_t>(count));
        for (int i = 0; i < count; ++i) values[static_cast<size_t>(i)] = i;
        return values;
    };
    const Sweep sweeps[] = {{"Sliding Bars", 0, all(10)}, {"Sliding Bars", 1, {1, 100}}, {"Blinds In", 0, all(4)},
                            {"Blinds In", 1, {1, 200}},   {"Blinds Out", 0, all(4)},     {"Blinds Out", 1, {200}},
                            {"Checker", 0, all(8)},       {"Checker", 1, all(17)}};
    const std::vector<Point> grid = Grid(0, 0, kStageW, kStageH, 24, 18);
    for (const Sweep& sweep : sweeps)
        for (int value : sweep.values)
            for (float fps : {1.0f, 12.0f, 120.0f})
                for (const StageSetup& setup : setups) {
                    const Variant v{sweep.name, {{sweep.option, double(value)}}};
                    SCOPED_TRACE(v.Describe() + " at " + std::to_string(int(fps)) + " fps, slide at depth " +
                                 std::to_string(setup.in.depth) + " of " + std::to_string(setup.in.width));
                    Stage movie(v.Make(), 2000, fps, setup);
                    const int n = movie.Frames();
                    if (fps == 12.0f) {
                        EXPECT_LT(movie.bytes, 50000u);
                    }
                    for (int frame : std::set<int>{1, (n + 1) / 2, n - 1}) {
                        if (frame < 1) continue;
                        movie.PlayTo(frame);
                        double covered = 0, inside = 0;
                        for (Point p : grid) {
                            const Seen s = movie.At(p);
                            ASSERT_EQ(s.other, 0) << "something else shows at " << p.x << "," << p.y;
                            // The outgoing slide, wherever it shows, stays where the camera left it.
                            if (s.out > 0) {
                                const Point home = *Affine(movie.out.matrix).Inverse(p);
                                ASSERT_NEAR(s.outAt->x, home.x, 1) << "frame " << frame;
                                ASSERT_NEAR(s.outAt->y, home.y, 1) << "frame " << frame;
                            }
                            if (!InSlide(movie.in, p)) continue;
                            inside += 1;
                            covered += s.in;
                        }
                        // Half way the incoming slide is partly there, whatever the
                        // frame rate (with no outgoing slide "Blinds Out" has
                        // nothing to close).
                        if (setup.withOutgoing && n >= 2 && frame == (n + 1) / 2) {
                            EXPECT_GT(covered, 0.02 * inside);
                            EXPECT_LT(covered, 0.98 * inside);
                        }
                    }
                }
}

TEST(TransitionBars, TinyCheckerCellsOnABigStageStayWithinTheBudget) {
    constexpr int32_t kW = 1920 * 20, kH = 1080 * 20;
    const StageSetup setup{{kInId, 2, SwfMatrix(), 0, 0, kW, kH, 2, ""}, true, kW, kH};
    for (int cell : {20, 1600})
        for (int type = 0; type < 8; ++type) {
            auto t = TransitionRegistry::instance().Find("Checker")->Clone();
            t->SetOptionValue(0, type);
            t->SetOptionValue(1, 16);  // random order: the most scattered masks
            t->SetOptionValue(2, cell);
            t->SetOptionValue(3, cell);
            Stage movie(*t, 2000, 12.0f, setup);
            EXPECT_LT(movie.bytes, 50000u) << "type " << type << ", cells of " << cell << " twips";
        }
}

TEST(TransitionBars, CheckerOrdersStartInTheirCornerAndSpiralsWalkCellByCell) {
    // The corner each order starts from (right, bottom) and its first step.
    struct Start {
        bool right, bottom;
        int dx, dy;
    };
    const Start starts[16] = {
        {false, false, 1, 0}, {false, true, 1, 0},   {true, false, -1, 0}, {true, true, -1, 0},   // rows
        {false, false, 0, 1}, {true, false, 0, 1},   {false, true, 0, -1}, {true, true, 0, -1},   // columns
        {false, false, 1, 0}, {false, false, 0, 1},  {true, false, 0, 1},  {true, false, -1, 0},  // spirals
        {false, true, 0, -1}, {false, true, 1, 0},   {true, true, -1, 0},  {true, true, 0, -1},
    };
    for (auto [columns, rows] : {std::pair{1, 1}, {6, 1}, {1, 5}, {4, 3}, {7, 6}})
        for (int direction = 0; direction < 17; ++direction) {
            SCOPED_TRACE(std::to_string(columns) + "x" + std::to_string(rows) + " direction " + std::to_string(direction));
            const std::vector<int> order = CheckerOrder(columns, rows, direction);
            ASSERT_EQ(std::set<int>(order.begin(), order.end()).size(), size_t(columns * rows));
            ASSERT_EQ(order.size(), size_t(columns * rows));
            if (direction == 16) {
                EXPECT_EQ(order, CheckerOrder(columns, rows, 16));
                continue;
            }
            const Start& s = starts[direction];
            EXPECT_EQ(order[0] % columns, s.right ? columns - 1 : 0);
            EXPECT_EQ(order[0] / columns, s.bottom ? rows - 1 : 0);
            if (columns > 1 && rows > 1) {
                EXPECT_EQ(order[1] - order[0], s.dy * columns + s.dx);
            }
            for (size_t k = 1; direction >= 8 && k < order.size(); ++k) {
                const int step = std::abs(order[k] % columns - order[k - 1] % columns) +
                                 std::abs(order[k] / columns - order[k - 1] / columns);
                EXPECT_EQ(step, 1) << "step " << k;
            }
        }
}
