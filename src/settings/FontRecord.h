// The font description kept for caption and preloader defaults: the leading
// 28 bytes of the platform's logical-font record (everything but the face
// name, which is stored on its own). Stored as those 28 bytes, little-endian.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quillet {

struct FontRecord {
    static constexpr size_t kSize = 28;

    int32_t height = -13;         // negative: character height in logical units (about 10 pt)
    int32_t width = 0;            // 0: the face's own proportions
    int32_t escapement = 0;       // tenths of a degree
    int32_t orientation = 0;      // tenths of a degree
    int32_t weight = 400;         // 400 normal, 700 bold
    uint8_t italic = 0;
    uint8_t underline = 0;
    uint8_t strikeOut = 0;
    uint8_t charSet = 0;          // 0: ANSI
    uint8_t outPrecision = 0;
    uint8_t clipPrecision = 0;
    uint8_t quality = 0;
    uint8_t pitchAndFamily = 0;

    std::array<uint8_t, kSize> toBytes() const;
    // The record from exactly 28 bytes; nothing for any other length.
    static std::optional<FontRecord> fromBytes(std::string_view bytes);

    // 56 lower-case hexadecimal digits of the 28 bytes, and back.
    std::string toHex() const;
    static std::optional<FontRecord> fromHex(std::string_view hex);

    bool operator==(const FontRecord&) const = default;
};

// The face name that goes with a default font record.
inline constexpr const char* kDefaultFontFace = "Arial";

// Hexadecimal helpers shared by the settings file and the project file.
std::string bytesToHex(std::string_view bytes);
std::optional<std::string> hexToBytes(std::string_view hex);  // nothing on odd length or a bad digit

}  // namespace quillet
