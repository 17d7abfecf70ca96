#include "effects/StageModel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "support/TempDir.h"

namespace quillet::test {

Affine::Affine(const SwfMatrix& m)
    : a(m.hasScale ? m.scaleX / 65536.0 : 1), b(m.hasRotate ? m.rotateSkew0 / 65536.0 : 0),
      c(m.hasRotate ? m.rotateSkew1 / 65536.0 : 0), d(m.hasScale ? m.scaleY / 65536.0 : 1), tx(m.translateX),
      ty(m.translateY) {}

Affine Affine::operator*(const Affine& in) const {
    return {a * in.a + c * in.b, b * in.a + d * in.b, a * in.c + c * in.d, b * in.c + d * in.d,
            a * in.tx + c * in.ty + tx, b * in.tx + d * in.ty + ty};
}

std::optional<Point> Affine::Inverse(Point p) const {
    const double det = a * d - b * c;
    if (det == 0) return std::nullopt;
    const double x = p.x - tx, y = p.y - ty;
    return Point{(d * x - c * y) / det, (a * y - b * x) / det};
}

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

bool Inside(const Outline& outline, Point p) {
    bool inside = false;
    for (const auto& poly : outline)
        for (size_t i = 0; i < poly.size(); ++i) {
            const Point a = poly[i], b = poly[(i + 1) % poly.size()];
            if ((a.y > p.y) != (b.y > p.y) && p.x < a.x + (p.y - a.y) * (b.x - a.x) / (b.y - a.y)) inside = !inside;
        }
    return inside;
}

Stage::Stage(Transition& t, uint32_t ms, float fps, const StageSetup& setup)
    : in(setup.in),
      out{kOutId, 1, SwfMatrix::Scale(0x13333, 0x13333, -400, -300), 0, 0, setup.width, setup.height, 1, ""},
      width(setup.width), height(setup.height) {
    TempDir dir;
    uint32_t nextId = 10, nextDepth = 2;
    {
        SwfWriter writer;
        writer.Setup(width, height, fps, 6);
        EXPECT_TRUE(writer.Open(dir.file("t.swf"), true));
        MovieContext ctx{writer, fps, nextId, nextDepth};
        t.SetDuration(ms);
        EXPECT_TRUE(t.Render(&in, setup.withOutgoing ? &out : nullptr, ctx));
        writer.AddTag(std::make_unique<EndTag>());
        writer.Close();
    }
    bytes = std::filesystem::file_size(dir.file("t.swf"));
    EXPECT_TRUE(reader_.ReadFile(dir.file("t.swf"))) << reader_.Error();
    if (setup.withOutgoing) list[out.depth].character = kOutId, list[out.depth].matrix = out.matrix;
    frames.emplace_back();
    for (auto& tag : reader_.Tags())
        if (tag->Code() == SwfTagCode::ShowFrame) frames.emplace_back();
        else if (tag->Code() != SwfTagCode::End) frames.back().push_back(tag.get());
}

PlaceObject2Tag* Stage::Place(size_t frame, uint16_t depth, bool first) const {
    PlaceObject2Tag* found = nullptr;
    for (SwfTag* tag : frames.at(frame))
        if (auto* p = dynamic_cast<PlaceObject2Tag*>(tag); p && p->depth == depth) {
            found = p;
            if (first) break;
        }
    return found;
}

int Stage::Alpha(size_t frame, uint16_t depth) const {
    auto* p = Place(frame, depth);
    if (!p || !p->colorTransform) return -1;
    EXPECT_EQ(p->colorTransform->redMult, 256);
    return p->colorTransform->alphaMult;
}

bool Stage::Removes(size_t frame, uint16_t depth) const {
    for (SwfTag* tag : frames.at(frame))
        if (auto* r = dynamic_cast<RemoveObject2Tag*>(tag); r && r->depth == depth) return true;
    return false;
}

void Stage::PlayTo(int frame) {
    for (; played_ < frame; ++played_)
        for (SwfTag* tag : frames.at(size_t(played_))) Apply(tag);
}

void Stage::Apply(SwfTag* tag) {
    if (auto* shape = dynamic_cast<SwfDefineShapeBase*>(tag)) {
        shapes_[shape->GetId()] = Trace(shape->shape.records);
    } else if (auto* morph = dynamic_cast<DefineMorphShapeTag*>(tag)) {
        morphs_[morph->GetId()] = {Trace(morph->startEdges.records), Trace(morph->endEdges.records)};
    } else if (auto* rm = dynamic_cast<RemoveObject2Tag*>(tag)) {
        EXPECT_EQ(list.erase(rm->depth), 1u) << "removes free depth " << rm->depth;
    } else if (auto* p = dynamic_cast<PlaceObject2Tag*>(tag)) {
        EXPECT_EQ(list.count(p->depth), p->move ? 1u : 0u) << (p->move ? "changes free" : "places on used")
                                                           << " depth " << p->depth;
        Layer& layer = list[p->depth];
        if (!p->move) layer = Layer(), layer.character = p->characterId.value_or(0);
        if (p->matrix) layer.matrix = *p->matrix;
        if (p->colorTransform) layer.alpha = p->colorTransform->alphaMult, layer.colour = p->colorTransform;
        if (p->clipDepth) layer.clipDepth = *p->clipDepth;
        if (p->ratio) layer.ratio = *p->ratio;
    }
}

const Outline& Stage::ShapeAt(const Layer& layer) const {
    static const Outline kNothing;
    if (auto s = shapes_.find(layer.character); s != shapes_.end()) return s->second;
    const auto m = morphs_.find(layer.character);
    if (m == morphs_.end()) return kNothing;
    auto [mixed, fresh] = mixed_.try_emplace({layer.character, layer.ratio}, m->second.first);
    if (!fresh) return mixed->second;
    const double t = layer.ratio / 65535.0;
    Outline& now = mixed->second;
    const Outline& end = m->second.second;
    for (size_t i = 0; i < now.size() && i < end.size(); ++i)
        for (size_t k = 0; k < now[i].size() && k < end[i].size(); ++k) {
            now[i][k].x += (end[i][k].x - now[i][k].x) * t;
            now[i][k].y += (end[i][k].y - now[i][k].y) * t;
        }
    return now;
}

const Layer* Stage::FirstMask() const {
    for (const auto& [depth, layer] : list)
        if (layer.clipDepth != 0) return &layer;
    return nullptr;
}

Seen Stage::At(Point p) const {
    Seen seen;
    std::vector<std::pair<uint16_t, bool>> masks;  // clip depth, point inside the mask
    for (const auto& [depth, layer] : list) {
        const uint16_t here = depth;  // a structured binding cannot be captured before C++20's later compilers
        std::erase_if(masks, [here](const auto& m) { return m.first < here; });
        const std::optional<Point> local = Affine(layer.matrix).Inverse(p);
        if (layer.clipDepth != 0) {
            masks.emplace_back(layer.clipDepth, local && Inside(ShapeAt(layer), *local));
            continue;
        }
        if (!local || std::any_of(masks.begin(), masks.end(), [](const auto& m) { return !m.second; })) continue;
        const bool isIn = layer.character == kInId, isOut = layer.character == kOutId;
        if (isIn || isOut) {
            const SlideOnStage& slide = isIn ? in : out;
            if (local->x < 0 || local->y < 0 || local->x > slide.width || local->y > slide.height) continue;
            (isIn ? seen.inAt : seen.outAt) = local;
            seen.top = layer.character;
        } else if (!Inside(ShapeAt(layer), *local)) {
            continue;
        }
        const double alpha = layer.alpha / 256.0;
        seen.in *= 1 - alpha, seen.out *= 1 - alpha, seen.other *= 1 - alpha;
        (isIn ? seen.in : isOut ? seen.out : seen.other) += alpha;
    }
    return seen;
}

std::unique_ptr<Transition> Variant::Make() const {
    auto t = TransitionRegistry::instance().Find(name)->Clone();
    for (const auto& [index, value] : options) t->SetOptionValue(index, value);
    return t;
}

std::string Variant::Describe() const {
    std::string s = name;
    for (const auto& [index, value] : options) s += " " + std::to_string(index) + "=" + std::to_string(value);
    return s;
}

std::vector<Point> Grid(double x, double y, double w, double h, int columns, int rows) {
    std::vector<Point> points;
    for (int j = 0; j < rows; ++j)
        for (int i = 0; i < columns; ++i) points.push_back({x + (i + 0.5) * w / columns, y + (j + 0.5) * h / rows});
    return points;
}

bool InSlide(const SlideOnStage& s, Point p) {
    return p.x > s.x && p.y > s.y && p.x < s.x + s.width && p.y < s.y + s.height;
}

}  // namespace quillet::test
