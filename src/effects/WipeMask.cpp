#include "effects/WipeMask.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace quillet {

namespace {

struct DirectionInfo {
    int dx, dy;     // which way the wipe travels: -1, 0 or 1 per axis
    bool diagonal;  // the triangle family
};

constexpr DirectionInfo kDirections[kWipeDirectionCount] = {
    {0, -1, false}, {0, 1, false}, {1, 0, false},  {-1, 0, false},  // up, down, right, left
    {1, 1, false},  {-1, 1, false}, {1, -1, false}, {-1, -1, false}, // corners
    {1, 1, true},   {-1, 1, true},  {1, -1, true},  {-1, -1, true},  // diagonals
};

int32_t Along(int32_t start, double progress) {
    progress = std::clamp(progress, 0.0, 1.0);
    return static_cast<int32_t>(std::trunc(static_cast<double>(start) * (1.0 - progress)));
}

}  // namespace

int32_t WipeMask::OffsetX(double progress) const { return Along(startX, progress); }
int32_t WipeMask::OffsetY(double progress) const { return Along(startY, progress); }

WipeMask MakeWipeMask(int32_t direction, int32_t stageWidth, int32_t stageHeight) {
    if (direction < 0 || direction >= kWipeDirectionCount) direction = static_cast<int32_t>(WipeDirection::Right);
    const DirectionInfo& info = kDirections[direction];
    const int32_t w = stageWidth, h = stageHeight;

    SwfShapeBuilder b;
    b.SetFill1(b.AddFillStyle(SwfFillStyle::MakeSolid(SwfColor(0, 0, 0))));
    if (!info.diagonal) {
        b.Rectangle(0, 0, w, h);
    } else {
        // The right angle sits in the corner the wipe starts from; the legs run
        // twice the stage's width and height, so once moved home the long edge
        // lies beyond the far corner and the stage is covered.
        const int32_t cx = info.dx > 0 ? 0 : w;
        const int32_t cy = info.dy > 0 ? 0 : h;
        std::vector<std::pair<int32_t, int32_t>> points = {
            {cx, cy}, {cx + 2 * w * info.dx, cy}, {cx, cy + 2 * h * info.dy}};
        // Fill 1 is the inside of a path that runs clockwise on screen (y down).
        const int64_t turn = int64_t(points[1].first - points[0].first) * (points[2].second - points[0].second) -
                             int64_t(points[1].second - points[0].second) * (points[2].first - points[0].first);
        if (turn < 0) std::swap(points[1], points[2]);
        b.Polygon(points);
    }

    WipeMask mask;
    mask.bounds = b.Bounds();
    mask.shape = b.Build();
    // Entering from the opposite side: one full stage width/height away.
    mask.startX = -info.dx * w;
    mask.startY = -info.dy * h;
    return mask;
}

}  // namespace quillet
