// The SOUNDINFO record of StartSound and DefineButtonSound, and the format
// constants of the sound tags.
#pragma once

#include <cstdint>
#include <vector>

#include "swf/SwfInput.h"
#include "swf/SwfStream.h"

namespace quillet {

struct SwfSoundFormat {
    enum : uint8_t { Uncompressed = 0, Adpcm = 1, Mp3 = 2, UncompressedLittleEndian = 3, Nellymoser = 6 };
};
// Sample rate field: 0 = 5.5 kHz, 1 = 11 kHz, 2 = 22 kHz, 3 = 44 kHz.
uint8_t SwfSoundRateCode(uint32_t sampleRate);

struct SwfSoundEnvelopePoint {
    uint32_t position44 = 0;  // in 44 kHz samples
    uint16_t leftLevel = 32768, rightLevel = 32768;
    bool operator==(const SwfSoundEnvelopePoint&) const = default;
};

struct SwfSoundInfo {
    bool syncStop = false;        // stop the sound
    bool syncNoMultiple = false;  // do not start it if it is already playing
    bool hasInPoint = false, hasOutPoint = false, hasLoops = false, hasEnvelope = false;
    uint32_t inPoint = 0, outPoint = 0;
    uint16_t loopCount = 1;
    std::vector<SwfSoundEnvelopePoint> envelope;

    void Write(SwfStream& out) const;
    void Read(SwfInput& in);
    bool operator==(const SwfSoundInfo&) const = default;
};

}  // namespace quillet
