#include "swf/actions/UrlActions.h"

namespace quillet {

size_t ActionGetURL::Read(SwfInput& payload) {
    url = payload.ReadString();
    target = payload.ReadString();
    return url.size() + target.size() + 2;
}

// Players read the flags byte from its low bits up: the send method in bits 0-1,
// then four unused bits, "target is a sprite" in bit 6 and "load variables" in
// bit 7. (The published format lists the fields the other way round; movies
// written that way turn loadMovie into a POST to a browser window.)
void ActionGetURL2::WritePayload(SwfStream& out) const {
    out.WriteU8(static_cast<uint8_t>((method & 0x03) | ((reserved & 0x0F) << 2) |
                                     (loadTarget ? 0x40 : 0) | (loadVariables ? 0x80 : 0)));
}

size_t ActionGetURL2::Read(SwfInput& payload) {
    const uint8_t flags = payload.ReadU8();
    method = flags & 0x03;
    reserved = (flags >> 2) & 0x0F;
    loadTarget = (flags & 0x40) != 0;
    loadVariables = (flags & 0x80) != 0;
    return 1;
}

}  // namespace quillet
