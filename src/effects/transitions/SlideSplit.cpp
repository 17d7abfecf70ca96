#include "effects/transitions/SlideSplit.h"

#include <algorithm>
#include <cmath>

#include "effects/SlideRender.h"
#include "effects/StageShapes.h"
#include "effects/transitions/KeywordTables.h"

namespace quillet {

namespace {

// The ways the pieces leave, by direction index: side-by-side halves (left,
// right), halves one above the other (top, bottom) or quarters (top left,
// top right, bottom left, bottom right); x then y of each piece.
struct Split {
    bool sideBySide, aboveEachOther;
    int way[4][2];
};
constexpr Split kSplits[] = {
    {true, false, {{-1, 0}, {1, 0}}},                    // horizontal
    {false, true, {{0, -1}, {0, 1}}},                    // vertical
    {true, false, {{0, -1}, {0, 1}}},                    // horizontal opposite, left to right
    {true, false, {{0, 1}, {0, -1}}},                    // horizontal opposite, right to left
    {false, true, {{-1, 0}, {1, 0}}},                    // vertical opposite, top to bottom
    {false, true, {{1, 0}, {-1, 0}}},                    // vertical opposite, bottom to top
    {true, true, {{-1, -1}, {1, -1}, {-1, 1}, {1, 1}}},  // corners
};

// The offset that takes [low, high] just past the stage [0, size] the given way.
double Away(int way, double low, double high, int32_t size) {
    if (way < 0) return -high;
    if (way > 0) return size - low;
    return 0;
}

}  // namespace

std::vector<SplitPiece> SplitSlide(int32_t direction, const StageBox& shown, int32_t stageWidth,
                                   int32_t stageHeight) {
    std::vector<SplitPiece> pieces;
    if (shown.Empty()) return pieces;
    const Split& split = kSplits[std::clamp(direction, 0, int32_t(std::size(kSplits)) - 1)];
    const double midX = std::round((shown.left + shown.right) / 2), midY = std::round((shown.top + shown.bottom) / 2);
    std::vector<std::pair<double, double>> columns{{shown.left, shown.right}}, rows{{shown.top, shown.bottom}};
    if (split.sideBySide) columns = {{shown.left, midX}, {midX, shown.right}};
    if (split.aboveEachOther) rows = {{shown.top, midY}, {midY, shown.bottom}};
    int k = 0;
    for (const auto& [top, bottom] : rows)
        for (const auto& [left, right] : columns) {
            SplitPiece piece;
            piece.box = {left, top, right, bottom};
            piece.awayX = Away(split.way[k][0], left, right, stageWidth);
            piece.awayY = Away(split.way[k][1], top, bottom, stageHeight);
            pieces.push_back(piece);
            ++k;
        }
    return pieces;
}

SlideSplitTransition::SlideSplitTransition(std::string name, bool closes)
    : Transition(std::move(name), kSlideCloseOptions), closes_(closes) {}

bool SlideSplitTransition::Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const {
    if (!placesSlides()) return true;
    const int n = FrameCount(ctx.fps);
    if (n <= 0) return Transition::Render(incoming, outgoing, ctx);

    // Closing, the incoming slide waits invisible in place until its pieces
    // have met over the outgoing one; opening, it is uncovered where the
    // pieces of the outgoing slide, above it, move away.
    if (closes_) PlaceSlide(incoming, ctx, SwfColorTransformAlpha::Alpha(0));
    else PlaceSlide(incoming, ctx);
    const SlideOnStage* cut = closes_ ? incoming : outgoing;
    std::vector<SplitPiece> pieces;
    SlidePlacement rest;
    std::vector<uint16_t> maskIds;
    if (ShowsPicture(cut) && n > 1) {
        const StageBox stage{0, 0, double(ctx.StageWidth()), double(ctx.StageHeight())};
        pieces = SplitSlide(direction(), SlideBox(*cut).Within(stage), ctx.StageWidth(), ctx.StageHeight());
        rest = SlidePlacement::Of(cut->matrix);
        for (const SplitPiece& piece : pieces) {
            const auto left = int32_t(std::lround(piece.box.left)), top = int32_t(std::lround(piece.box.top));
            maskIds.push_back(DefinePolygons({RectanglePolygon(left, top, int32_t(std::lround(piece.box.right)) - left,
                                                               int32_t(std::lround(piece.box.bottom)) - top)},
                                             ctx));
        }
    }
    if (!closes_) RemoveSlide(outgoing, ctx);

    std::vector<uint16_t> copyDepths(pieces.size());  // each piece's mask is one below
    for (int i = 1; i <= n; ++i) {
        const double p = double(i) / n;
        const double away = closes_ ? 1 - p : p;  // how far the pieces are out
        for (size_t k = 0; k < pieces.size(); ++k) {
            if (i == n) {
                // The pieces are home (closing) or gone (opening): the slide
                // beneath is all there is to show.
                RemoveDepth(copyDepths[k] - 1, ctx);
                RemoveDepth(copyDepths[k], ctx);
                continue;
            }
            const double dx = std::round(pieces[k].awayX * away), dy = std::round(pieces[k].awayY * away);
            const SwfMatrix maskAt = SwfMatrix::Translate(int32_t(dx), int32_t(dy));
            if (i == 1) {
                SlideOnStage copy = *cut;
                copy.matrix = rest.Moved(dx, dy).ToMatrix();
                copyDepths[k] = PlaceMaskedCopy(&copy, maskIds[k], ctx, maskAt);
            } else {
                ModifyMask(copyDepths[k] - 1, maskAt, std::nullopt, ctx);
                Reposition(copyDepths[k], rest.Moved(dx, dy), ctx);
            }
        }
        if (i == n && closes_ && ShowsPicture(incoming)) SetOpacity(incoming->depth, 1, ctx);
        EndFrame(ctx);
    }
    if (closes_) RemoveSlide(outgoing, ctx);
    return true;
}

}  // namespace quillet
