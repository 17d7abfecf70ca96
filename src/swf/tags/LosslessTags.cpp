#include "swf/tags/LosslessTags.h"

#include <algorithm>
#include <cstring>

#include "swf/tags/JpegTags.h"

namespace quillet {

namespace {

constexpr size_t kMaxDecodeBytes = size_t(1) << 28;

uint32_t RowBytes(uint8_t format, uint32_t width) {
    switch (format) {
    case SwfLosslessBase::ColorMapped8: return (width + 3) & ~3u;
    case SwfLosslessBase::Rgb15: return (width * 2 + 3) & ~3u;
    default: return width * 4;
    }
}

}  // namespace

bool SwfLosslessBase::Decode(std::vector<uint8_t>& rgba, std::string* error) const {
    auto fail = [&](const char* why) {
        if (error) *error = why;
        return false;
    };
    if (format != ColorMapped8 && format != Rgb15 && format != Rgb24) return fail("unknown lossless format");
    if (format == Rgb15 && HasAlpha()) return fail("15-bit pixels cannot carry alpha");
    const bool alpha = HasAlpha();
    const size_t tableBytes = format == ColorMapped8 ? size_t(colorTableSize) * (alpha ? 4 : 3) : 0;
    const size_t expected = tableBytes + size_t(RowBytes(format, width)) * height;
    if (expected > kMaxDecodeBytes) return fail("bitmap too large to decode");
    std::vector<uint8_t> raw;
    std::string why;
    if (!ZlibExpand(zlibData.data(), zlibData.size(), expected, raw, &why)) {
        if (error) *error = why;
        return false;
    }
    if (raw.size() != expected) return fail("pixel data shorter than the bitmap");
    rgba.assign(size_t(width) * height * 4, 0);
    const uint32_t row = RowBytes(format, width);
    for (uint32_t y = 0; y < height; ++y) {
        for (uint32_t x = 0; x < width; ++x) {
            uint8_t* o = &rgba[(size_t(y) * width + x) * 4];
            if (format == ColorMapped8) {
                const uint8_t index = raw[tableBytes + size_t(y) * row + x];
                if (index >= colorTableSize) {
                    o[0] = o[1] = o[2] = 0;
                    o[3] = alpha ? 0 : 255;
                    continue;
                }
                const uint8_t* e = &raw[size_t(index) * (alpha ? 4 : 3)];
                o[0] = e[0];
                o[1] = e[1];
                o[2] = e[2];
                o[3] = alpha ? e[3] : 255;
            } else if (format == Rgb15) {
                const uint8_t* p = &raw[size_t(y) * row + x * 2];
                const uint16_t v = static_cast<uint16_t>(p[0] << 8 | p[1]);
                auto expand = [](uint16_t c5) { return static_cast<uint8_t>((c5 * 255 + 15) / 31); };
                o[0] = expand((v >> 10) & 0x1F);
                o[1] = expand((v >> 5) & 0x1F);
                o[2] = expand(v & 0x1F);
                o[3] = 255;
            } else {
                const uint8_t* p = &raw[size_t(y) * row + x * 4];
                o[0] = p[1];
                o[1] = p[2];
                o[2] = p[3];
                o[3] = alpha ? p[0] : 255;
            }
        }
    }
    return true;
}

void SwfLosslessBase::WriteBody(SwfStream& body) const {
    body.WriteU16(id_);
    body.WriteU8(format);
    body.WriteU16(width);
    body.WriteU16(height);
    if (format == ColorMapped8) body.WriteU8(static_cast<uint8_t>(std::max<uint16_t>(colorTableSize, 1) - 1));
    body.WriteLarge(zlibData);
}

void SwfLosslessBase::ReadBody(SwfInput& body) {
    id_ = body.ReadU16();
    format = body.ReadU8();
    width = body.ReadU16();
    height = body.ReadU16();
    colorTableSize = 0;
    if (format == ColorMapped8) colorTableSize = static_cast<uint16_t>(body.ReadU8() + 1);
    else if (format != Rgb15 && format != Rgb24 && body.ok()) body.Fail("unknown lossless bitmap format " + std::to_string(format));
    zlibData = body.ReadRest();
}

}  // namespace quillet
