// The moving masks of the wipes. A mask is a shape that, moved from its start
// offset to (0, 0), uncovers the whole stage: from a side, from a corner, or
// with a diagonal edge running parallel to the stage's other diagonal.
#pragma once

#include <cstdint>

#include "swf/SwfShape.h"

namespace quillet {

// The twelve wipe directions, in the order of the wipes' direction lists.
enum class WipeDirection : int32_t {
    Up = 0, Down, Right, Left,
    ToBottomRight, ToBottomLeft, ToTopRight, ToTopLeft,
    DiagToBottomRight, DiagToBottomLeft, DiagToTopRight, DiagToTopLeft,
};
constexpr int32_t kWipeDirectionCount = 12;

struct WipeMask {
    SwfRect bounds;           // of the shape, twips
    SwfShapeWithStyle shape;  // one solid fill, no outline (only its area matters to a mask)
    int32_t startX = 0, startY = 0;  // offset where nothing of the stage is covered yet

    // The offset after `progress` (0..1, clamped) of the wipe: linear from the
    // start to (0, 0), truncated to whole twips (toward zero, so the last
    // step lands exactly on the stage).
    int32_t OffsetX(double progress) const;
    int32_t OffsetY(double progress) const;
};

// The mask for a direction index (0..11) on a stage of the given size in
// twips. The side and corner directions (0..7) move a stage-sized rectangle
// in from the opposite side or corner; the diagonal ones (8..11) move a right
// triangle twice the stage's size whose long edge sweeps from the starting
// corner to the far one. An index outside 0..11 wipes to the right.
WipeMask MakeWipeMask(int32_t direction, int32_t stageWidth, int32_t stageHeight);

}  // namespace quillet
