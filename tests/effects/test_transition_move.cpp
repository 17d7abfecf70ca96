// The transitions that move, scale or cut whole slides (Push, Slide Close and
// Open, Slide In From and Out To, Zoom In and Out, Cross Scale), played on a
// small model of the player's display list: depths, matrices, opacity and
// clip-depth masks of straight-edged shapes. Sampling the stage frame by
// frame shows what a screenshot would not: the incoming slide landing to the
// twip, a zoomed outgoing slide picked up where the camera left it, a slide
// smaller than the stage, and each direction going the way it says.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "effects/SlideRender.h"
#include "effects/Transition.h"
#include "support/TempDir.h"
#include "swf/SwfReader.h"
#include "swf/SwfTags.h"

using namespace quillet;

namespace {

constexpr int32_t kW = 640 * 20, kH = 480 * 20;
constexpr uint16_t kOutId = 5, kInId = 10;
// The incoming slide is a little smaller than the stage and off its centre;
// the outgoing one fills the stage after a camera zoom to 1.2.
const SlideOnStage kIncoming{kInId, 2, SwfMatrix(), 300, 180, 12000, 9000, 2, ""};
const SlideOnStage kOutgoing{kOutId, 1, SwfMatrix::Scale(0x13333, 0x13333, -400, -300), 0, 0, kW, kH, 1, ""};

struct Point {
    double x, y;
};

// Where a matrix puts the stage point in the character's own frame; none
// when it squashes the character flat.
std::optional<Point> Local(const SwfMatrix& m, Point p) {
    const double a = m.hasScale ? m.scaleX / 65536.0 : 1, d = m.hasScale ? m.scaleY / 65536.0 : 1;
    const double b = m.hasRotate ? m.rotateSkew0 / 65536.0 : 0, c = m.hasRotate ? m.rotateSkew1 / 65536.0 : 0;
    const double det = a * d - b * c;
    if (det == 0) return std::nullopt;
    const double x = p.x - m.translateX, y = p.y - m.translateY;
    return Point{(d * x - c * y) / det, (a * y - b * x) / det};
}

// Even-odd inside test against a shape's straight edges.
bool Inside(const SwfShapeWithStyle& shape, Point p) {
    bool inside = false;
    double x = 0, y = 0;
    for (const auto& r : shape.records) {
        if (r.kind == SwfShapeRecord::Kind::StyleChange) {
            if (r.hasMove) x = r.moveX, y = r.moveY;
            continue;
        }
        const double nx = x + r.dx, ny = y + r.dy;
        if ((y > p.y) != (ny > p.y) && p.x < x + (p.y - y) * (nx - x) / (ny - y)) inside = !inside;
        x = nx, y = ny;
    }
    return inside;
}

// What shows at a stage point: how much of each slide (0..1, after the
// opacity of everything above), where in its picture the topmost copy of
// each shows, and whether anything else covers it.
struct Seen {
    double in = 0, out = 0, other = 0;
    std::optional<Point> inAt, outAt;
};

class Player {
public:
    Player(std::unique_ptr<Transition> t, uint32_t ms, float fps, SlideOnStage incoming = kIncoming)
        : in(incoming), out(kOutgoing) {
        test::TempDir dir;
        uint32_t nextId = 10, nextDepth = 2;
        {
            SwfWriter writer;
            writer.Setup(kW, kH, fps, 6);
            EXPECT_TRUE(writer.Open(dir.file("t.swf"), true));
            MovieContext ctx{writer, fps, nextId, nextDepth};
            t->SetDuration(ms);
            EXPECT_TRUE(t->Render(&in, &out, ctx));
            writer.AddTag(std::make_unique<EndTag>());
            writer.Close();
        }
        EXPECT_TRUE(reader_.ReadFile(dir.file("t.swf"))) << reader_.Error();
        list_[out.depth] = {kOutId, out.matrix};
        frames_.emplace_back();
        for (auto& tag : reader_.Tags())
            if (tag->Code() == SwfTagCode::ShowFrame) frames_.emplace_back();
            else if (tag->Code() != SwfTagCode::End) frames_.back().push_back(tag.get());
    }

    int Frames() const { return int(frames_.size()) - 1; }
    // Plays up to and including frame `frame` (1-based), in order.
    void PlayTo(int frame) {
        for (; played_ < frame; ++played_)
            for (SwfTag* tag : frames_.at(played_)) Apply(tag);
    }

    Seen At(Point p) const {
        Seen seen;
        std::vector<std::pair<uint16_t, bool>> masks;  // clip depth, point inside the mask
        for (const auto& [depth, layer] : list_) {
            std::erase_if(masks, [&](const auto& m) { return m.first < depth; });
            const std::optional<Point> local = Local(layer.matrix, p);
            if (layer.clipDepth != 0) {
                masks.emplace_back(layer.clipDepth, local && shapes_.count(layer.character) &&
                                                         Inside(shapes_.at(layer.character)->shape, *local));
                continue;
            }
            if (!local || std::any_of(masks.begin(), masks.end(), [](const auto& m) { return !m.second; })) continue;
            const double alpha = layer.alpha / 256.0;
            if (layer.character == kInId || layer.character == kOutId) {
                const SlideOnStage& slide = layer.character == kInId ? in : out;
                if (local->x < 0 || local->y < 0 || local->x > slide.width || local->y > slide.height) continue;
                (layer.character == kInId ? seen.inAt : seen.outAt) = local;
            } else if (!shapes_.count(layer.character) || !Inside(shapes_.at(layer.character)->shape, *local)) {
                continue;
            }
            seen.in *= 1 - alpha, seen.out *= 1 - alpha, seen.other *= 1 - alpha;
            (layer.character == kInId ? seen.in : layer.character == kOutId ? seen.out : seen.other) += alpha;
        }
        return seen;
    }

    SlideOnStage in, out;

private:
    struct Layer {
        uint16_t character = 0;
        SwfMatrix matrix;
        int alpha = 256;
        uint16_t clipDepth = 0;
    };
    void Apply(SwfTag* tag) {
        if (auto* shape = dynamic_cast<DefineShapeTag*>(tag)) shapes_[shape->GetId()] = shape;
        if (auto* rm = dynamic_cast<RemoveObject2Tag*>(tag)) list_.erase(rm->depth);
        auto* p = dynamic_cast<PlaceObject2Tag*>(tag);
        if (!p) return;
        Layer& layer = list_[p->depth];
        if (!p->move) {
            layer = Layer();
            layer.character = *p->characterId;
        }
        if (p->matrix) layer.matrix = *p->matrix;
        if (p->colorTransform) layer.alpha = p->colorTransform->alphaMult;
        if (p->clipDepth) layer.clipDepth = *p->clipDepth;
    }

    SwfReader reader_;
    std::vector<std::vector<SwfTag*>> frames_;
    std::map<uint16_t, DefineShapeTag*> shapes_;
    std::map<uint16_t, Layer> list_;
    int played_ = 0;
};

// A grid of points at cell centres over the whole stage.
std::vector<Point> Grid() {
    std::vector<Point> points;
    for (int j = 0; j < 12; ++j)
        for (int i = 0; i < 16; ++i) points.push_back({(i + 0.5) * kW / 16, (j + 0.5) * kH / 12});
    return points;
}

bool InRect(const SlideOnStage& s, Point p) {
    return p.x > s.x && p.y > s.y && p.x < s.x + s.width && p.y < s.y + s.height;
}

struct Case {
    const char* name;
    std::vector<std::pair<size_t, double>> options;
    // Half way, a point (in stage fractions) where the incoming slide shows
    // alone and one where the outgoing one still shows; none for Cross Scale,
    // which blends everywhere.
    std::optional<Point> inHalfWay, outHalfWay;
};

std::vector<Case> Cases() {
    std::vector<Case> cases;
    auto directions = [&](const char* name, const std::vector<std::pair<Point, Point>>& points) {
        for (size_t d = 0; d < points.size(); ++d)
            cases.push_back({name, {{0, double(d)}}, points[d].first, points[d].second});
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
    const std::vector<std::pair<size_t, double>> moveRight = {{0, kW}, {1, 0}, {2, 1}, {3, 1}, {4, 0}};
    cases.push_back({"Slide In From", {}, Point{.25, .25}, Point{.75, .75}});
    cases.push_back({"Slide In From", moveRight, Point{.9, .5}, Point{.1, .5}});
    cases.push_back({"Slide Out To", {}, Point{.9, .9}, Point{.25, .25}});
    cases.push_back({"Slide Out To", moveRight, Point{.05, .5}, Point{.5, .5}});
    cases.push_back({"Cross Scale", {}, std::nullopt, std::nullopt});
    return cases;
}

std::unique_ptr<Transition> Make(const Case& c) {
    auto t = TransitionRegistry::instance().Find(c.name)->Clone();
    for (const auto& [index, value] : c.options) t->SetOptionValue(index, value);
    return t;
}

std::string Describe(const Case& c) {
    std::string s = c.name;
    for (const auto& [index, value] : c.options) s += " " + std::to_string(index) + "=" + std::to_string(value);
    return s;
}

}  // namespace

TEST(TransitionMove, EachFrameLeadsFromTheOutgoingPictureToTheIncomingOneInPlace) {
    const std::vector<Point> grid = Grid();
    for (const Case& c : Cases()) {
        SCOPED_TRACE(Describe(c));
        // 2 s at 120 fps: small steps, so the first frame must still show the
        // outgoing picture where the camera left it.
        Player play(Make(c), 2000, 120.0f);
        ASSERT_EQ(play.Frames(), 240);
        double shown = 0;  // how much of the incoming slide's place shows it
        for (int f = 1; f <= 240; ++f) {
            play.PlayTo(f);
            double sum = 0;
            int count = 0;
            for (Point p : grid) {
                const Seen s = play.At(p);
                EXPECT_EQ(s.other, 0) << "frame " << f << " at " << p.x << "," << p.y;
                if (InRect(play.in, p)) sum += s.in, ++count;
                if (f == 1 && s.out > 0.5) {
                    const Point was = *Local(kOutgoing.matrix, p);
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
                const Seen in = play.At({c.inHalfWay->x * kW, c.inHalfWay->y * kH});
                const Seen out = play.At({c.outHalfWay->x * kW, c.outHalfWay->y * kH});
                EXPECT_GT(in.in, 0.99) << "half way at " << c.inHalfWay->x << "," << c.inHalfWay->y;
                EXPECT_GT(out.out, 0.45) << "half way at " << c.outHalfWay->x << "," << c.outHalfWay->y;
            }
        }
        EXPECT_EQ(shown, 1.0);
    }
}

TEST(TransitionMove, TheLastFrameShowsTheIncomingSlideToTheTwipAtAnyFrameCount) {
    const std::vector<Point> grid = Grid();
    for (const Case& c : Cases())
        for (auto [ms, fps] : {std::pair{80u, 12.0f}, {2000u, 1.0f}, {1000u, 25.0f}, {2000u, 120.0f}}) {
            SCOPED_TRACE(Describe(c) + " " + std::to_string(ms) + " ms at " + std::to_string(fps));
            Player play(Make(c), ms, fps);
            const int n = play.Frames();
            ASSERT_EQ(n, int(ms * fps / 1000 + 0.5));
            play.PlayTo(n);
            EXPECT_EQ(play.in.matrix, SwfMatrix::Translate(300, 180));
            // The outgoing slide, zoomed larger than the stage, is gone, except
            // where it stays put beneath until the transition is over.
            const std::string name = c.name;
            const bool staysBeneath = name == "Slide Close" || name == "Zoom In" ||
                                      (name == "Slide In From" && !Make(c)->options().Bool(4));
            for (Point p : grid) {
                const Seen s = play.At(p);
                if (!staysBeneath) {
                    EXPECT_EQ(s.out, 0) << "at " << p.x << "," << p.y;
                }
                if (!InRect(play.in, p)) continue;
                ASSERT_EQ(s.in, 1.0) << "at " << p.x << "," << p.y;
                EXPECT_NEAR(s.inAt->x, p.x - 300, 1e-6);
                EXPECT_NEAR(s.inAt->y, p.y - 180, 1e-6);
            }
        }
}
