#include "swf/SwfButton.h"

namespace quillet {

void SwfButtonRecord::Write(SwfStream& out, bool button2) const {
    uint8_t flags = static_cast<uint8_t>((states & 0x0F) | (reservedBits & 0xC0));
    if (hasBlendMode && button2) flags |= 0x20;
    out.WriteU8(flags);
    out.WriteU16(characterId);
    out.WriteU16(depth);
    matrix.Write(out);
    out.Align();
    if (button2) {
        colorTransform.Write(out);
        out.Align();
        if (hasBlendMode) out.WriteU8(blendMode);
    }
}

void SwfButtonRecord::Read(SwfInput& in, uint8_t flags, bool button2) {
    states = flags & 0x0F;
    reservedBits = flags & 0xC0;
    hasBlendMode = button2 && (flags & 0x20);
    if (flags & 0x10) {
        in.Fail("button record with a filter list (not supported)");
        return;
    }
    characterId = in.ReadU16();
    depth = in.ReadU16();
    matrix.Read(in);
    in.Align();
    if (button2) {
        colorTransform.Read(in);
        if (hasBlendMode) blendMode = in.ReadU8();
    }
}

void WriteButtonRecords(SwfStream& out, const std::vector<SwfButtonRecord>& records, bool button2) {
    for (const auto& r : records) r.Write(out, button2);
    out.WriteU8(0);
}

void ReadButtonRecords(SwfInput& in, std::vector<SwfButtonRecord>& records, bool button2) {
    records.clear();
    while (in.ok()) {
        const uint8_t flags = in.ReadU8();
        if (flags == 0 || !in.ok()) break;
        SwfButtonRecord r;
        r.Read(in, flags, button2);
        if (in.ok()) records.push_back(r);
    }
}

}  // namespace quillet
