#pragma once

#include <optional>

#include "swf/SwfRecords.h"
#include "swf/SwfTag.h"

namespace quillet {

// PlaceObject (SWF 1): a character at a depth with a matrix and an optional
// colour transform without alpha.
class PlaceObjectTag final : public SwfTag {
public:
    PlaceObjectTag() = default;
    PlaceObjectTag(uint16_t id, uint16_t d, const SwfMatrix& m) : characterId(id), depth(d), matrix(m) {}
    uint16_t Code() const override { return SwfTagCode::PlaceObject; }
    void OffsetIds(int16_t delta) override { characterId = Offset(characterId, delta); }
    uint16_t characterId = 0;
    uint16_t depth = 0;
    SwfMatrix matrix;
    std::optional<SwfColorTransform> colorTransform;

protected:
    void WriteBody(SwfStream& body) const override;
    void ReadBody(SwfInput& body) override;
};

}  // namespace quillet
