// Lossless bitmap characters: DefineBitsLossless (no alpha) and
// DefineBitsLossless2 (with alpha). Formats: 3 = 8-bit colour-mapped, 4 =
// 15-bit (Lossless only), 5 = 24-bit (Lossless) / 32-bit ARGB (Lossless2).
// The colour table and the pixels are one zlib stream; rows are padded to a
// multiple of four bytes. Both always take the long tag header.
// The pixels come packed and compressed (the movie's bitmap characters pack
// them); this layer writes and reads the fields.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "swf/SwfTag.h"

namespace quillet {

class SwfLosslessBase : public SwfTag {
public:
    enum Format : uint8_t { ColorMapped8 = 3, Rgb15 = 4, Rgb24 = 5 };
    bool HasId() const override { return true; }
    void OffsetIds(int16_t delta) override { id_ = Offset(id_, delta); }
    virtual bool HasAlpha() const = 0;

    uint8_t format = Rgb24;
    uint16_t width = 0, height = 0;
    uint16_t colorTableSize = 0;  // entries (1..256), format 3 only; written as count - 1
    std::vector<uint8_t> zlibData;

    // Unpacks the pixels into R,G,B,A rows (alpha 255 without an alpha
    // channel; premultiplied colours as stored). False with a reason when the
    // data are damaged.
    bool Decode(std::vector<uint8_t>& rgba, std::string* error = nullptr) const;

protected:
    void WriteBody(SwfStream& body) const override;
    void ReadBody(SwfInput& body) override;
    bool ForceLongHeader() const override { return true; }
};

class DefineBitsLosslessTag final : public SwfLosslessBase {
public:
    DefineBitsLosslessTag() = default;
    uint16_t Code() const override { return SwfTagCode::DefineBitsLossless; }
    bool HasAlpha() const override { return false; }
};

class DefineBitsLossless2Tag final : public SwfLosslessBase {
public:
    DefineBitsLossless2Tag() = default;
    uint16_t Code() const override { return SwfTagCode::DefineBitsLossless2; }
    bool HasAlpha() const override { return true; }
};

}  // namespace quillet
