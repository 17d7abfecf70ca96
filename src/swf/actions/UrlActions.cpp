#include "swf/actions/UrlActions.h"

namespace quillet {

size_t ActionGetURL::Read(SwfInput& payload) {
    url = payload.ReadString();
    target = payload.ReadString();
    return url.size() + target.size() + 2;
}

void ActionGetURL2::WritePayload(SwfStream& out) const {
    out.WriteBits(method, 2);
    out.WriteBits(reserved, 4);
    out.WriteBit(loadTarget);
    out.WriteBit(loadVariables);
}

size_t ActionGetURL2::Read(SwfInput& payload) {
    method = static_cast<uint8_t>(payload.ReadBits(2));
    reserved = static_cast<uint8_t>(payload.ReadBits(4));
    loadTarget = payload.ReadBit();
    loadVariables = payload.ReadBit();
    return 1;
}

}  // namespace quillet
