#include "swf/actions/FrameActions.h"

namespace quillet {

size_t ActionGotoFrame::Read(SwfInput& payload) {
    frame = payload.ReadU16();
    return 2;
}

void ActionGotoFrame2::WritePayload(SwfStream& out) const {
    out.WriteU8(static_cast<uint8_t>((hasSceneBias ? 0x02 : 0) | (play ? 0x01 : 0)));
    if (hasSceneBias) out.WriteU16(sceneBias);
}

size_t ActionGotoFrame2::Read(SwfInput& payload) {
    const uint8_t flags = payload.ReadU8();
    play = flags & 0x01;
    hasSceneBias = flags & 0x02;
    if (hasSceneBias) sceneBias = payload.ReadU16();
    return hasSceneBias ? 3 : 1;
}

size_t ActionGoToLabel::Read(SwfInput& payload) {
    label = payload.ReadString();
    return label.size() + 1;
}

size_t ActionWaitForFrame::Read(SwfInput& payload) {
    frame = payload.ReadU16();
    skipCount = payload.ReadU8();
    return 3;
}

size_t ActionWaitForFrame2::Read(SwfInput& payload) {
    skipCount = payload.ReadU8();
    return 1;
}

size_t ActionSetTarget::Read(SwfInput& payload) {
    target = payload.ReadString();
    return target.size() + 1;
}

size_t ActionStoreRegister::Read(SwfInput& payload) {
    registerNumber = payload.ReadU8();
    return 1;
}

}  // namespace quillet
