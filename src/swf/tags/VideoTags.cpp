#include "swf/tags/VideoTags.h"

namespace quillet {

void DefineVideoStreamTag::WriteBody(SwfStream& body) const {
    body.WriteU16(id_);
    body.WriteU16(frameCount);
    body.WriteU16(width);
    body.WriteU16(height);
    body.WriteU8(flags);
    body.WriteU8(codec);
}

void DefineVideoStreamTag::ReadBody(SwfInput& body) {
    id_ = body.ReadU16();
    frameCount = body.ReadU16();
    width = body.ReadU16();
    height = body.ReadU16();
    flags = body.ReadU8();
    codec = body.ReadU8();
}

}  // namespace quillet
