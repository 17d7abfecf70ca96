// DefineShape, DefineShape2 and DefineShape3: one character made of filled
// and stroked outlines. They differ only in the shape version: 2 allows more
// than 255 styles, 3 adds alpha to colours.
#pragma once

#include <memory>

#include "swf/SwfShape.h"
#include "swf/SwfTag.h"

namespace quillet {

class SwfDefineShapeBase : public SwfTag {
public:
    bool HasId() const override { return true; }
    void OffsetIds(int16_t delta) override;
    virtual int ShapeVersion() const = 0;

    SwfRect bounds;
    SwfShapeWithStyle shape;

protected:
    SwfDefineShapeBase() = default;
    SwfDefineShapeBase(uint16_t id, const SwfRect& b, SwfShapeWithStyle s) : bounds(b), shape(std::move(s)) { id_ = id; }
    void WriteBody(SwfStream& body) const override;
    void ReadBody(SwfInput& body) override;
};

class DefineShapeTag final : public SwfDefineShapeBase {
public:
    DefineShapeTag() = default;
    DefineShapeTag(uint16_t id, const SwfRect& b, SwfShapeWithStyle s)
        : SwfDefineShapeBase(id, b, std::move(s)) {}
    // A rectangle covering `rect` (twips) filled with one fill style, no outline.
    static std::unique_ptr<DefineShapeTag> Rectangle(uint16_t id, const SwfRect& rect, const SwfFillStyle& fill);
    uint16_t Code() const override { return SwfTagCode::DefineShape; }
    int ShapeVersion() const override { return 1; }
};

class DefineShape2Tag final : public SwfDefineShapeBase {
public:
    DefineShape2Tag() = default;
    DefineShape2Tag(uint16_t id, const SwfRect& b, SwfShapeWithStyle s)
        : SwfDefineShapeBase(id, b, std::move(s)) {}
    uint16_t Code() const override { return SwfTagCode::DefineShape2; }
    int ShapeVersion() const override { return 2; }
};

class DefineShape3Tag final : public SwfDefineShapeBase {
public:
    DefineShape3Tag() = default;
    DefineShape3Tag(uint16_t id, const SwfRect& b, SwfShapeWithStyle s)
        : SwfDefineShapeBase(id, b, std::move(s)) {}
    // As DefineShapeTag::Rectangle; colours keep their alpha.
    static std::unique_ptr<DefineShape3Tag> Rectangle(uint16_t id, const SwfRect& rect, const SwfFillStyle& fill);
    uint16_t Code() const override { return SwfTagCode::DefineShape3; }
    int ShapeVersion() const override { return 3; }
};

}  // namespace quillet
