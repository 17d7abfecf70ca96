#include "settings/FontRecord.h"

namespace quillet {

namespace {

void putInt(uint8_t* p, int32_t v) {
    auto u = static_cast<uint32_t>(v);
    for (int i = 0; i < 4; ++i) p[i] = static_cast<uint8_t>(u >> (8 * i));
}

int32_t getInt(const uint8_t* p) {
    uint32_t u = 0;
    for (int i = 0; i < 4; ++i) u |= static_cast<uint32_t>(p[i]) << (8 * i);
    return static_cast<int32_t>(u);
}

int hexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

}  // namespace

std::array<uint8_t, FontRecord::kSize> FontRecord::toBytes() const {
    std::array<uint8_t, kSize> b{};
    putInt(&b[0], height);
    putInt(&b[4], width);
    putInt(&b[8], escapement);
    putInt(&b[12], orientation);
    putInt(&b[16], weight);
    b[20] = italic;
    b[21] = underline;
    b[22] = strikeOut;
    b[23] = charSet;
    b[24] = outPrecision;
    b[25] = clipPrecision;
    b[26] = quality;
    b[27] = pitchAndFamily;
    return b;
}

std::optional<FontRecord> FontRecord::fromBytes(std::string_view bytes) {
    if (bytes.size() != kSize) return std::nullopt;
    const auto* p = reinterpret_cast<const uint8_t*>(bytes.data());
    FontRecord f;
    f.height = getInt(p);
    f.width = getInt(p + 4);
    f.escapement = getInt(p + 8);
    f.orientation = getInt(p + 12);
    f.weight = getInt(p + 16);
    f.italic = p[20];
    f.underline = p[21];
    f.strikeOut = p[22];
    f.charSet = p[23];
    f.outPrecision = p[24];
    f.clipPrecision = p[25];
    f.quality = p[26];
    f.pitchAndFamily = p[27];
    return f;
}

std::string FontRecord::toHex() const {
    auto b = toBytes();
    return bytesToHex(std::string_view(reinterpret_cast<const char*>(b.data()), b.size()));
}

std::optional<FontRecord> FontRecord::fromHex(std::string_view hex) {
    auto bytes = hexToBytes(hex);
    if (!bytes) return std::nullopt;
    return fromBytes(*bytes);
}

std::string bytesToHex(std::string_view bytes) {
    static const char* digits = "0123456789abcdef";
    std::string out;
    out.reserve(bytes.size() * 2);
    for (char ch : bytes) {
        auto b = static_cast<unsigned char>(ch);
        out += digits[b >> 4];
        out += digits[b & 15];
    }
    return out;
}

std::optional<std::string> hexToBytes(std::string_view hex) {
    if (hex.size() % 2 != 0) return std::nullopt;
    std::string out;
    out.reserve(hex.size() / 2);
    for (size_t i = 0; i < hex.size(); i += 2) {
        int hi = hexDigit(hex[i]), lo = hexDigit(hex[i + 1]);
        if (hi < 0 || lo < 0) return std::nullopt;
        out += static_cast<char>(hi * 16 + lo);
    }
    return out;
}

}  // namespace quillet
