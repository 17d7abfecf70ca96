#include "swf/tags/DefineShapeTag.h"

namespace quillet {

namespace {

SwfShapeWithStyle RectangleShape(const SwfRect& rect, const SwfFillStyle& fill) {
    SwfShapeBuilder b;
    b.SetFill1(b.AddFillStyle(fill));
    b.Rectangle(rect.xMin, rect.yMin, rect.Width(), rect.Height());
    return b.Build();
}

}  // namespace

void SwfDefineShapeBase::OffsetIds(int16_t delta) {
    id_ = Offset(id_, delta);
    shape.OffsetBitmapIds(delta);
}

void SwfDefineShapeBase::WriteBody(SwfStream& body) const {
    body.WriteU16(id_);
    bounds.Write(body);
    shape.Write(body, ShapeVersion());
}

void SwfDefineShapeBase::ReadBody(SwfInput& body) {
    id_ = body.ReadU16();
    bounds.Read(body);
    shape.Read(body, ShapeVersion());
}

std::unique_ptr<DefineShapeTag> DefineShapeTag::Rectangle(uint16_t id, const SwfRect& rect, const SwfFillStyle& fill) {
    return std::make_unique<DefineShapeTag>(id, rect, RectangleShape(rect, fill));
}

std::unique_ptr<DefineShape3Tag> DefineShape3Tag::Rectangle(uint16_t id, const SwfRect& rect,
                                                            const SwfFillStyle& fill) {
    return std::make_unique<DefineShape3Tag>(id, rect, RectangleShape(rect, fill));
}

}  // namespace quillet
