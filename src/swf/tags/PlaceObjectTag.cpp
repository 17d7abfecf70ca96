#include "swf/tags/PlaceObjectTag.h"

namespace quillet {

void PlaceObjectTag::WriteBody(SwfStream& body) const {
    body.WriteU16(characterId);
    body.WriteU16(depth);
    matrix.Write(body);
    body.Align();
    if (colorTransform) colorTransform->WriteWithWidth(body);
}

void PlaceObjectTag::ReadBody(SwfInput& body) {
    characterId = body.ReadU16();
    depth = body.ReadU16();
    matrix.Read(body);
    body.Align();
    colorTransform.reset();
    if (body.ok() && body.Remaining() > 0) {
        SwfColorTransform c;
        c.Read(body);
        colorTransform = c;
    }
}

}  // namespace quillet
