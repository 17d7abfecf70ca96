#include "media/Mp3Frames.h"

namespace quillet {

std::vector<Mp3Frame> SplitMp3Frames(std::span<const uint8_t> data) {
    // Layer III bit rates in kbit/s by index: MPEG-1, then MPEG-2 and 2.5.
    static const uint16_t kRates1[16] = {0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 0};
    static const uint16_t kRates2[16] = {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160, 0};
    static const uint32_t kSampleRates[3] = {44100, 48000, 32000};
    std::vector<Mp3Frame> frames;
    size_t pos = 0;
    while (pos + 4 <= data.size()) {
        const uint8_t* h = data.data() + pos;
        if (h[0] != 0xFF || (h[1] & 0xE0) != 0xE0) break;
        const int version = (h[1] >> 3) & 3;  // 3 MPEG-1, 2 MPEG-2, 0 MPEG-2.5
        const int layer = (h[1] >> 1) & 3;    // 1: layer III
        const int rateIndex = h[2] >> 4;
        const int srIndex = (h[2] >> 2) & 3;
        if (version == 1 || layer != 1 || rateIndex == 0 || rateIndex == 15 || srIndex == 3) break;
        const bool mpeg1 = version == 3;
        const uint32_t bitRate = (mpeg1 ? kRates1 : kRates2)[rateIndex] * 1000u;
        const uint32_t sampleRate = kSampleRates[srIndex] >> (mpeg1 ? 0 : version == 2 ? 1 : 2);
        const uint32_t padding = (h[2] >> 1) & 1;
        Mp3Frame frame;
        frame.offset = pos;
        frame.samples = mpeg1 ? 1152 : 576;
        frame.length = (mpeg1 ? 144 : 72) * bitRate / sampleRate + padding;
        frame.sampleRate = sampleRate;
        frame.channels = (h[3] >> 6) == 3 ? 1 : 2;
        if (pos + frame.length > data.size()) break;
        frames.push_back(frame);
        pos += frame.length;
    }
    return frames;
}

}  // namespace quillet
