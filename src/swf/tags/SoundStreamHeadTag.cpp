// SoundStreamHead and SoundStreamHead2: the stream sound format of a timeline.
#include "swf/tags/SoundTags.h"

namespace quillet {

void SwfSoundStreamHeadBase::WriteBody(SwfStream& body) const {
    body.WriteBits(0, 4);
    body.WriteBits(playbackRate, 2);
    body.WriteBit(playback16Bit);
    body.WriteBit(playbackStereo);
    body.WriteBits(streamFormat, 4);
    body.WriteBits(streamRate, 2);
    body.WriteBit(stream16Bit);
    body.WriteBit(streamStereo);
    body.WriteU16(samplesPerBlock);
    if (streamFormat == SwfSoundFormat::Mp3) body.WriteS16(latencySeek);
}

void SwfSoundStreamHeadBase::ReadBody(SwfInput& body) {
    body.ReadBits(4);
    playbackRate = static_cast<uint8_t>(body.ReadBits(2));
    playback16Bit = body.ReadBit();
    playbackStereo = body.ReadBit();
    streamFormat = static_cast<uint8_t>(body.ReadBits(4));
    streamRate = static_cast<uint8_t>(body.ReadBits(2));
    stream16Bit = body.ReadBit();
    streamStereo = body.ReadBit();
    samplesPerBlock = body.ReadU16();
    latencySeek = 0;
    // Some writers leave the latency out; take it only when it is there.
    if (streamFormat == SwfSoundFormat::Mp3 && body.ok() && body.Remaining() >= 2) latencySeek = body.ReadS16();
}

}  // namespace quillet
