// Lossless bitmap characters: DefineBitsLossless (no alpha) and
// DefineBitsLossless2 (with alpha). Formats: 3 = 8-bit colour-mapped, 4 =
// 15-bit (Lossless only), 5 = 24-bit (Lossless) / 32-bit ARGB (Lossless2).
// The colour table and the pixels are one zlib stream; rows are padded to a
// multiple of four bytes. Both always take the long tag header.
//
// Builders take pixels as rows top to bottom without padding, R,G,B or
// R,G,B,A, and do the packing, palette choice and compression:
//   auto bmp = DefineBitsLosslessTag::FromRgb(id, w, h, rgb.data(), 24);
//   auto bmpA = DefineBitsLossless2Tag::FromRgba(id, w, h, rgba.data(), 32);
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
    // Packs and compresses pixels. `alpha` may be null (opaque). Colours are
    // premultiplied by alpha when withAlpha, as the players expect.
    bool Build(uint32_t w, uint32_t h, const uint8_t* rgb, int channels, const uint8_t* alpha, int bitsPerPixel,
               bool withAlpha);
};

class DefineBitsLosslessTag final : public SwfLosslessBase {
public:
    DefineBitsLosslessTag() = default;
    uint16_t Code() const override { return SwfTagCode::DefineBitsLossless; }
    bool HasAlpha() const override { return false; }
    // bitsPerPixel 8 (palette chosen here), 15, 24 or 32 (stored as 24);
    // `channels` 3 (RGB) or 4 (RGBA, alpha ignored). Null for other depths or
    // sizes beyond 65535.
    static std::unique_ptr<DefineBitsLosslessTag> FromRgb(uint16_t id, uint32_t width, uint32_t height,
                                                          const uint8_t* pixels, int bitsPerPixel, int channels = 3);
};

class DefineBitsLossless2Tag final : public SwfLosslessBase {
public:
    DefineBitsLossless2Tag() = default;
    uint16_t Code() const override { return SwfTagCode::DefineBitsLossless2; }
    bool HasAlpha() const override { return true; }
    // R,G,B,A pixels; bitsPerPixel 8 (palette with alpha) or 24/32 (ARGB).
    static std::unique_ptr<DefineBitsLossless2Tag> FromRgba(uint16_t id, uint32_t width, uint32_t height,
                                                            const uint8_t* rgba, int bitsPerPixel);
    // R,G,B pixels plus a separate alpha plane of width x height bytes.
    static std::unique_ptr<DefineBitsLossless2Tag> FromRgbAndAlpha(uint16_t id, uint32_t width, uint32_t height,
                                                                   const uint8_t* rgb, const uint8_t* alpha,
                                                                   int bitsPerPixel);
};

}  // namespace quillet
