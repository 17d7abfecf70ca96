// Sliding Bars, Blinds In and Out and Checker, with every value of their
// options, played on a small model of the player's display list: depths,
// matrices, opacity, morph ratios and clip-depth masks of straight-edged
// shapes. The model sees what a screenshot would not: a mask drawn instead of
// clipping, the outgoing slide jumping off its camera zoom, the incoming one
// a twip off on the last frame, a frame rate that leaves nothing half way.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <vector>

#include "effects/SlideRender.h"
#include "effects/Transition.h"
#include "effects/transitions/Checker.h"
#include "support/TempDir.h"
#include "swf/SwfReader.h"
#include "swf/SwfTags.h"

using namespace quillet;

namespace {

constexpr uint16_t kOutId = 5, kInId = 10;

struct Pt {
    double x, y;
};
using Paths = std::vector<std::vector<Pt>>;

std::optional<Pt> Local(const SwfMatrix& m, Pt p) {
    const double a = m.scaleX / 65536.0, d = m.scaleY / 65536.0;
    const double b = m.hasRotate ? m.rotateSkew0 / 65536.0 : 0, c = m.hasRotate ? m.rotateSkew1 / 65536.0 : 0;
    const double det = a * d - b * c;
    if (det == 0) return std::nullopt;
    const double x = p.x - m.translateX, y = p.y - m.translateY;
    return Pt{(d * x - c * y) / det, (a * y - b * x) / det};
}

Paths Outline(const std::vector<SwfShapeRecord>& records) {
    Paths paths;
    double x = 0, y = 0;
    for (const auto& r : records) {
        if (r.kind == SwfShapeRecord::Kind::StyleChange) {
            if (r.hasMove) x = r.moveX, y = r.moveY, paths.push_back({{x, y}});
            continue;
        }
        x += r.dx, y += r.dy;
        if (paths.empty()) paths.push_back({{0, 0}});
        paths.back().push_back({x, y});
    }
    return paths;
}

bool Inside(const Paths& paths, Pt p) {  // even-odd, as the player fills one shape
    bool inside = false;
    for (const auto& path : paths)
        for (size_t i = 0; i + 1 < path.size(); ++i) {
            const Pt a = path[i], b = path[i + 1];
            if ((a.y > p.y) != (b.y > p.y) && p.x < a.x + (p.y - a.y) * (b.x - a.x) / (b.y - a.y)) inside = !inside;
        }
    return inside;
}

// What shows at a stage point: how much of each slide (opacity through
// everything above) and where in its picture the topmost copy shows.
struct Seen {
    double in = 0, out = 0, other = 0;
    std::optional<Pt> inAt, outAt;
};

struct Stage {
    const char* name;
    int32_t stageW, stageH;
    SlideOnStage in;
    bool withOutgoing;
};

// One transition written into a movie and played frame by frame. The
// outgoing slide sits at depth 1 with a camera zoom of 1.2.
class Movie {
public:
    Movie(Transition& t, float fps, const Stage& s)
        : in(s.in), out{kOutId, 1, SwfMatrix::Scale(0x13333, 0x13333, -400, -300), 0, 0, s.stageW, s.stageH, 1, ""} {
        test::TempDir dir;
        uint32_t nextId = 10, nextDepth = 2;
        {
            SwfWriter writer;
            writer.Setup(s.stageW, s.stageH, fps, 6);
            EXPECT_TRUE(writer.Open(dir.file("t.swf"), true));
            MovieContext ctx{writer, fps, nextId, nextDepth};
            EXPECT_TRUE(t.Render(&in, s.withOutgoing ? &out : nullptr, ctx));
            writer.AddTag(std::make_unique<EndTag>());
            writer.Close();
        }
        bytes = std::filesystem::file_size(dir.file("t.swf"));
        EXPECT_TRUE(reader_.ReadFile(dir.file("t.swf"))) << reader_.Error();
        if (s.withOutgoing) list_[out.depth] = {kOutId, out.matrix};
        frames_.emplace_back();
        for (auto& tag : reader_.Tags())
            if (tag->Code() == SwfTagCode::ShowFrame) frames_.emplace_back();
            else if (tag->Code() != SwfTagCode::End) frames_.back().push_back(tag.get());
    }

    int Frames() const { return int(frames_.size()) - 1; }
    void PlayTo(int frame) {  // 1-based, including that frame's tags
        for (; played_ < frame; ++played_)
            for (SwfTag* tag : frames_.at(played_)) Apply(tag);
    }

    Seen At(Pt p) const {
        Seen seen;
        std::vector<std::pair<uint16_t, bool>> masks;  // clip depth, point inside
        for (const auto& [depth, layer] : list_) {
            std::erase_if(masks, [&](const auto& m) { return m.first < depth; });
            const std::optional<Pt> local = Local(layer.matrix, p);
            if (layer.clipDepth != 0) {
                masks.emplace_back(layer.clipDepth, local && Covers(layer, *local));
                continue;
            }
            if (!local || std::any_of(masks.begin(), masks.end(), [](const auto& m) { return !m.second; })) continue;
            if (layer.character == kInId || layer.character == kOutId) {
                const SlideOnStage& slide = layer.character == kInId ? in : out;
                if (local->x < 0 || local->y < 0 || local->x > slide.width || local->y > slide.height) continue;
                (layer.character == kInId ? seen.inAt : seen.outAt) = local;
            } else if (!Covers(layer, *local)) {
                continue;
            }
            const double alpha = layer.alpha / 256.0;
            seen.in *= 1 - alpha, seen.out *= 1 - alpha, seen.other *= 1 - alpha;
            (layer.character == kInId ? seen.in : layer.character == kOutId ? seen.out : seen.other) += alpha;
        }
        return seen;
    }

    SlideOnStage in, out;
    uintmax_t bytes = 0;

private:
    struct Layer {
        uint16_t character = 0;
        SwfMatrix matrix;
        int alpha = 256;
        uint16_t clipDepth = 0, ratio = 0;
    };
    bool Covers(const Layer& layer, Pt local) const {
        if (auto s = shapes_.find(layer.character); s != shapes_.end()) return Inside(s->second, local);
        auto m = morphs_.find(layer.character);
        if (m == morphs_.end()) return false;
        const double t = layer.ratio / 65535.0;
        Paths now = m->second.first;
        for (size_t i = 0; i < now.size() && i < m->second.second.size(); ++i)
            for (size_t k = 0; k < now[i].size() && k < m->second.second[i].size(); ++k) {
                now[i][k].x += (m->second.second[i][k].x - now[i][k].x) * t;
                now[i][k].y += (m->second.second[i][k].y - now[i][k].y) * t;
            }
        return Inside(now, local);
    }
    void Apply(SwfTag* tag) {
        if (auto* shape = dynamic_cast<DefineShapeTag*>(tag)) {
            shapes_[shape->GetId()] = Outline(shape->shape.records);
        } else if (auto* morph = dynamic_cast<DefineMorphShapeTag*>(tag)) {
            morphs_[morph->GetId()] = {Outline(morph->startEdges.records), Outline(morph->endEdges.records)};
        } else if (auto* p = dynamic_cast<PlaceObject2Tag*>(tag)) {
            Layer& layer = list_[p->depth];
            if (!p->move) layer = Layer{*p->characterId, SwfMatrix(), 256, 0, 0};
            if (p->matrix) layer.matrix = *p->matrix;
            if (p->colorTransform) layer.alpha = p->colorTransform->alphaMult;
            if (p->clipDepth) layer.clipDepth = *p->clipDepth;
            if (p->ratio) layer.ratio = *p->ratio;
        } else if (auto* r = dynamic_cast<RemoveObject2Tag*>(tag)) {
            list_.erase(r->depth);
        }
    }

    SwfReader reader_;
    std::vector<std::vector<SwfTag*>> frames_;
    std::map<uint16_t, Layer> list_;
    std::map<uint16_t, Paths> shapes_;
    std::map<uint16_t, std::pair<Paths, Paths>> morphs_;
    int played_ = 0;
};

}  // namespace

TEST(TransitionBars, EveryOptionShowsOnlyTheSlidesAndLandsTheIncomingOneInPlace) {
    constexpr int32_t kW = 640 * 20, kH = 480 * 20;
    const Stage setups[] = {
        {"full", kW, kH, {kInId, 2, SwfMatrix(), 0, 0, kW, kH, 2, ""}, true},
        {"small", kW, kH, {kInId, 2, SwfMatrix(), 300, 180, 12000, 9000, 2, ""}, true},
        {"first", kW, kH, {kInId, 2, SwfMatrix(), 0, 0, kW, kH, 1, ""}, false},
        {"blank", kW, kH, {0, 2, SwfMatrix(), 0, 0, kW, kH, 2, ""}, true},
    };
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
    for (const Sweep& sweep : sweeps)
        for (int value : sweep.values)
            for (float fps : {1.0f, 12.0f, 120.0f})
                for (const Stage& setup : setups) {
                    auto t = TransitionRegistry::instance().Find(sweep.name)->Clone();
                    t->SetOptionValue(sweep.option, value);
                    t->SetDuration(2000);
                    Movie movie(*t, fps, setup);
                    SCOPED_TRACE(std::string(sweep.name) + " option " + std::to_string(sweep.option) + "=" +
                                 std::to_string(value) + " at " + std::to_string(int(fps)) + " fps, " + setup.name);
                    const int n = t->FrameCount(fps);
                    ASSERT_EQ(movie.Frames(), n);
                    if (fps == 12.0f) {
                        EXPECT_LT(movie.bytes, 50000u);
                    }
                    const SlideOnStage& in = movie.in;
                    const bool shown = in.characterId != 0;
                    for (int frame : std::set<int>{1, (n + 1) / 2, n - 1, n}) {
                        if (frame < 1) continue;
                        movie.PlayTo(frame);
                        double covered = 0, inside = 0;
                        for (int gy = 0; gy < 18; ++gy)
                            for (int gx = 0; gx < 24; ++gx) {
                                const Pt p{(gx + 0.37) * kW / 24, (gy + 0.41) * kH / 18};
                                const Seen s = movie.At(p);
                                ASSERT_EQ(s.other, 0) << "something else shows at " << p.x << "," << p.y;
                                // The outgoing slide, wherever it shows, stays where the camera left it.
                                if (s.out > 0) {
                                    const Pt home = *Local(movie.out.matrix, p);
                                    ASSERT_NEAR(s.outAt->x, home.x, 1) << "frame " << frame;
                                    ASSERT_NEAR(s.outAt->y, home.y, 1) << "frame " << frame;
                                }
                                const bool inRect =
                                    p.x > in.x && p.y > in.y && p.x < in.x + in.width && p.y < in.y + in.height;
                                // Moving pieces may pass outside the slide's place, but
                                // nothing is left there in the end.
                                if (!shown || (!inRect && frame == n)) {
                                    ASSERT_EQ(s.in, 0);
                                }
                                if (!shown || !inRect) continue;
                                inside += 1;
                                covered += s.in;
                                if (frame == n) {
                                    ASSERT_EQ(s.in, 1) << "at " << p.x << "," << p.y;
                                    ASSERT_NEAR(s.inAt->x, p.x - in.x, 1e-9);
                                    ASSERT_NEAR(s.inAt->y, p.y - in.y, 1e-9);
                                }
                            }
                        // Half way the incoming slide is partly there, whatever the
                        // frame rate (with no outgoing slide "Blinds Out" has
                        // nothing to close).
                        if (shown && setup.withOutgoing && n >= 2 && frame == (n + 1) / 2) {
                            EXPECT_GT(covered, 0.02 * inside);
                            EXPECT_LT(covered, 0.98 * inside);
                        }
                    }
                }
}

TEST(TransitionBars, TinyCheckerCellsOnABigStageStayWithinTheBudget) {
    constexpr int32_t kW = 1920 * 20, kH = 1080 * 20;
    const Stage setup{"big", kW, kH, {kInId, 2, SwfMatrix(), 0, 0, kW, kH, 2, ""}, true};
    for (int cell : {20, 1600})
        for (int type = 0; type < 8; ++type) {
            auto t = TransitionRegistry::instance().Find("Checker")->Clone();
            t->SetOptionValue(0, type);
            t->SetOptionValue(1, 16);  // random order: the most scattered masks
            t->SetOptionValue(2, cell);
            t->SetOptionValue(3, cell);
            Movie movie(*t, 12.0f, setup);
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
