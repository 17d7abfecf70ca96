#pragma once

#include <cstdint>

namespace quillet {

// Where a tag sat in the movie it was read from.
struct SwfTagLocation {
    uint16_t code = 0;
    uint64_t offset = 0;        // of the tag header (in the uncompressed movie, or in a sprite's body)
    uint32_t headerLength = 2;  // 2 or 6
    uint32_t bodyLength = 0;
};

}  // namespace quillet
