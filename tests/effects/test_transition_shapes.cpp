// The transitions that cut slides with shaped masks (Window, Circular Sweep
// On, Slide Triangle Open, Curtain, Page Flip), played on a small model of
// the player's display list: clip-depth masks of straight, curved and morph
// shapes over slides and their copies. It checks what a screenshot shows
// poorly: the incoming slide landing to the twip with nothing left over it,
// pieces that carry the picture of a zoomed outgoing slide with them, the
// sweep's hand where the clock says, and windows that end just covering the
// stage and turn the way they were asked.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>
#include <optional>
#include <string>
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
// The incoming slide is smaller than the stage and off its centre; the
// outgoing one fills the stage after a camera zoom to 1.2.
const SlideOnStage kIncoming{kInId, 2, SwfMatrix(), 300, 180, 12000, 9000, 2, ""};
const SlideOnStage kOutgoing{kOutId, 1, SwfMatrix::Scale(0x13333, 0x13333, -400, -300), 0, 0, kW, kH, 1, ""};

struct Point {
    double x, y;
};
using Outline = std::vector<std::vector<Point>>;

// The 2x3 matrix as doubles: x' = a x + c y + tx, y' = b x + d y + ty.
struct Affine {
    double a, b, c, d, tx, ty;
    explicit Affine(const SwfMatrix& m)
        : a(m.hasScale ? m.scaleX / 65536.0 : 1), b(m.hasRotate ? m.rotateSkew0 / 65536.0 : 0),
          c(m.hasRotate ? m.rotateSkew1 / 65536.0 : 0), d(m.hasScale ? m.scaleY / 65536.0 : 1), tx(m.translateX),
          ty(m.translateY) {}
    Affine(double a_, double b_, double c_, double d_, double x, double y) : a(a_), b(b_), c(c_), d(d_), tx(x), ty(y) {}
    Affine operator*(const Affine& in) const {
        return {a * in.a + c * in.b, b * in.a + d * in.b, a * in.c + c * in.d, b * in.c + d * in.d,
                a * in.tx + c * in.ty + tx, b * in.tx + d * in.ty + ty};
    }
    std::optional<Point> Inverse(Point p) const {
        const double det = a * d - b * c;
        if (det == 0) return std::nullopt;
        const double x = p.x - tx, y = p.y - ty;
        return Point{(d * x - c * y) / det, (a * y - b * x) / det};
    }
};

// A shape's outlines from its records, curves cut into short straight pieces.
Outline Trace(const std::vector<SwfShapeRecord>& records) {
    Outline out;
    double x = 0, y = 0;
    for (const auto& r : records) {
        if (r.kind == SwfShapeRecord::Kind::StyleChange) {
            if (r.hasMove) x = r.moveX, y = r.moveY, out.push_back({{x, y}});
            continue;
        }
        if (out.empty()) out.push_back({{x, y}});
        if (r.kind == SwfShapeRecord::Kind::StraightEdge) {
            x += r.dx, y += r.dy;
            out.back().push_back({x, y});
            continue;
        }
        const double cx = x + r.dx, cy = y + r.dy, ex = cx + r.anchorDx, ey = cy + r.anchorDy;
        for (int k = 1; k <= 16; ++k) {
            const double t = k / 16.0, u = 1 - t;
            out.back().push_back({u * u * x + 2 * u * t * cx + t * t * ex, u * u * y + 2 * u * t * cy + t * t * ey});
        }
        x = ex, y = ey;
    }
    return out;
}

// Even-odd, as the player fills.
bool Inside(const Outline& outline, Point p) {
    bool inside = false;
    for (const auto& poly : outline)
        for (size_t i = 0; i < poly.size(); ++i) {
            const Point a = poly[i], b = poly[(i + 1) % poly.size()];
            if ((a.y > p.y) != (b.y > p.y) && p.x < a.x + (p.y - a.y) * (b.x - a.x) / (b.y - a.y)) inside = !inside;
        }
    return inside;
}

struct Layer {
    uint16_t character = 0;
    SwfMatrix matrix;
    uint16_t ratio = 0;
    uint16_t clipDepth = 0;
    std::optional<SwfColorTransformAlpha> colour;
};

class Player {
public:
    Player(std::unique_ptr<Transition> t, uint32_t ms, float fps) : in(kIncoming), out(kOutgoing) {
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
        list[out.depth] = {kOutId, out.matrix};
        frames_.emplace_back();
        for (auto& tag : reader_.Tags())
            if (tag->Code() == SwfTagCode::ShowFrame) frames_.emplace_back();
            else if (tag->Code() != SwfTagCode::End) frames_.back().push_back(tag.get());
    }

    int Frames() const { return int(frames_.size()) - 1; }
    void PlayTo(int frame) {
        for (; played_ < frame; ++played_)
            for (SwfTag* tag : frames_.at(played_)) Apply(tag);
    }

    // The outline of what is at a depth, in its own coordinates.
    Outline ShapeAt(const Layer& layer) const {
        if (auto s = shapes_.find(layer.character); s != shapes_.end()) return s->second;
        const auto m = morphs_.find(layer.character);
        if (m == morphs_.end()) return {};
        const double t = layer.ratio / 65535.0;
        Outline mixed = m->second.first;
        for (size_t i = 0; i < mixed.size(); ++i)
            for (size_t j = 0; j < mixed[i].size(); ++j) {
                const Point e = m->second.second.at(i).at(j);
                mixed[i][j] = {mixed[i][j].x + (e.x - mixed[i][j].x) * t, mixed[i][j].y + (e.y - mixed[i][j].y) * t};
            }
        return mixed;
    }

    // The slide whose picture is on top at a stage point (0: none).
    uint16_t Top(Point p) const {
        uint16_t top = 0;
        std::vector<std::pair<uint16_t, bool>> masks;  // clip depth, point inside
        for (const auto& [depth, layer] : list) {
            std::erase_if(masks, [&](const auto& m) { return m.first < depth; });
            const std::optional<Point> local = Affine(layer.matrix).Inverse(p);
            if (layer.clipDepth != 0) {
                masks.emplace_back(layer.clipDepth, local && Inside(ShapeAt(layer), *local));
                continue;
            }
            if (layer.character != kInId && layer.character != kOutId) continue;  // shading only
            if (!local || std::any_of(masks.begin(), masks.end(), [](const auto& m) { return !m.second; })) continue;
            const SlideOnStage& slide = layer.character == kInId ? in : out;
            if (local->x >= 0 && local->y >= 0 && local->x <= slide.width && local->y <= slide.height)
                top = layer.character;
        }
        return top;
    }

    SlideOnStage in, out;
    std::map<uint16_t, Layer> list;  // by depth

private:
    void Apply(SwfTag* tag) {
        if (auto* shape = dynamic_cast<SwfDefineShapeBase*>(tag)) shapes_[shape->GetId()] = Trace(shape->shape.records);
        if (auto* morph = dynamic_cast<DefineMorphShapeTag*>(tag))
            morphs_[morph->GetId()] = {Trace(morph->startEdges.records), Trace(morph->endEdges.records)};
        if (auto* rm = dynamic_cast<RemoveObject2Tag*>(tag)) EXPECT_EQ(list.erase(rm->depth), 1u);
        auto* p = dynamic_cast<PlaceObject2Tag*>(tag);
        if (!p) return;
        EXPECT_EQ(list.count(p->depth), p->move ? 1u : 0u) << "depth " << p->depth;
        Layer& layer = list[p->depth];
        if (!p->move) layer = {*p->characterId};
        if (p->matrix) layer.matrix = *p->matrix;
        if (p->ratio) layer.ratio = *p->ratio;
        if (p->clipDepth) layer.clipDepth = *p->clipDepth;
        if (p->colorTransform) layer.colour = p->colorTransform;
    }

    SwfReader reader_;
    std::vector<std::vector<SwfTag*>> frames_;
    std::map<uint16_t, Outline> shapes_;
    std::map<uint16_t, std::pair<Outline, Outline>> morphs_;
    int played_ = 0;
};

struct Case {
    const char* name;
    std::vector<std::pair<size_t, double>> options;
};

std::vector<Case> Cases() {
    std::vector<Case> cases = {{"Circular Sweep On", {}}, {"Curtain", {}}, {"Page Flip", {}}};
    for (int type = 0; type < 12; ++type) cases.push_back({"Window", {{0, type}}});
    for (int direction = 0; direction < 9; ++direction) cases.push_back({"Slide Triangle Open", {{0, direction}}});
    return cases;
}

std::unique_ptr<Transition> Make(const Case& c) {
    auto t = TransitionRegistry::instance().Find(c.name)->Clone();
    for (const auto& [index, value] : c.options) t->SetOptionValue(index, value);
    return t;
}

// The first mask on the display list.
std::map<uint16_t, Layer>::const_iterator FindMask(const Player& play) {
    return std::find_if(play.list.begin(), play.list.end(), [](const auto& l) { return l.second.clipDepth != 0; });
}

std::string Describe(const Case& c) {
    std::string s = c.name;
    for (const auto& [index, value] : c.options) s += " " + std::to_string(index) + "=" + std::to_string(value);
    return s;
}

}  // namespace

TEST(TransitionShapes, TheIncomingSlideGainsGroundAndLandsInPlaceWithNothingLeftOverIt) {
    std::vector<Point> grid;  // cell centres over the incoming slide's place
    for (int j = 0; j < 24; ++j)
        for (int i = 0; i < 32; ++i)
            grid.push_back(
                {kIncoming.x + (i + 0.5) * kIncoming.width / 32, kIncoming.y + (j + 0.5) * kIncoming.height / 24});
    for (const Case& c : Cases())
        for (float fps : {12.0f, 7.0f}) {  // an odd count puts no frame at the half-way point
            SCOPED_TRACE(Describe(c) + " at " + std::to_string(fps));
            Player play(Make(c), 1000, fps);
            const int n = static_cast<int>(fps);
            ASSERT_EQ(play.Frames(), n);
            double shown = 0;
            for (int f = 1; f <= n; ++f) {
                play.PlayTo(f);
                int count = 0;
                for (Point p : grid) count += play.Top(p) == kInId;
                const double now = double(count) / grid.size();
                EXPECT_GE(now, shown - 0.02) << "frame " << f;  // the grid's grain
                shown = std::max(shown, now);
                if (f == 1) {
                    EXPECT_LT(now, 0.6);
                }
            }
            EXPECT_EQ(shown, 1.0);
            // The last frame shows the incoming slide at its place, unmasked
            // and untinted, with at most the outgoing slide left beneath.
            std::map<uint16_t, Layer> rest = play.list;
            rest.erase(kOutgoing.depth);
            ASSERT_EQ(rest.size(), 1u);
            const Layer& slide = rest.begin()->second;
            EXPECT_EQ(rest.begin()->first, play.in.depth);
            EXPECT_EQ(slide.character, kInId);
            EXPECT_EQ(slide.matrix, SwfMatrix::Translate(kIncoming.x, kIncoming.y));
            EXPECT_EQ(play.in.matrix, slide.matrix);
            if (slide.colour) {
                EXPECT_EQ(slide.colour->redMult, 256);
                EXPECT_EQ(slide.colour->alphaMult, 256);
            }
        }
}

TEST(TransitionShapes, PiecesCarryTheirPictureWithThem) {
    // A masked copy moves with its mask: mask transform after the slide's own
    // matrix, the zoomed one for the outgoing slide. The Window's closing copy
    // stays still while its window shrinks about the stage's centre.
    std::vector<Case> cases = {{"Curtain", {}}, {"Page Flip", {}}, {"Window", {{0, 0}}}, {"Window", {{0, 8}}}};
    for (int direction = 0; direction < 9; ++direction) cases.push_back({"Slide Triangle Open", {{0, direction}}});
    for (const Case& c : cases) {
        SCOPED_TRACE(Describe(c));
        Player play(Make(c), 1000, 12.0f);
        int copies = 0;
        for (int f = 1; f < play.Frames(); ++f) {
            play.PlayTo(f);
            for (const auto& [depth, layer] : play.list) {
                const auto mask = play.list.find(depth - 1);
                if (depth == play.in.depth || mask == play.list.end() || mask->second.clipDepth != depth) continue;
                ASSERT_TRUE(layer.character == kOutId || layer.character == kInId);
                const Affine slide(layer.character == kOutId ? kOutgoing.matrix : play.in.matrix);
                const Affine want = c.name == std::string("Window") ? slide : Affine(mask->second.matrix) * slide;
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
        Player play(TransitionRegistry::instance().Find("Circular Sweep On")->Clone(), 1000, fps);
        const int n = play.Frames();
        for (int f = 1; f < n; ++f) {
            play.PlayTo(f);
            const double hand = 2 * std::numbers::pi * f / n;
            for (double radius : {1000.0, 6000.0})
                for (double off : {-0.08, 0.08}) {
                    const double a = hand + off;
                    const Point p{kW / 2 + radius * std::sin(a), kH / 2 - radius * std::cos(a)};
                    if (p.x < kIncoming.x || p.y < kIncoming.y || p.x > kIncoming.x + kIncoming.width ||
                        p.y > kIncoming.y + kIncoming.height)
                        continue;  // beside the incoming slide
                    EXPECT_EQ(play.Top(p), off < 0 ? kInId : kOutId)
                        << fps << " fps, frame " << f << ", radius " << radius << (off < 0 ? ", behind" : ", ahead");
                }
        }
    }
}

TEST(TransitionShapes, WindowsEndJustCoveringTheStageAndTurnAsAsked) {
    std::vector<Point> rim;  // the stage's outline, a twip inside
    for (int k = 0; k <= 40; ++k) {
        const double x = 1 + (kW - 2) * k / 40.0, y = 1 + (kH - 2) * k / 40.0;
        rim.insert(rim.end(), {{x, 1}, {x, kH - 1.0}, {1, y}, {kW - 1.0, y}});
    }
    for (int type = 1; type < 12; type += 2) {  // the opening ones
        SCOPED_TRACE(type);
        auto t = TransitionRegistry::instance().Find("Window")->Clone();
        t->SetOptionValue(0, type);
        Player play(std::move(t), 1000, 12.0f);
        play.PlayTo(11);
        const auto mask = FindMask(play);
        ASSERT_NE(mask, play.list.end());
        const Outline window = play.ShapeAt(mask->second);
        // Frame 11 of 12: the window's matrix grown to the full size, and a
        // little short of it.
        auto covered = [&](double grow) {
            Affine m(mask->second.matrix);
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
            Player play(std::move(t), 1000, 12.0f);
            double last = 0;
            for (int f = 1; f < 12; ++f) {
                play.PlayTo(f);
                const auto mask = FindMask(play);
                ASSERT_NE(mask, play.list.end());
                const Affine m(mask->second.matrix);
                double angle = std::atan2(m.b, m.a) * 180 / std::numbers::pi;
                if (f > 1) {
                    const double step = std::remainder(angle - last, 360.0);
                    EXPECT_NEAR(step, clockwise ? 15 : -15, 0.01) << "frame " << f;  // half a turn over 12 frames
                }
                last = angle;
            }
        }
}
