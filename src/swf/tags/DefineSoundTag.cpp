// DefineSound: an event sound character.
#include "swf/tags/SoundTags.h"

namespace quillet {

size_t DefineSoundTag::Write(SwfStream& out) {
    const uint32_t before = out.Size();
    out.Align();
    WriteHeader(out, static_cast<uint32_t>(7 + data.size()), ForceLongHeader());
    WriteBody(out);
    return out.Size() - before;
}

void DefineSoundTag::WriteBody(SwfStream& body) const {
    body.WriteU16(id_);
    body.WriteBits(format, 4);
    body.WriteBits(rate, 2);
    body.WriteBit(is16Bit);
    body.WriteBit(stereo);
    body.WriteU32(sampleCount);
    body.WriteLarge(data);
}

void DefineSoundTag::ReadBody(SwfInput& body) {
    id_ = body.ReadU16();
    format = static_cast<uint8_t>(body.ReadBits(4));
    rate = static_cast<uint8_t>(body.ReadBits(2));
    is16Bit = body.ReadBit();
    stereo = body.ReadBit();
    sampleCount = body.ReadU32();
    data = body.ReadRest();
}

}  // namespace quillet
