#include "effects/transitions/SlidingBars.h"

#include <algorithm>
#include <map>
#include <optional>

#include "effects/StageShapes.h"

namespace quillet {

namespace {

const char* const kKeywords[] = {"horizontal", "horizontal_top_to_bottom", "horizontal_bottom_to_top",
                                 "horizontal_middle_in", "horizontal_middle_out", "vertical",
                                 "vertical_left_to_right", "vertical_right_to_left", "vertical_middle_in",
                                 "vertical_middle_out"};
const char* const kItems[] = {"Horizontal", "Horizontal Top to Bottom", "Horizontal Bottom to Top",
                              "Horizontal Middle In", "Horizontal Middle Out", "Vertical",
                              "Vertical Left to Right", "Vertical Right to Left", "Vertical Middle In",
                              "Vertical Middle Out"};
constinit const OptionSpec kOptions[] = {
    ListOption(0, "direction", "Direction", kItems, kKeywords, 0),
    HiddenOption(OptionKind::Integer, 10, 1, 100),  // the bar count
};

// Each staggered bar takes half the transition; the others share the rest
// as their start times.
constexpr double kStaggeredShare = 0.5;
// Bars whose starts fall in the same frame move as one piece; at most this
// many starts, so a hundred bars cost no more than a few dozen pieces.
constexpr int kMaxStarts = 16;

}  // namespace

SlidingBarLayout MakeSlidingBars(const StageArea& area, int barCount, int direction) {
    direction = std::clamp(direction, 0, 9);
    SlidingBarLayout layout;
    layout.horizontal = direction < 5;
    const int order = direction % 5;  // all at once, forward, backward, middle in, middle out
    const int32_t length = layout.horizontal ? area.height : area.width;
    const int m = std::clamp(barCount, 1, std::max(length, 1));
    const std::vector<int32_t> cuts = Cuts(layout.horizontal ? area.y : area.x, length, m);
    const int half = (m + 1) / 2;  // ranks from the edges to the middle
    layout.ranks = order == 0 ? 1 : order <= 2 ? m : half;
    for (int k = 0; k < m; ++k) {
        const int fromEdge = std::min(k, m - 1 - k);
        int rank = 0;
        switch (order) {
            case 1: rank = k; break;
            case 2: rank = m - 1 - k; break;
            case 3: rank = fromEdge; break;
            case 4: rank = half - 1 - fromEdge; break;
            default: break;
        }
        layout.bars.push_back({cuts[k], cuts[k + 1], rank, k % 2 == 1});
    }
    return layout;
}

SlidingBarsTransition::SlidingBarsTransition() : TransitionClass("Sliding Bars", kOptions) {}

bool SlidingBarsTransition::Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const {
    if (!placesSlides()) return true;
    const int n = FrameCount(ctx.fps);
    if (n <= 0) return Transition::Render(incoming, outgoing, ctx);
    const bool shown = incoming && incoming->characterId != 0;
    PlaceSlide(incoming, ctx, SwfColorTransformAlpha::Alpha(0));

    const int32_t w = ctx.StageWidth(), h = ctx.StageHeight();
    const SlidingBarLayout layout = MakeSlidingBars(HomeArea(incoming ? *incoming : SlideOnStage{}, ctx),
                                                    barCount(), direction());
    // The start slots: neighbouring ranks folded together, so that there are
    // no more slots than frames to start in, and at most kMaxStarts.
    const double share = layout.ranks > 1 ? kStaggeredShare : 1.0;
    const int lastStartFrame = static_cast<int>((1.0 - share) * n);
    const int slots = std::min({layout.ranks, lastStartFrame + 1, kMaxStarts});
    auto slotOf = [&](int rank) { return layout.ranks > 1 ? rank * slots / layout.ranks : 0; };

    // One piece per slot and side: a mask of its strips, stretched over the
    // whole stage along the travel so the bar shows from the stage's edge.
    struct Group {
        std::vector<StagePolygon> strips;
        bool fromFar = false;
        double start = 0;
        std::optional<MaskedPiece> piece;
    };
    std::map<std::pair<int, bool>, Group> groups;
    for (const SlidingBar& bar : layout.bars) {
        Group& g = groups[{slotOf(bar.rank), bar.fromFar}];
        g.fromFar = bar.fromFar;
        g.start = slots > 1 ? (1.0 - share) * slotOf(bar.rank) / (slots - 1) : 0.0;
        g.strips.push_back(layout.horizontal ? RectanglePolygon(0, bar.from, w, bar.to - bar.from)
                                             : RectanglePolygon(bar.from, 0, bar.to - bar.from, h));
    }
    // Off the stage: the slide's far edge on the stage's near one.
    int32_t nearStart = 0, farStart = 0;
    if (shown) {
        if (layout.horizontal) {
            nearStart = -(incoming->x + incoming->width);
            farStart = w - incoming->x;
        } else {
            nearStart = -(incoming->y + incoming->height);
            farStart = h - incoming->y;
        }
    }

    for (int i = 1; i <= n; ++i) {
        const double p = static_cast<double>(i) / n;
        for (auto& [key, g] : groups) {
            if (!shown) break;
            if (i == n) {
                if (g.piece) g.piece->Remove(ctx);
                continue;
            }
            const double q = std::clamp((p - g.start) / share, 0.0, 1.0);
            if (q <= 0) continue;
            const int32_t away = Remaining(g.fromFar ? farStart : nearStart, q);
            PieceState state;
            (layout.horizontal ? state.slideX : state.slideY) = away;
            if (g.piece) {
                g.piece->Update(state, ctx);
            } else {
                g.piece.emplace(*incoming, DefinePolygons(g.strips, ctx), false, state, ctx);
            }
        }
        if (i == n && shown) SetOpacity(incoming->depth, 1.0, ctx);
        EndFrame(ctx);
    }
    RemoveSlide(outgoing, ctx);
    return true;
}

}  // namespace quillet
