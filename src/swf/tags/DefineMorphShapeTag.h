#pragma once

#include <vector>

#include "swf/SwfShape.h"
#include "swf/SwfTag.h"

namespace quillet {

struct SwfMorphGradientRecord {
    uint8_t startRatio = 0, endRatio = 0;
    SwfColor startColor, endColor;
    bool operator==(const SwfMorphGradientRecord&) const = default;
};

struct SwfMorphFillStyle {
    uint8_t type = SwfFillStyle::Solid;
    SwfColor startColor, endColor;
    SwfMatrix startMatrix, endMatrix;  // gradient or bitmap matrices
    std::vector<SwfMorphGradientRecord> gradient;
    uint16_t bitmapId = 0xFFFF;
    bool operator==(const SwfMorphFillStyle&) const = default;
};

struct SwfMorphLineStyle {
    uint16_t startWidth = 20, endWidth = 20;
    SwfColor startColor, endColor;
    bool operator==(const SwfMorphLineStyle&) const = default;
};

// A shape that morphs between two sets of edges; PlaceObject2's ratio picks
// the point between them.
class DefineMorphShapeTag final : public SwfTag {
public:
    uint16_t Code() const override { return SwfTagCode::DefineMorphShape; }
    bool HasId() const override { return true; }
    void OffsetIds(int16_t delta) override;

    SwfRect startBounds, endBounds;
    std::vector<SwfMorphFillStyle> fillStyles;
    std::vector<SwfMorphLineStyle> lineStyles;
    SwfShape startEdges, endEdges;

protected:
    void WriteBody(SwfStream& body) const override;
    void ReadBody(SwfInput& body) override;
};

}  // namespace quillet
