#include "publish/BinHex.h"

#include <algorithm>

namespace quillet {

namespace {

const char kAlphabet[] = "!\"#$%&'()*+,-012345689@ABCDEFGHIJKLMNPQRSTUVXYZ[`abcdefhijklmpqr";
constexpr unsigned char kRunMarker = 0x90;
constexpr size_t kLineLength = 64;

void putU16(std::string& out, uint16_t v) {
    out += static_cast<char>(v >> 8);
    out += static_cast<char>(v & 0xFF);
}

void putU32(std::string& out, uint32_t v) {
    putU16(out, static_cast<uint16_t>(v >> 16));
    putU16(out, static_cast<uint16_t>(v));
}

// Runs of four or more become byte, marker, count; the marker byte itself is
// always escaped as marker, 0 and never counted in a run.
std::string RunLengthEncode(std::string_view in) {
    std::string out;
    out.reserve(in.size() + in.size() / 16);
    size_t i = 0;
    while (i < in.size()) {
        unsigned char c = static_cast<unsigned char>(in[i]);
        if (c == kRunMarker) {
            out += static_cast<char>(kRunMarker);
            out += '\0';
            ++i;
            continue;
        }
        size_t run = 1;
        while (i + run < in.size() && run < 255 && in[i + run] == in[i]) ++run;
        if (run >= 4) {
            out += static_cast<char>(c);
            out += static_cast<char>(kRunMarker);
            out += static_cast<char>(run);
        } else {
            out.append(run, static_cast<char>(c));
        }
        i += run;
    }
    return out;
}

}  // namespace

uint16_t BinHexCrc(std::string_view bytes, uint16_t crc) {
    for (unsigned char b : bytes) {
        crc ^= static_cast<uint16_t>(b << 8);
        for (int k = 0; k < 8; ++k) crc = (crc & 0x8000) ? static_cast<uint16_t>((crc << 1) ^ 0x1021) : static_cast<uint16_t>(crc << 1);
    }
    return crc;
}

std::string EncodeBinHex(const MacFile& f) {
    std::string name = f.name.substr(0, 63);
    std::string stream;
    stream += static_cast<char>(name.size());
    stream += name;
    stream += '\0';  // version
    stream.append(f.type, 4);
    stream.append(f.creator, 4);
    putU16(stream, f.flags);
    putU32(stream, static_cast<uint32_t>(f.dataFork.size()));
    putU32(stream, static_cast<uint32_t>(f.resourceFork.size()));
    putU16(stream, BinHexCrc(stream));
    stream += f.dataFork;
    putU16(stream, BinHexCrc(f.dataFork));
    stream += f.resourceFork;
    putU16(stream, BinHexCrc(f.resourceFork));

    std::string packed = RunLengthEncode(stream);
    std::string chars;
    chars.reserve(packed.size() / 3 * 4 + 4);
    for (size_t i = 0; i < packed.size(); i += 3) {
        size_t n = std::min<size_t>(3, packed.size() - i);
        uint32_t group = 0;
        for (size_t k = 0; k < 3; ++k)
            group = (group << 8) | (k < n ? static_cast<unsigned char>(packed[i + k]) : 0u);
        // n bytes need n + 1 characters; the unused bits of the last are zero.
        for (size_t k = 0; k <= n; ++k) chars += kAlphabet[(group >> (18 - 6 * k)) & 0x3F];
    }

    std::string text = "(This file must be converted with BinHex 4.0)\n";
    std::string body = ":" + chars + ":";
    for (size_t i = 0; i < body.size(); i += kLineLength) {
        text.append(body, i, kLineLength);
        text += '\n';
    }
    return text;
}

}  // namespace quillet
