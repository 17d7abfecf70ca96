// BinHex 4.0: a Mac file (name, Finder type, creator and flags, data and
// resource forks) as 7-bit text. Header, forks and their CRCs are run-length
// encoded (0x90 escapes), then written six bits a character in lines of 64
// between colons, after the customary comment line.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace quillet {

struct MacFile {
    std::string name;  // at most 63 bytes are recorded
    char type[4] = {'A', 'P', 'P', 'L'};
    char creator[4] = {'?', '?', '?', '?'};
    uint16_t flags = 0;
    std::string_view dataFork, resourceFork;
};

// CRC-16 with polynomial 0x1021, starting from zero (the fork checksums).
uint16_t BinHexCrc(std::string_view bytes, uint16_t crc = 0);

std::string EncodeBinHex(const MacFile& file);

}  // namespace quillet
