#include "effects/transitions/Blinds.h"

#include <algorithm>

#include "effects/transitions/KeywordTables.h"
#include "swf/SwfTags.h"
#include "swf/SwfWriter.h"

namespace quillet {

BlindSlats MakeBlindSlats(const StageArea& area, int count, int direction, bool opening) {
    const bool horizontal = direction == 0 || direction == 1;
    const bool forward = direction == 1 || direction == 3;  // down or right
    const int32_t length = horizontal ? area.height : area.width;
    count = std::clamp(count, 1, std::max(length, 1));
    const std::vector<int32_t> cuts = Cuts(horizontal ? area.y : area.x, length, count);
    // Opening forward, the line lies on the edge before the slat (top or
    // left); closing forward, on the edge after it; backward the other way.
    const bool lineBefore = opening == forward;
    BlindSlats slats;
    for (int k = 0; k < count; ++k) {
        const int32_t a = cuts[k], b = cuts[k + 1];
        const int32_t line = lineBefore ? a : b;
        StagePolygon whole, thin;
        if (horizontal) {
            whole = RectanglePolygon(area.x, a, area.width, b - a);
            thin = RectanglePolygon(area.x, line, area.width, 0);
        } else {
            whole = RectanglePolygon(a, area.y, b - a, area.height);
            thin = RectanglePolygon(line, area.y, 0, area.height);
        }
        slats.start.push_back(opening ? thin : whole);
        slats.end.push_back(opening ? whole : thin);
    }
    return slats;
}

BlindsTransition::BlindsTransition(std::string name, bool opening)
    : Transition(std::move(name), kBlindsOptions), opening_(opening) {}

bool BlindsTransition::Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const {
    if (!placesSlides()) return true;
    const int n = FrameCount(ctx.fps);
    SlideOnStage* masked = opening_ ? incoming : outgoing;
    if (n <= 0) return Transition::Render(incoming, outgoing, ctx);
    if (!masked || masked->characterId == 0) {
        return PassFrames(incoming, outgoing, n, ctx);  // nothing to open or close
    }

    const StageArea area = opening_ ? HomeArea(*incoming, ctx) : VisibleArea(*outgoing, ctx);
    const BlindSlats slats = MakeBlindSlats(area, count(), direction(), opening_);
    const uint16_t shapeId = DefineMorphPolygons(slats.start, slats.end, ctx);
    uint16_t maskDepth = 0;
    if (opening_) {
        maskDepth = PlaceMaskedSlide(incoming, shapeId, ctx, {}, MorphRatio(1.0 / n));
    } else {
        PlaceSlide(incoming, ctx);
        maskDepth = static_cast<uint16_t>(PlaceMaskedCopy(outgoing, shapeId, ctx, {}, MorphRatio(1.0 / n)) - 1);
        // The copy stands in for the outgoing slide, whose depth is free again.
        RemoveSlide(outgoing, ctx);
    }
    for (int i = 1; i <= n; ++i) {
        if (i > 1 && i < n) {
            auto modify = PlaceObject2Tag::Modify(maskDepth);
            modify->ratio = MorphRatio(static_cast<double>(i) / n);
            ctx.movie.AddTag(std::move(modify));
        } else if (i == n) {
            // The last frame shows the incoming slide alone and whole: the
            // slats would only cover it all (opening) or nothing (closing).
            if (!opening_) RemoveDepth(static_cast<uint16_t>(maskDepth + 1), ctx);
            RemoveDepth(maskDepth, ctx);
        }
        EndFrame(ctx);
    }
    if (opening_) RemoveSlide(outgoing, ctx);
    return true;
}

}  // namespace quillet
