#include "effects/transitions/Checker.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>

#include "effects/StageShapes.h"

namespace quillet {

namespace {

const char* const kTypeKeywords[] = {"appear",   "fade_in", "zoom_in",   "drop_left",
                                     "drop_right", "drop_up", "drop_down", "drop_random"};
const char* const kTypeItems[] = {"Appear",     "Fade In", "Zoom In",   "Drop Left",
                                  "Drop Right", "Drop Up", "Drop Down", "Drop Random"};

const char* const kDirectionRead[] = {
    "horizontal_left_to_right_down", "horizontal_left_to_right_up", "horizontal_right_to_left_down",
    "horizontal_right_to_left_up",   "vertical_top_to_bottom_right", "vertical_top_to_bottom_left",
    "vertical_bottom_to_top_right",  "vertical_bottom_to_top_left",  "spiral_top_left_cw",
    "spiral_top_left_ccw",           "spiral_top_right_cw",          "spiral_top_right_ccw",
    "spiral_bottom_left_cw",         "spiral_bottom_left_ccw",       "spiral_bottom_right_cw",
    "spiral_bottom_right_ccw",       "random"};
const char* const kDirectionWritten[] = {
    "horizontal_left_to_right_down",      "horizontal_left_to_right_up",
    "horizontal_right_to_left_down",      "horizontal_right_to_left_up",
    "horizontal_top_to_bottom_right",     "horizontal_top_to_bottom_left",
    "horizontal_bottom_to_top_right",     "horizontal_bottom_to_top_left",
    "horizontal_spiral_top_left_cw",      "horizontal_spiral_top_left_ccw",
    "horizontal_spiral_top_right_cw",     "horizontal_spiral_top_right_ccw",
    "horizontal_spiral_bottom_left_cw",   "horizontal_spiral_bottom_left_ccw",
    "horizontal_spiral_bottom_right_cw",  "horizontal_spiral_bottom_right_ccw",
    "random"};
const char* const kDirectionItems[] = {
    "Left to Right Down",     "Left to Right Up",       "Right to Left Down",    "Right to Left Up",
    "Top to Bottom Right",    "Top to Bottom Left",     "Bottom to Top Right",   "Bottom to Top Left",
    "Spiral Top Left CW",     "Spiral Top Left CCW",    "Spiral Top Right CW",   "Spiral Top Right CCW",
    "Spiral Bottom Left CW",  "Spiral Bottom Left CCW", "Spiral Bottom Right CW", "Spiral Bottom Right CCW",
    "Random"};

// Directions 4 to 15 are written in forms that reading does not know, so
// they come back as 0; files saved that way must keep doing so.
constinit const OptionSpec kOptions[] = {
    ListOption(0, "type", "Type:", kTypeItems, kTypeKeywords, 0),
    ListOption(1, "direction", "Direction:", kDirectionItems, kDirectionWritten, 0, kDirectionRead),
    HiddenOption(OptionKind::Integer, 1600, 20, 100000),  // cell width, twips
    HiddenOption(OptionKind::Integer, 1600, 20, 100000),  // cell height
};

enum Type { kAppear, kFadeIn, kZoomIn, kDropLeft, kDropRight, kDropUp, kDropDown, kDropRandom };

// Each animated cell takes this share of the transition; the waves' starts
// spread over the rest, so several waves move at once.
constexpr double kCellShare = 0.3;
// Pieces (waves, times sides for drop_random) at most: each is a full copy of
// the slide drawn through its mask, and takes two depths.
constexpr int kMaxPieces = 24;
constexpr int kMaxRandomPieces = 48;

// A well-mixed 64-bit hash (splitmix64's finaliser): the same cell always
// draws the same side, and the shuffle is the same in every movie.
uint64_t Mix(uint64_t x) {
    x += 0x9E3779B97F4A7C15ull;
    x = (x ^ (x >> 30)) * 0xBF58476D1CE4E5B9ull;
    x = (x ^ (x >> 27)) * 0x94D049BB133111EBull;
    return x ^ (x >> 31);
}

// The side a drop_random cell comes from: 0 left, 1 right, 2 top, 3 bottom.
int RandomSide(int cell) { return static_cast<int>(Mix(static_cast<uint64_t>(cell) * 2 + 1) % 4); }

}  // namespace

CheckerTransition::CheckerTransition() : TransitionClass("Checker", kOptions) {}

CheckerGrid MakeCheckerGrid(const StageArea& area, int32_t cellWidth, int32_t cellHeight) {
    int64_t cw = std::max(cellWidth, 1), ch = std::max(cellHeight, 1);
    auto count = [&](int64_t length, int64_t cell) { return std::max<int64_t>((length + cell - 1) / cell, 1); };
    while (count(area.width, cw) * count(area.height, ch) > kMaxCheckerCells) {
        cw += (cw + 7) / 8;
        ch += (ch + 7) / 8;
    }
    CheckerGrid grid;
    auto cut = [](int32_t start, int32_t length, int64_t cell, std::vector<int32_t>& cuts) {
        for (int64_t at = 0; at < length; at += cell) cuts.push_back(static_cast<int32_t>(start + at));
        cuts.push_back(start + length);
        if (cuts.size() < 2) cuts.push_back(start + length);
    };
    cut(area.x, area.width, cw, grid.xs);
    cut(area.y, area.height, ch, grid.ys);
    return grid;
}

std::vector<int> CheckerOrder(int columns, int rows, int direction) {
    const int n = columns * rows;
    std::vector<int> order;
    order.reserve(static_cast<size_t>(n));
    if (direction >= 0 && direction < 8) {
        // Rows (0..3) or columns (4..7); the first flag reverses the cells
        // within a line, the second the lines.
        const bool byColumns = direction >= 4;
        const bool backWithin = (direction % 4) >= 2, backLines = direction % 2 == 1;
        const int lines = byColumns ? columns : rows, along = byColumns ? rows : columns;
        for (int l = 0; l < lines; ++l)
            for (int a = 0; a < along; ++a) {
                const int line = backLines ? lines - 1 - l : l, at = backWithin ? along - 1 - a : a;
                order.push_back(byColumns ? at * columns + line : line * columns + at);
            }
    } else if (direction >= 8 && direction < 16) {
        // Walk along the edge from the corner, turning (clockwise or not) at
        // the edge of the grid or at a cell already taken.
        const int corner = (direction - 8) / 2;  // top-left, top-right, bottom-left, bottom-right
        const bool clockwise = direction % 2 == 0;
        int c = corner % 2 == 1 ? columns - 1 : 0, r = corner >= 2 ? rows - 1 : 0;
        // The clockwise way out of each corner (y grows downwards).
        static const int kOut[4][2] = {{1, 0}, {0, 1}, {0, -1}, {-1, 0}};
        int dx = kOut[corner][0], dy = kOut[corner][1];
        if (!clockwise) {  // the other edge: turn the clockwise way back a quarter
            std::swap(dx, dy);
            dx = corner == 0 || corner == 3 ? dx : -dx;
            dy = corner == 0 || corner == 3 ? dy : -dy;
        }
        std::vector<char> taken(static_cast<size_t>(n), 0);
        auto vacant = [&](int x, int y) { return x >= 0 && y >= 0 && x < columns && y < rows && !taken[y * columns + x]; };
        for (int k = 0; k < n && vacant(c, r); ++k) {
            taken[r * columns + c] = 1;
            order.push_back(r * columns + c);
            if (!vacant(c + dx, r + dy)) {
                const int tx = clockwise ? -dy : dy, ty = clockwise ? dx : -dx;
                dx = tx, dy = ty;
            }
            c += dx, r += dy;
        }
        for (int k = 0; k < n; ++k)  // only if the walk got stuck, which a spiral does not
            if (!taken[k]) order.push_back(k);
    } else {
        order.resize(static_cast<size_t>(n));
        std::iota(order.begin(), order.end(), 0);
        std::stable_sort(order.begin(), order.end(),
                         [](int a, int b) { return Mix(static_cast<uint64_t>(a) * 2) < Mix(static_cast<uint64_t>(b) * 2); });
    }
    return order;
}

bool CheckerTransition::Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const {
    if (!placesSlides()) return true;
    const int n = FrameCount(ctx.fps);
    if (n <= 0) return Transition::Render(incoming, outgoing, ctx);
    const bool shown = incoming && incoming->characterId != 0;
    PlaceSlide(incoming, ctx, SwfColorTransformAlpha::Alpha(0));

    const int kind = std::clamp(type(), 0, 7);
    const CheckerGrid grid =
        MakeCheckerGrid(HomeArea(incoming ? *incoming : SlideOnStage{}, ctx), cellWidth(), cellHeight());
    const int columns = grid.columns(), cells = columns * grid.rows();
    const std::vector<int> order = CheckerOrder(columns, grid.rows(), direction());

    // Waves: runs of the order that start together. Appearing cells take no
    // time: each wave comes on at the start of its turn (the first in the
    // first frame), and there may be one more wave than frames, so that at a
    // low frame rate the first frame does not already show them all.
    // Animated waves start in the first (1 - kCellShare) of the transition,
    // the last ending on the last frame.
    const double share = kind == kAppear ? 0.0 : kCellShare;
    const int sides = kind == kDropRandom ? 4 : 1;
    const int startFrames = kind == kAppear ? n + 1 : static_cast<int>((1.0 - share) * n) + 1;
    const int waves = std::max(1, std::min({cells, startFrames, (kind == kDropRandom ? kMaxRandomPieces : kMaxPieces) / sides}));

    struct Piece {
        std::vector<StagePolygon> from, to;  // the cells (zoom_in: grown from their centres)
        double start = 0;
        int side = 0;  // drop: 0 from the left, 1 right, 2 top, 3 bottom
        std::optional<MaskedPiece> placed;
    };
    std::vector<Piece> pieces(static_cast<size_t>(waves * sides));
    for (int w = 0; w < waves; ++w)
        for (int s = 0; s < sides; ++s) {
            Piece& piece = pieces[static_cast<size_t>(w * sides + s)];
            piece.start = kind == kAppear ? static_cast<double>(w) / waves
                          : waves > 1     ? (1.0 - share) * w / (waves - 1)
                                          : 0.0;
            piece.side = kind == kDropRandom ? s : kind - kDropLeft;
        }
    for (int k = 0; k < cells; ++k) {
        const int cell = order[static_cast<size_t>(k)];
        const int wave = static_cast<int>(int64_t(k) * waves / cells);
        const int side = kind == kDropRandom ? RandomSide(cell) : 0;
        Piece& piece = pieces[static_cast<size_t>(wave * sides + side)];
        const int c = cell % columns, r = cell / columns;
        const int32_t x = grid.xs[c], y = grid.ys[r], w = grid.xs[c + 1] - x, h = grid.ys[r + 1] - y;
        if (kind == kZoomIn) {
            piece.from.push_back(RectanglePolygon(x + w / 2, y + h / 2, 0, 0));
            piece.to.push_back(RectanglePolygon(x, y, w, h));
        } else {
            piece.to.push_back(RectanglePolygon(x, y, w, h));
        }
    }
    // A dropping cell comes from one cell away.
    const int32_t cw = grid.xs.size() > 1 ? grid.xs[1] - grid.xs[0] : 0;
    const int32_t ch = grid.ys.size() > 1 ? grid.ys[1] - grid.ys[0] : 0;

    for (int i = 1; i <= n; ++i) {
        const double p = static_cast<double>(i) / n;
        for (Piece& piece : pieces) {
            if (!shown || piece.to.empty()) continue;
            if (i == n) {
                if (piece.placed) piece.placed->Remove(ctx);
                continue;
            }
            const double q = kind == kAppear ? (p + 1e-9 >= piece.start ? 1.0 : 0.0)
                                             : std::clamp((p - piece.start) / share, 0.0, 1.0);
            if (q <= 0) continue;
            PieceState state;
            if (kind == kFadeIn) state.alpha = AlphaFor(q);
            if (kind == kZoomIn) state.ratio = MorphRatio(q);
            if (kind >= kDropLeft) {
                static const int kFrom[4][2] = {{-1, 0}, {1, 0}, {0, -1}, {0, 1}};
                state.maskX = state.slideX = Remaining(kFrom[piece.side][0] * cw, q);
                state.maskY = state.slideY = Remaining(kFrom[piece.side][1] * ch, q);
            }
            if (piece.placed) {
                piece.placed->Update(state, ctx);
            } else {
                const uint16_t mask = kind == kZoomIn ? DefineMorphPolygons(piece.from, piece.to, ctx)
                                                      : DefinePolygons(piece.to, ctx);
                piece.placed.emplace(*incoming, mask, kind == kZoomIn, state, ctx);
            }
        }
        if (i == n && shown) SetOpacity(incoming->depth, 1.0, ctx);
        EndFrame(ctx);
    }
    RemoveSlide(outgoing, ctx);
    return true;
}

}  // namespace quillet
