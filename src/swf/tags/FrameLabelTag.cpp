#include "swf/tags/FrameLabelTag.h"

namespace quillet {

void FrameLabelTag::WriteBody(SwfStream& body) const {
    body.WriteString(label);
    if (anchor) body.WriteU8(1);
}

void FrameLabelTag::ReadBody(SwfInput& body) {
    label = body.ReadString();
    anchor = false;
    if (body.ok() && body.Remaining() > 0) anchor = body.ReadU8() == 1;
}

}  // namespace quillet
