#include "swf/actions/ActionPush.h"

#include <cstring>

namespace quillet {

void ActionPush::WritePayload(SwfStream& out) const {
    for (const SwfPushValue& v : values) {
        out.WriteU8(v.type);
        switch (v.type) {
        case SwfPushValue::String: out.WriteString(v.text); break;
        case SwfPushValue::Float: out.WriteF32(v.f); break;
        case SwfPushValue::Null:
        case SwfPushValue::Undefined: break;
        case SwfPushValue::Register:
        case SwfPushValue::Boolean:
        case SwfPushValue::Constant8: out.WriteU8(static_cast<uint8_t>(v.u)); break;
        case SwfPushValue::Double: {
            // Two little-endian 32-bit halves, the high half first.
            uint64_t bits;
            std::memcpy(&bits, &v.d, 8);
            out.WriteU32(static_cast<uint32_t>(bits >> 32));
            out.WriteU32(static_cast<uint32_t>(bits));
            break;
        }
        case SwfPushValue::Integer: out.WriteS32(v.i); break;
        case SwfPushValue::Constant16: out.WriteU16(static_cast<uint16_t>(v.u)); break;
        }
    }
}

size_t ActionPush::Read(SwfInput& payload) {
    const size_t start = payload.Position();
    values.clear();
    while (payload.ok() && payload.Remaining() > 0) {
        SwfPushValue v;
        const uint8_t type = payload.ReadU8();
        v.type = static_cast<SwfPushValue::Type>(type);
        switch (type) {
        case SwfPushValue::String: v.text = payload.ReadString(); break;
        case SwfPushValue::Float: v.f = payload.ReadF32(); break;
        case SwfPushValue::Null:
        case SwfPushValue::Undefined: break;
        case SwfPushValue::Register:
        case SwfPushValue::Boolean:
        case SwfPushValue::Constant8: v.u = payload.ReadU8(); break;
        case SwfPushValue::Double: {
            const uint64_t high = payload.ReadU32();
            const uint64_t low = payload.ReadU32();
            const uint64_t bits = high << 32 | low;
            std::memcpy(&v.d, &bits, 8);
            break;
        }
        case SwfPushValue::Integer: v.i = payload.ReadS32(); break;
        case SwfPushValue::Constant16: v.u = payload.ReadU16(); break;
        default: payload.Fail("unknown push value type " + std::to_string(type)); break;
        }
        if (payload.ok()) values.push_back(std::move(v));
    }
    return payload.Position() - start;
}

}  // namespace quillet
