#include "swf/actions/ActionWith.h"

namespace quillet {

size_t ActionWith::Write(SwfStream& out) const {
    SwfStream code;
    code.version = out.version;
    block.Write(code, false);
    const uint32_t before = out.Size();
    out.WriteU8(Code());
    out.WriteU16(2);
    out.WriteU16(static_cast<uint16_t>(code.Size()));
    out.WriteStream(code);
    return out.Size() - before;
}

size_t ActionWith::Read(SwfInput& payload) {
    declaredBlockSize_ = payload.ReadU16();
    block.clear();
    return 2;
}

}  // namespace quillet
