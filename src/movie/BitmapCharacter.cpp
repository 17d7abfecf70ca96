#include "movie/BitmapCharacter.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <unordered_map>

#include "media/JpegEncoder.h"
#include "media/SlidePicture.h"
#include "swf/tags/JpegTags.h"
#include "swf/tags/LosslessTags.h"

namespace quillet {

namespace {

constexpr uint8_t ColorMapped8 = SwfLosslessBase::ColorMapped8;
constexpr uint8_t Rgb15 = SwfLosslessBase::Rgb15;
constexpr uint8_t Rgb24 = SwfLosslessBase::Rgb24;

uint32_t RowBytes(uint8_t format, uint32_t width) {
    switch (format) {
    case ColorMapped8: return (width + 3) & ~3u;
    case Rgb15: return (width * 2 + 3) & ~3u;
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

bool PackLossless(uint32_t w, uint32_t h, const uint8_t* pixels, int channels, const uint8_t* alpha, int bitsPerPixel,
                  bool withAlpha, LosslessPixels& out) {
    if (w == 0 || h == 0 || w > 0xFFFF || h > 0xFFFF || !pixels || (channels != 3 && channels != 4)) return false;
    uint8_t& format = out.format;
    uint16_t& colorTableSize = out.colorTableSize;
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
    out.zlibData = ZlibCompress(raw.data(), raw.size());
    return !out.zlibData.empty();
}

namespace {

bool NeedsAlpha(ImageType t) {
    return t == ImageType::JpegTransparent || t == ImageType::Rgb8Transparent || t == ImageType::Rgb24Transparent;
}

BitmapCharacter Failed(BitmapCharacter c, std::string why) {
    c.ok = false;
    c.error = std::move(why);
    return c;
}

class ByteWriter {
public:
    void U8(uint8_t v) { bytes.push_back(v); }
    void U32(uint32_t v) {
        for (int i = 0; i < 4; ++i) bytes.push_back(static_cast<uint8_t>(v >> (8 * i)));
    }
    void Blob(const std::vector<uint8_t>& b) {
        U32(static_cast<uint32_t>(b.size()));
        bytes.insert(bytes.end(), b.begin(), b.end());
    }
    std::vector<uint8_t> bytes;
};

class ByteReader {
public:
    explicit ByteReader(const std::vector<uint8_t>& b) : bytes_(b) {}
    uint8_t U8() {
        if (pos_ >= bytes_.size()) {
            bad_ = true;
            return 0;
        }
        return bytes_[pos_++];
    }
    uint32_t U32() {
        uint32_t v = 0;
        for (int i = 0; i < 4; ++i) v |= static_cast<uint32_t>(U8()) << (8 * i);
        return v;
    }
    std::vector<uint8_t> Blob() {
        const uint32_t n = U32();
        if (bad_ || n > bytes_.size() - pos_) {
            bad_ = true;
            return {};
        }
        std::vector<uint8_t> b(bytes_.begin() + static_cast<long>(pos_), bytes_.begin() + static_cast<long>(pos_ + n));
        pos_ += n;
        return b;
    }
    bool Good() const { return !bad_ && pos_ == bytes_.size(); }

private:
    const std::vector<uint8_t>& bytes_;
    size_t pos_ = 0;
    bool bad_ = false;
};

}  // namespace

BitmapCharacter EncodeBitmapCharacter(PreparedPicture&& p) {
    BitmapCharacter c;
    c.type = p.type;
    c.width = p.width;
    c.height = p.height;
    c.naturalWidth = p.naturalWidth;
    c.naturalHeight = p.naturalHeight;
    c.cancelled = p.cancelled;
    c.error = p.error;
    if (!p.ok) return c;
    if (NeedsAlpha(p.type) && (p.alpha.empty() || p.alpha.byteSize() != size_t(p.width) * p.height))
        return Failed(std::move(c), "the picture's alpha channel is missing");
    switch (p.type) {
        case ImageType::JpegExternal:
            break;
        case ImageType::Jpeg:
        case ImageType::JpegImportData:
            c.code = SwfTagCode::DefineBitsJPEG2;
            c.jpeg = std::move(p.jpeg);
            break;
        case ImageType::JpegTransparent: {
            // The players take the colours of a JPEG with alpha as already
            // multiplied by their alpha (and clamp them to it).
            uint8_t* rgb = p.pixels.pixels();
            const uint8_t* a = p.alpha.pixels();
            for (size_t i = 0, n = p.alpha.byteSize(); i < n; ++i)
                for (size_t k = 0; k < 3; ++k) rgb[i * 3 + k] = static_cast<uint8_t>((rgb[i * 3 + k] * a[i] + 127) / 255);
            c.code = SwfTagCode::DefineBitsJPEG3;
            c.jpeg = EncodeJpeg(rgb, p.width, p.height, 3, p.quality);
            if (c.jpeg.empty()) return Failed(std::move(c), "JPEG compression failed");
            c.alphaZlib = ZlibCompress(a, p.alpha.byteSize());
            break;
        }
        default: {
            const bool alpha = NeedsAlpha(p.type);
            const int bits = p.type == ImageType::Rgb8 || p.type == ImageType::Rgb8Transparent ? 8
                             : p.type == ImageType::Rgb15                                        ? 15
                                                                                                 : 24;
            LosslessPixels packed;
            if (!PackLossless(p.width, p.height, p.pixels.pixels(), 3, alpha ? p.alpha.pixels() : nullptr, bits, alpha,
                              packed))
                return Failed(std::move(c), "the lossless bitmap cannot be built");
            c.code = alpha ? SwfTagCode::DefineBitsLossless2 : SwfTagCode::DefineBitsLossless;
            c.format = packed.format;
            c.colorTableSize = packed.colorTableSize;
            c.zlibData = std::move(packed.zlibData);
            break;
        }
    }
    p.pixels.Free();
    p.alpha.Free();
    c.ok = true;
    return c;
}

std::unique_ptr<SwfTag> MakeBitmapTag(BitmapCharacter& c, uint16_t id) {
    if (!c.ok) return nullptr;
    std::unique_ptr<SwfLosslessBase> lossless;
    switch (c.code) {
        case SwfTagCode::DefineBitsJPEG2:
            return std::make_unique<DefineBitsJPEG2Tag>(id, std::move(c.jpeg));
        case SwfTagCode::DefineBitsJPEG3:
            return std::make_unique<DefineBitsJPEG3Tag>(id, std::move(c.jpeg), std::move(c.alphaZlib));
        case SwfTagCode::DefineBitsLossless: lossless = std::make_unique<DefineBitsLosslessTag>(); break;
        case SwfTagCode::DefineBitsLossless2: lossless = std::make_unique<DefineBitsLossless2Tag>(); break;
        default: return nullptr;
    }
    lossless->SetId(id);
    lossless->format = c.format;
    lossless->width = static_cast<uint16_t>(c.width);
    lossless->height = static_cast<uint16_t>(c.height);
    lossless->colorTableSize = c.colorTableSize;
    lossless->zlibData = std::move(c.zlibData);
    return lossless;
}

std::vector<uint8_t> SerializeCharacter(const BitmapCharacter& c) {
    ByteWriter w;
    w.U8(static_cast<uint8_t>(c.type));
    w.U32(c.width);
    w.U32(c.height);
    w.U32(static_cast<uint32_t>(c.naturalWidth));
    w.U32(static_cast<uint32_t>(c.naturalHeight));
    w.U32(c.code);
    w.U8(c.format);
    w.U32(c.colorTableSize);
    w.Blob(c.jpeg);
    w.Blob(c.alphaZlib);
    w.Blob(c.zlibData);
    return std::move(w.bytes);
}

bool DeserializeCharacter(const std::vector<uint8_t>& bytes, BitmapCharacter& c) {
    ByteReader r(bytes);
    const uint8_t type = r.U8();
    if (type > 8) return false;
    c.type = static_cast<ImageType>(type);
    c.width = r.U32();
    c.height = r.U32();
    c.naturalWidth = static_cast<int>(r.U32());
    c.naturalHeight = static_cast<int>(r.U32());
    c.code = static_cast<uint16_t>(r.U32());
    c.format = r.U8();
    c.colorTableSize = static_cast<uint16_t>(r.U32());
    c.jpeg = r.Blob();
    c.alphaZlib = r.Blob();
    c.zlibData = r.Blob();
    c.ok = r.Good() && c.width <= 0xFFFF && c.height <= 0xFFFF;
    return c.ok;
}

std::string ExternalJpegTargetName(int counter) {
    char name[32];
    std::snprintf(name, sizeof name, "jpegtarget_%d", counter);
    return name;
}

}  // namespace quillet
