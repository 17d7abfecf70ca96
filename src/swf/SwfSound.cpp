#include "swf/SwfSound.h"

namespace quillet {

uint8_t SwfSoundRateCode(uint32_t sampleRate) {
    if (sampleRate >= 44100) return 3;
    if (sampleRate >= 22050) return 2;
    if (sampleRate >= 11025) return 1;
    return 0;
}

void SwfSoundInfo::Write(SwfStream& out) const {
    uint8_t flags = 0;
    if (syncStop) flags |= 0x20;
    if (syncNoMultiple) flags |= 0x10;
    if (hasEnvelope) flags |= 0x08;
    if (hasLoops) flags |= 0x04;
    if (hasOutPoint) flags |= 0x02;
    if (hasInPoint) flags |= 0x01;
    out.WriteU8(flags);
    if (hasInPoint) out.WriteU32(inPoint);
    if (hasOutPoint) out.WriteU32(outPoint);
    if (hasLoops) out.WriteU16(loopCount);
    if (hasEnvelope) {
        const size_t n = envelope.size() > 255 ? 255 : envelope.size();
        out.WriteU8(static_cast<uint8_t>(n));
        for (size_t i = 0; i < n; ++i) {
            out.WriteU32(envelope[i].position44);
            out.WriteU16(envelope[i].leftLevel);
            out.WriteU16(envelope[i].rightLevel);
        }
    }
}

void SwfSoundInfo::Read(SwfInput& in) {
    const uint8_t flags = in.ReadU8();
    syncStop = flags & 0x20;
    syncNoMultiple = flags & 0x10;
    hasEnvelope = flags & 0x08;
    hasLoops = flags & 0x04;
    hasOutPoint = flags & 0x02;
    hasInPoint = flags & 0x01;
    if (hasInPoint) inPoint = in.ReadU32();
    if (hasOutPoint) outPoint = in.ReadU32();
    if (hasLoops) loopCount = in.ReadU16();
    envelope.clear();
    if (hasEnvelope) {
        const uint8_t n = in.ReadU8();
        if (!in.Need(size_t(n) * 8, "sound envelope")) return;
        for (uint8_t i = 0; i < n; ++i) {
            SwfSoundEnvelopePoint p;
            p.position44 = in.ReadU32();
            p.leftLevel = in.ReadU16();
            p.rightLevel = in.ReadU16();
            envelope.push_back(p);
        }
    }
}

}  // namespace quillet
