#include "swf/actions/ActionDefineFunction.h"

namespace quillet {

size_t ActionDefineFunction::Write(SwfStream& out) const {
    SwfStream code;
    code.version = out.version;
    body.Write(code, false);
    SwfStream payload;
    payload.WriteString(name);
    payload.WriteU16(static_cast<uint16_t>(params.size()));
    for (const auto& p : params) payload.WriteString(p);
    payload.WriteU16(static_cast<uint16_t>(code.Size()));
    const uint32_t before = out.Size();
    out.WriteU8(Code());
    out.WriteU16(static_cast<uint16_t>(payload.Size()));
    out.WriteStream(payload);
    out.WriteStream(code);
    return out.Size() - before;
}

size_t ActionDefineFunction::Read(SwfInput& payload) {
    const size_t start = payload.Position();
    name = payload.ReadString();
    const uint16_t n = payload.ReadU16();
    params.clear();
    if (!payload.Need(n, "function parameters")) return payload.Position() - start;
    for (uint16_t i = 0; i < n && payload.ok(); ++i) params.push_back(payload.ReadString());
    declaredBodySize_ = payload.ReadU16();
    body.clear();
    return payload.Position() - start;
}

size_t ActionDefineFunction2::Write(SwfStream& out) const {
    SwfStream code;
    code.version = out.version;
    body.Write(code, false);
    SwfStream payload;
    payload.WriteString(name);
    payload.WriteU16(static_cast<uint16_t>(params.size()));
    payload.WriteU8(registerCount);
    payload.WriteU16(flags);
    for (const auto& p : params) {
        payload.WriteU8(p.reg);
        payload.WriteString(p.name);
    }
    payload.WriteU16(static_cast<uint16_t>(code.Size()));
    const uint32_t before = out.Size();
    out.WriteU8(Code());
    out.WriteU16(static_cast<uint16_t>(payload.Size()));
    out.WriteStream(payload);
    out.WriteStream(code);
    return out.Size() - before;
}

size_t ActionDefineFunction2::Read(SwfInput& payload) {
    const size_t start = payload.Position();
    name = payload.ReadString();
    const uint16_t n = payload.ReadU16();
    registerCount = payload.ReadU8();
    flags = payload.ReadU16();
    params.clear();
    if (!payload.Need(size_t(n) * 2, "function parameters")) return payload.Position() - start;
    for (uint16_t i = 0; i < n && payload.ok(); ++i) {
        Param p;
        p.reg = payload.ReadU8();
        p.name = payload.ReadString();
        params.push_back(std::move(p));
    }
    declaredBodySize_ = payload.ReadU16();
    body.clear();
    return payload.Position() - start;
}

}  // namespace quillet
