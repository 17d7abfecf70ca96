#include "swf/tags/LosslessTags.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <unordered_map>

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

uint8_t Premultiply(uint8_t c, uint8_t a) { return static_cast<uint8_t>((c * a + 127) / 255); }

// One colour as the palette chooser sees it: R, G, B, A.
using Rgba = std::array<uint8_t, 4>;

uint32_t Key(const Rgba& c) { return uint32_t(c[0]) << 24 | uint32_t(c[1]) << 16 | uint32_t(c[2]) << 8 | c[3]; }

struct Bin {
    Rgba color;
    uint32_t count;
};

// Median cut over the distinct colours (weighted by their counts): split the
// box with the widest channel at its weighted median until there are `target` boxes.
std::vector<Rgba> MedianCut(std::vector<Bin> bins, size_t target, int channels) {
    struct Box {
        size_t begin, end;
    };
    std::vector<Box> boxes{{0, bins.size()}};
    auto widest = [&](const Box& b, int& channel) {
        int best = -1;
        for (int c = 0; c < channels; ++c) {
            uint8_t lo = 255, hi = 0;
            for (size_t i = b.begin; i < b.end; ++i) {
                lo = std::min(lo, bins[i].color[c]);
                hi = std::max(hi, bins[i].color[c]);
            }
            if (hi - lo > best) {
                best = hi - lo;
                channel = c;
            }
        }
        return best;
    };
    while (boxes.size() < target) {
        size_t pick = boxes.size();
        int pickRange = 0, pickChannel = 0;
        for (size_t i = 0; i < boxes.size(); ++i) {
            if (boxes[i].end - boxes[i].begin < 2) continue;
            int ch = 0;
            const int range = widest(boxes[i], ch);
            if (range > pickRange) {
                pickRange = range;
                pick = i;
                pickChannel = ch;
            }
        }
        if (pick == boxes.size()) break;
        Box b = boxes[pick];
        std::sort(bins.begin() + b.begin, bins.begin() + b.end,
                  [&](const Bin& x, const Bin& y) { return x.color[pickChannel] < y.color[pickChannel]; });
        uint64_t total = 0;
        for (size_t i = b.begin; i < b.end; ++i) total += bins[i].count;
        uint64_t acc = 0;
        size_t split = b.begin + 1;
        for (size_t i = b.begin; i < b.end - 1; ++i) {
            acc += bins[i].count;
            split = i + 1;
            if (acc * 2 >= total) break;
        }
        boxes[pick] = {b.begin, split};
        boxes.push_back({split, b.end});
    }
    std::vector<Rgba> palette;
    for (const Box& b : boxes) {
        uint64_t sum[4] = {0, 0, 0, 0}, n = 0;
        for (size_t i = b.begin; i < b.end; ++i) {
            for (int c = 0; c < 4; ++c) sum[c] += uint64_t(bins[i].color[c]) * bins[i].count;
            n += bins[i].count;
        }
        Rgba c{};
        for (int k = 0; k < 4; ++k) c[k] = static_cast<uint8_t>((sum[k] + n / 2) / std::max<uint64_t>(n, 1));
        palette.push_back(c);
    }
    return palette;
}

uint8_t Nearest(const std::vector<Rgba>& palette, const Rgba& c) {
    uint32_t best = UINT32_MAX;
    uint8_t index = 0;
    for (size_t i = 0; i < palette.size(); ++i) {
        uint32_t d = 0;
        for (int k = 0; k < 4; ++k) {
            const int diff = int(palette[i][k]) - int(c[k]);
            d += uint32_t(diff * diff);
        }
        if (d < best) {
            best = d;
            index = static_cast<uint8_t>(i);
        }
    }
    return index;
}

}  // namespace

bool SwfLosslessBase::Build(uint32_t w, uint32_t h, const uint8_t* pixels, int channels, const uint8_t* alpha,
                            int bitsPerPixel, bool withAlpha) {
    if (w == 0 || h == 0 || w > 0xFFFF || h > 0xFFFF || !pixels) return false;
    width = static_cast<uint16_t>(w);
    height = static_cast<uint16_t>(h);
    const size_t count = size_t(w) * h;
    auto colorAt = [&](size_t i) {
        Rgba c{pixels[i * channels], pixels[i * channels + 1], pixels[i * channels + 2], 255};
        if (withAlpha) {
            if (alpha) c[3] = alpha[i];
            else if (channels == 4) c[3] = pixels[i * 4 + 3];
        }
        return c;
    };
    std::vector<uint8_t> raw;
    if (bitsPerPixel == 8) {
        format = ColorMapped8;
        // Exact palette when the picture has at most 256 colours, else median cut.
        std::unordered_map<uint32_t, uint32_t> counts;
        for (size_t i = 0; i < count; ++i) ++counts[Key(colorAt(i))];
        std::vector<Rgba> palette;
        std::unordered_map<uint32_t, uint8_t> lookup;
        const bool exact = counts.size() <= 256;
        if (exact) {
            for (const auto& [key, n] : counts) {
                lookup[key] = static_cast<uint8_t>(palette.size());
                palette.push_back({uint8_t(key >> 24), uint8_t(key >> 16), uint8_t(key >> 8), uint8_t(key)});
            }
        } else {
            // Cut on colours reduced to 5 bits per channel (4 for alpha) to keep it quick.
            std::unordered_map<uint32_t, uint32_t> reduced;
            for (const auto& [key, n] : counts) reduced[key & 0xF8F8F8F0u] += n;
            std::vector<Bin> bins;
            bins.reserve(reduced.size());
            for (const auto& [key, n] : reduced)
                bins.push_back({{uint8_t((key >> 24) | 4), uint8_t((key >> 16) | 4), uint8_t((key >> 8) | 4),
                                 uint8_t(withAlpha ? (key & 0xF0) | 8 : 255)},
                                n});
            palette = MedianCut(std::move(bins), 256, withAlpha ? 4 : 3);
        }
        colorTableSize = static_cast<uint16_t>(palette.size());
        const uint32_t row = RowBytes(format, w);
        raw.reserve(palette.size() * 4 + size_t(row) * h);
        for (const Rgba& c : palette) {
            if (withAlpha) {
                raw.push_back(Premultiply(c[0], c[3]));
                raw.push_back(Premultiply(c[1], c[3]));
                raw.push_back(Premultiply(c[2], c[3]));
                raw.push_back(c[3]);
            } else {
                raw.insert(raw.end(), {c[0], c[1], c[2]});
            }
        }
        for (uint32_t y = 0; y < h; ++y) {
            for (uint32_t x = 0; x < w; ++x) {
                const Rgba c = colorAt(size_t(y) * w + x);
                // Without an exact palette, colours that reduce alike share their nearest entry.
                const uint32_t key = exact ? Key(c) : Key(c) & 0xF8F8F8F0u;
                auto it = lookup.find(key);
                if (it == lookup.end()) it = lookup.emplace(key, Nearest(palette, c)).first;
                raw.push_back(it->second);
            }
            raw.resize(raw.size() + (row - w), 0);
        }
    } else if (bitsPerPixel == 15 && !withAlpha) {
        format = Rgb15;
        colorTableSize = 0;
        const uint32_t row = RowBytes(format, w);
        raw.reserve(size_t(row) * h);
        for (uint32_t y = 0; y < h; ++y) {
            for (uint32_t x = 0; x < w; ++x) {
                const Rgba c = colorAt(size_t(y) * w + x);
                const uint16_t v = static_cast<uint16_t>((c[0] >> 3) << 10 | (c[1] >> 3) << 5 | (c[2] >> 3));
                raw.push_back(static_cast<uint8_t>(v >> 8));  // big-endian pixels
                raw.push_back(static_cast<uint8_t>(v));
            }
            raw.resize(raw.size() + (row - w * 2), 0);
        }
    } else if (bitsPerPixel == 24 || bitsPerPixel == 32) {
        format = Rgb24;
        colorTableSize = 0;
        raw.reserve(count * 4);
        for (size_t i = 0; i < count; ++i) {
            const Rgba c = colorAt(i);
            if (withAlpha) {
                raw.insert(raw.end(), {c[3], Premultiply(c[0], c[3]), Premultiply(c[1], c[3]), Premultiply(c[2], c[3])});
            } else {
                raw.insert(raw.end(), {0xFF, c[0], c[1], c[2]});
            }
        }
    } else {
        return false;
    }
    zlibData = ZlibCompress(raw.data(), raw.size());
    return !zlibData.empty();
}

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
    body.WriteBytes(zlibData);
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

std::unique_ptr<DefineBitsLosslessTag> DefineBitsLosslessTag::FromRgb(uint16_t id, uint32_t w, uint32_t h,
                                                                      const uint8_t* pixels, int bitsPerPixel,
                                                                      int channels) {
    if (channels != 3 && channels != 4) return nullptr;
    auto t = std::make_unique<DefineBitsLosslessTag>();
    t->SetId(id);
    if (!t->Build(w, h, pixels, channels, nullptr, bitsPerPixel, false)) return nullptr;
    return t;
}

std::unique_ptr<DefineBitsLossless2Tag> DefineBitsLossless2Tag::FromRgba(uint16_t id, uint32_t w, uint32_t h,
                                                                         const uint8_t* rgba, int bitsPerPixel) {
    if (bitsPerPixel == 15) return nullptr;
    auto t = std::make_unique<DefineBitsLossless2Tag>();
    t->SetId(id);
    if (!t->Build(w, h, rgba, 4, nullptr, bitsPerPixel, true)) return nullptr;
    return t;
}

std::unique_ptr<DefineBitsLossless2Tag> DefineBitsLossless2Tag::FromRgbAndAlpha(uint16_t id, uint32_t w, uint32_t h,
                                                                                const uint8_t* rgb,
                                                                                const uint8_t* alphaPlane,
                                                                                int bitsPerPixel) {
    if (bitsPerPixel == 15 || !alphaPlane) return nullptr;
    auto t = std::make_unique<DefineBitsLossless2Tag>();
    t->SetId(id);
    if (!t->Build(w, h, rgb, 3, alphaPlane, bitsPerPixel, true)) return nullptr;
    return t;
}

}  // namespace quillet
