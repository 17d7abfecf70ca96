// The transitions that move, scale or cut whole slides (Push, Slide Close and
// Open, Slide In From and Out To, Zoom In and Out, Cross Scale), sampled frame
// by frame on the stage model: the outgoing picture picked up where the camera
// left it, the incoming one gaining ground, each direction going its way.
#include <gtest/gtest.h>

#include "effects/StageModel.h"

using namespace quillet;
using namespace quillet::test;

namespace {

struct Case {
    Variant variant;
    // Half way, a point (in stage fractions) where the incoming slide shows
    // alone and one where the outgoing one still shows; none for Cross Scale,
    // which blends everywhere.
    std::optional<Point> inHalfWay, outHalfWay;
};

std::vector<Case> Cases() {
    std::vector<Case> cases;
    auto directions = [&](const char* name, const std::vector<std::pair<Point, Point>>& points) {
        for (size_t d = 0; d < points.size(); ++d)
            cases.push_back({{name, {{0, double(d)}}}, points[d].first, points[d].second});
    };
    // up, down, right, left, to_top_left, to_top_right, to_bottom_left, to_bottom_right
    directions("Push", {{{.5, .75}, {.5, .25}}, {{.5, .25}, {.5, .75}}, {{.25, .5}, {.75, .5}},
                        {{.75, .5}, {.25, .5}}, {{.75, .75}, {.25, .25}}, {{.25, .75}, {.75, .25}},
                        {{.75, .25}, {.25, .75}}, {{.25, .25}, {.75, .75}}});
    // horizontal, vertical, horizontal opposite left to right and right to
    // left, vertical opposite top to bottom and bottom to top, corners
    directions("Slide Close", {{{.1, .5}, {.5, .5}}, {{.5, .1}, {.5, .5}}, {{.25, .2}, {.25, .8}},
                               {{.25, .8}, {.25, .2}}, {{.2, .25}, {.8, .25}}, {{.8, .25}, {.2, .25}},
                               {{.1, .1}, {.1, .5}}});
    directions("Slide Open", {{{.5, .5}, {.1, .5}}, {{.5, .5}, {.5, .1}}, {{.25, .8}, {.25, .2}},
                              {{.25, .2}, {.25, .8}}, {{.8, .25}, {.2, .25}}, {{.2, .25}, {.8, .25}},
                              {{.1, .5}, {.1, .1}}});
    // none, up, down, right, left, top_left, top_right, bottom_left, bottom_right
    const std::vector<std::pair<Point, Point>> zoom = {
        {{.5, .5}, {.1, .1}}, {{.5, .1}, {.5, .9}}, {{.5, .9}, {.5, .1}}, {{.9, .5}, {.1, .5}}, {{.1, .5}, {.9, .5}},
        {{.1, .1}, {.9, .9}}, {{.9, .1}, {.1, .9}}, {{.1, .9}, {.9, .1}}, {{.9, .9}, {.1, .1}}};
    directions("Zoom In", zoom);
    std::vector<std::pair<Point, Point>> swapped;
    for (const auto& [a, b] : zoom) swapped.emplace_back(b, a);
    directions("Zoom Out", swapped);
    // Defaults: from (or to) scale 0 at the slide's own corner, the outgoing
    // slide fading; then a plain move by the stage's width to the right.
    const std::vector<std::pair<size_t, double>> moveRight = {{0, kStageW}, {1, 0}, {2, 1}, {3, 1}, {4, 0}};
    cases.push_back({{"Slide In From", {}}, Point{.25, .25}, Point{.75, .75}});
    cases.push_back({{"Slide In From", moveRight}, Point{.9, .5}, Point{.1, .5}});
    cases.push_back({{"Slide Out To", {}}, Point{.9, .9}, Point{.25, .25}});
    cases.push_back({{"Slide Out To", moveRight}, Point{.05, .5}, Point{.5, .5}});
    cases.push_back({{"Cross Scale", {}}, std::nullopt, std::nullopt});
    return cases;
}

}  // namespace

TEST(TransitionMove, EachFrameLeadsFromTheOutgoingPictureToTheIncomingOneInPlace) {
    const std::vector<Point> grid = Grid(0, 0, kStageW, kStageH, 16, 12);
    for (const Case& c : Cases()) {
        SCOPED_TRACE(c.variant.Describe());
        // 2 s at 120 fps: small steps, so the first frame must still show the
        // outgoing picture where the camera left it.
        Stage play(c.variant.Make(), 2000, 120.0f);
        ASSERT_EQ(play.Frames(), 240);
        double shown = 0;  // how much of the incoming slide's place shows it
        for (int f = 1; f <= 240; ++f) {
            play.PlayTo(f);
            double sum = 0;
            int count = 0;
            for (Point p : grid) {
                const Seen s = play.At(p);
                EXPECT_EQ(s.other, 0) << "frame " << f << " at " << p.x << "," << p.y;
                if (InSlide(play.in, p)) sum += s.in, ++count;
                if (f == 1 && s.out > 0.5) {
                    const Point was = *Affine(play.out.matrix).Inverse(p);
                    EXPECT_NEAR(s.outAt->x, was.x, 150) << "at " << p.x << "," << p.y;
                    EXPECT_NEAR(s.outAt->y, was.y, 150) << "at " << p.x << "," << p.y;
                }
            }
            const double now = sum / count;
            EXPECT_GE(now, shown - 1e-9) << "frame " << f;
            if (f == 1) {
                EXPECT_LT(now, 0.05);
            }
            shown = now;
            if (f == 120 && c.inHalfWay) {
                const Seen in = play.At({c.inHalfWay->x * kStageW, c.inHalfWay->y * kStageH});
                const Seen out = play.At({c.outHalfWay->x * kStageW, c.outHalfWay->y * kStageH});
                EXPECT_GT(in.in, 0.99) << "half way at " << c.inHalfWay->x << "," << c.inHalfWay->y;
                EXPECT_GT(out.out, 0.45) << "half way at " << c.outHalfWay->x << "," << c.outHalfWay->y;
            }
        }
        EXPECT_EQ(shown, 1.0);
    }
}
