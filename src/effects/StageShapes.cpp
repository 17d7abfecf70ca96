#include "effects/StageShapes.h"

#include <algorithm>
#include <cmath>

#include "swf/SwfShape.h"
#include "swf/SwfTags.h"
#include "swf/SwfWriter.h"

namespace quillet {

namespace {

// Twice the signed area; positive for a path that runs clockwise on the
// screen (y grows downwards), where SWF's fill 1 is the inside.
int64_t Winding(const StagePolygon& p) {
    int64_t sum = 0;
    for (size_t i = 0; i < p.size(); ++i) {
        const StagePoint& a = p[i];
        const StagePoint& b = p[(i + 1) % p.size()];
        sum += int64_t(a.first) * b.second - int64_t(b.first) * a.second;
    }
    return sum;
}

// The edges of a polygon as SHAPE records from its first point: a move
// (carrying the fill when `fill` is set) and one straight edge per side,
// zero-length sides included so that two states keep matching records.
void AppendEdges(const StagePolygon& p, bool reversed, bool fill, std::vector<SwfShapeRecord>& out, SwfRect& bounds,
                 bool& first) {
    if (p.empty()) return;
    auto at = [&](size_t i) { return reversed ? p[(p.size() - i) % p.size()] : p[i % p.size()]; };
    SwfShapeRecord move = SwfShapeRecord::Move(at(0).first, at(0).second);
    if (fill) {
        move.hasFill1 = true;
        move.fill1 = 1;
        move.hasFill0 = true;
        move.fill0 = 0;
    }
    out.push_back(move);
    for (size_t i = 0; i < p.size(); ++i) {
        const StagePoint a = at(i), b = at(i + 1);
        out.push_back(SwfShapeRecord::Line(b.first - a.first, b.second - a.second));
        if (first) {
            bounds = SwfRect(a.first, a.first, a.second, a.second);
            first = false;
        }
        bounds.xMin = std::min(bounds.xMin, a.first);
        bounds.xMax = std::max(bounds.xMax, a.first);
        bounds.yMin = std::min(bounds.yMin, a.second);
        bounds.yMax = std::max(bounds.yMax, a.second);
    }
}

}  // namespace

StagePolygon RectanglePolygon(int32_t x, int32_t y, int32_t width, int32_t height) {
    return {{x, y}, {x + width, y}, {x + width, y + height}, {x, y + height}};
}

uint16_t DefinePolygons(const std::vector<StagePolygon>& polygons, MovieContext& ctx, SwfColor color) {
    SwfShapeBuilder b;
    b.SetFill1(b.AddFillStyle(SwfFillStyle::MakeSolid(color)));
    for (StagePolygon p : polygons) {
        if (p.size() < 3) continue;
        if (Winding(p) < 0) std::reverse(p.begin(), p.end());
        b.Polygon(p);
    }
    const uint16_t id = ctx.NewCharacterId();
    ctx.movie.AddTag(std::make_unique<DefineShapeTag>(id, b.Bounds(), b.Build()));
    return id;
}

uint16_t DefineMorphPolygons(const std::vector<StagePolygon>& start, const std::vector<StagePolygon>& end,
                             MovieContext& ctx) {
    auto tag = std::make_unique<DefineMorphShapeTag>();
    SwfMorphFillStyle fill;
    fill.type = SwfFillStyle::Solid;
    fill.startColor = fill.endColor = SwfColor(0, 0, 0);
    tag->fillStyles.push_back(fill);
    bool firstStart = true, firstEnd = true;
    for (size_t i = 0; i < start.size() && i < end.size(); ++i) {
        if (start[i].size() != end[i].size() || start[i].size() < 2) continue;
        // The winding of whichever state has an area decides the direction
        // of both, so the inside stays on fill 1 throughout.
        const int64_t w = Winding(start[i]) != 0 ? Winding(start[i]) : Winding(end[i]);
        AppendEdges(start[i], w < 0, true, tag->startEdges.records, tag->startBounds, firstStart);
        AppendEdges(end[i], w < 0, false, tag->endEdges.records, tag->endBounds, firstEnd);
    }
    tag->startEdges.fillBits = 1;
    tag->startEdges.lineBits = 0;
    tag->endEdges.fillBits = 0;
    tag->endEdges.lineBits = 0;
    const uint16_t id = ctx.NewCharacterId();
    tag->SetId(id);
    ctx.movie.AddTag(std::move(tag));
    return id;
}

uint16_t MorphRatio(double progress) {
    return static_cast<uint16_t>(std::clamp(progress, 0.0, 1.0) * 65535.0 + 0.5);
}

uint16_t PlaceMaskedSlide(SlideOnStage* slide, uint16_t maskId, MovieContext& ctx, const SwfMatrix& maskMatrix,
                          std::optional<uint16_t> ratio) {
    if (!slide || slide->characterId == 0) {
        PlaceSlide(slide, ctx);
        return 0;
    }
    const uint16_t maskDepth = ctx.NewDepth();
    slide->depth = ctx.NewDepth();
    auto clip = PlaceObject2Tag::Place(maskDepth, maskId, maskMatrix);
    clip->clipDepth = slide->depth;
    clip->ratio = ratio;
    ctx.movie.AddTag(std::move(clip));
    PlaceSlide(slide, ctx);
    return maskDepth;
}

uint16_t PlaceMaskedCopy(const SlideOnStage* slide, uint16_t maskId, MovieContext& ctx, const SwfMatrix& maskMatrix,
                         std::optional<uint16_t> ratio) {
    if (!slide || slide->characterId == 0) return 0;
    const uint16_t maskDepth = ctx.NewDepth();
    auto clip = PlaceObject2Tag::Place(maskDepth, maskId, maskMatrix);
    clip->clipDepth = static_cast<uint16_t>(maskDepth + 1);
    clip->ratio = ratio;
    ctx.movie.AddTag(std::move(clip));
    return PlaceSlideCopy(slide, ctx);
}

void ModifyMask(uint16_t depth, const SwfMatrix& matrix, std::optional<uint16_t> ratio, MovieContext& ctx) {
    auto modify = PlaceObject2Tag::Modify(depth, matrix);
    modify->ratio = ratio;
    ctx.movie.AddTag(std::move(modify));
}

void RemoveDepth(uint16_t depth, MovieContext& ctx) {
    if (depth != 0) ctx.movie.AddTag(std::make_unique<RemoveObject2Tag>(depth));
}

}  // namespace quillet
