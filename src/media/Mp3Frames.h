// Splits MP3 data (MPEG-1, 2 or 2.5 layer III) into its frames, so that a
// stream sound can hand each movie frame the MP3 frames it plays.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace quillet {

struct Mp3Frame {
    size_t offset = 0;
    size_t length = 0;
    uint32_t samples = 0;     // per channel: 1152 (MPEG-1) or 576
    uint32_t sampleRate = 0;
    int channels = 0;
};

// The frames from the start of `data`; stops at the first byte that does not
// begin a whole frame (nothing for data that is not MP3).
std::vector<Mp3Frame> SplitMp3Frames(std::span<const uint8_t> data);

}  // namespace quillet
