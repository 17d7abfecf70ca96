#include "media/ImageImporter.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <filesystem>

#include "io/ReadFile.h"
#include "media/JpegReader.h"
#include "media/MagickReader.h"

namespace quillet {

namespace {

// Pictures are refused before any decoding when they exceed these: far
// beyond any camera, and below ImageMagick's usual policy (128 megapixels,
// 16384 pixels a side), which would refuse them with a less clear message.
constexpr uint64_t kMaxPixels = 100ull * 1000 * 1000;
constexpr uint32_t kMaxSide = 16384;       // formats decoded whole (not JPEG)
constexpr uint32_t kMaxJpegSide = 65500;   // JPEG's own limit
// A picture file larger than this is not read at all.
constexpr uint64_t kMaxFileBytes = 256ull * 1024 * 1024;

std::string lowerExtension(const std::string& name) {
    std::string ext = std::filesystem::path(name).extension().string();
    if (!ext.empty() && ext[0] == '.') ext.erase(0, 1);
    for (char& c : ext) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return ext;
}

// Nearest-neighbour index map: destination index i samples the pixel under
// its centre in the picture's own coordinates, sourceStart + (i + 1/2) *
// sourceLength / destLength, found in a copy of the picture `fullLength`
// long that was decoded `outLength` long; clamped to that copy.
std::vector<uint32_t> sampleMap(uint32_t destLength, int sourceStart, int sourceLength, uint32_t fullLength,
                                uint32_t outLength) {
    std::vector<uint32_t> map(destLength);
    const int64_t d2 = 2 * static_cast<int64_t>(destLength);
    for (uint32_t i = 0; i < destLength; ++i) {
        const int64_t twiceFull = sourceStart * d2 + static_cast<int64_t>(2 * i + 1) * sourceLength;  // / d2
        int64_t s = twiceFull * outLength / (d2 * static_cast<int64_t>(fullLength));
        if (twiceFull < 0) s = 0;
        if (s >= static_cast<int64_t>(outLength)) s = outLength - 1;
        map[i] = static_cast<uint32_t>(s);
    }
    return map;
}

std::vector<uint32_t> sampleMap(uint32_t destLength, int sourceStart, int sourceLength, uint32_t limit) {
    return sampleMap(destLength, sourceStart, sourceLength, limit, limit);
}

void sampleRow(const uint8_t* in, uint32_t inChannels, uint8_t* out, uint32_t outChannels,
               const std::vector<uint32_t>& xmap) {
    if (inChannels == 3 && outChannels == 3) {
        for (uint32_t sx : xmap) {
            const uint8_t* p = in + sx * 3;
            out[0] = p[0];
            out[1] = p[1];
            out[2] = p[2];
            out += 3;
        }
    } else if (inChannels == 4 && outChannels == 4) {
        for (uint32_t sx : xmap) {
            std::memcpy(out, in + sx * 4, 4);
            out += 4;
        }
    } else {
        for (uint32_t sx : xmap) {
            const uint8_t* p = in + sx * inChannels;
            out[0] = p[0];
            out[1] = p[1];
            out[2] = p[2];
            if (outChannels == 4) out[3] = inChannels == 4 ? p[3] : 255;
            out += outChannels;
        }
    }
}

}  // namespace

ImageImporter::ImageImporter() = default;
ImageImporter::~ImageImporter() = default;

bool ImageImporter::Open(const std::string& path) {
    std::error_code ec;
    if (!std::filesystem::is_regular_file(path, ec)) {
        failure_ = std::filesystem::exists(path, ec) ? Failure::Unreadable : Failure::NotFound;
        error_ = failure_ == Failure::NotFound ? "the file was not found" : "not a regular file";
        return false;
    }
    std::vector<uint8_t> bytes;
    if (!ReadFileLimited(path, kMaxFileBytes, bytes, &error_)) {
        failure_ = error_.find("too large") != std::string::npos ? Failure::NotAnImage : Failure::Unreadable;
        return false;
    }
    return OpenBytes(std::move(bytes), path);
}

bool ImageImporter::OpenBytes(std::vector<uint8_t> bytes, const std::string& nameForType) {
    bytes_ = std::move(bytes);
    extension_ = lowerExtension(nameForType);
    if (extension_.empty() && nameForType.find('.') == std::string::npos) extension_ = lowerExtension("x." + nameForType);
    decoded_.reset();
    jpeg_ = false;
    width_ = height_ = 0;
    failure_ = Failure::None;
    error_.clear();
    if (bytes_.empty()) {
        failure_ = Failure::NotAnImage;
        error_ = "the file is empty";
        return false;
    }
    if (looksLikeJpeg(bytes_.data(), bytes_.size())) {
        JpegReader reader;
        if (reader.Open(bytes_.data(), bytes_.size())) {
            jpeg_ = true;
            width_ = reader.width();
            height_ = reader.height();
            decodeBytes_ = reader.DecodeBytes();
        }
    }
    auto within = [this](uint32_t w, uint32_t h) {
        const uint32_t maxSide = jpeg_ ? kMaxJpegSide : kMaxSide;
        return static_cast<uint64_t>(w) * h <= kMaxPixels && w <= maxSide && h <= maxSide;
    };
    auto refuse = [this](uint32_t w, uint32_t h) {
        failure_ = Failure::NotAnImage;
        error_ = "the picture is too large (" + std::to_string(w) + "x" + std::to_string(h) + " pixels; the limit is " +
                 std::to_string(kMaxPixels / 1000000) + " megapixels and " +
                 std::to_string(jpeg_ ? kMaxJpegSide : kMaxSide) + " pixels a side)";
        width_ = height_ = 0;
        return false;
    };
    if (!jpeg_) {
        MagickReader reader(bytes_.data(), bytes_.size(), extension_);
        // A size the header declares is checked before ImageMagick sees the file.
        uint32_t w = 0, h = 0;
        if (reader.HeaderSize(w, h) && !within(w, h)) return refuse(w, h);
        if (!reader.Ping(width_, height_, error_)) {
            failure_ = Failure::NotAnImage;
            if (error_.empty()) error_ = "not a picture";
            return false;
        }
        // ImageMagick's 16-bit pixel cache, then our 8-bit copy of it.
        decodeBytes_ = static_cast<size_t>(width_) * height_ * (8 + 4);
    }
    if (!within(width_, height_)) return refuse(width_, height_);
    return true;
}

bool ImageImporter::GetNaturalSize(int& width, int& height) const {
    if (width_ == 0 || height_ == 0) return false;
    width = static_cast<int>(width_);
    height = static_cast<int>(height_);
    return true;
}

bool ImageImporter::hasAlpha() const { return decoded_ && decoded_->bitsPerPixel() == 32; }

bool ImageImporter::decodeAll() {
    if (decoded_) return true;
    if (width_ == 0) return false;
    auto bitmap = std::make_unique<Bitmap>();
    MagickReader reader(bytes_.data(), bytes_.size(), extension_);
    if (!reader.Decode(*bitmap, error_)) {
        failure_ = Failure::NotAnImage;
        return false;
    }
    // The frame decoded may differ from the one measured (a GIF whose first
    // frame is smaller than its screen): the pixels decide.
    width_ = bitmap->width();
    height_ = bitmap->height();
    decoded_ = std::move(bitmap);
    return true;
}

bool ImageImporter::Render(Bitmap& out, uint32_t destWidth, uint32_t destHeight, const CropRect* source,
                           uint16_t bitsPerPixel) {
    if (width_ == 0 || destWidth == 0 || destHeight == 0) return false;
    if (bitsPerPixel != 24 && bitsPerPixel != 32) return false;
    const CropRect src = source ? *source : CropRect{0, 0, static_cast<int>(width_), static_cast<int>(height_)};
    if (src.width() <= 0 || src.height() <= 0) return false;
    if (jpeg_) return renderJpeg(out, destWidth, destHeight, src, bitsPerPixel);
    if (!decodeAll()) return false;
    const auto xmap = sampleMap(destWidth, src.left, src.width(), width_);
    const auto ymap = sampleMap(destHeight, src.top, src.height(), height_);
    out.Create(destWidth, destHeight, bitsPerPixel);
    const uint32_t inChannels = decoded_->channels();
    const uint32_t outChannels = bitsPerPixel >> 3;
    for (uint32_t y = 0; y < destHeight; ++y) {
        // Consecutive destination rows from the same source row are copies.
        if (y > 0 && ymap[y] == ymap[y - 1]) {
            std::memcpy(out.row(y), out.row(y - 1), out.rowBytes());
            continue;
        }
        sampleRow(decoded_->row(ymap[y]), inChannels, out.row(y), outChannels, xmap);
    }
    return true;
}

bool ImageImporter::renderJpeg(Bitmap& out, uint32_t dw, uint32_t dh, const CropRect& src, uint16_t bpp) {
    JpegReader reader;
    if (!reader.Open(bytes_.data(), bytes_.size())) {
        failure_ = Failure::NotAnImage;
        error_ = "the JPEG data cannot be decoded";
        return false;
    }
    // Decoded at the least M/8 scale that still covers the destination.
    reader.ScaleFor(dw, dh, static_cast<uint32_t>(src.width()), static_cast<uint32_t>(src.height()));
    const auto xmap = sampleMap(dw, src.left, src.width(), width_, reader.outputWidth());
    const auto ymap = sampleMap(dh, src.top, src.height(), height_, reader.outputHeight());
    out.Create(dw, dh, bpp);
    const uint32_t outChannels = bpp >> 3;
    uint32_t next = 0;
    const bool ok = reader.ReadRows([&](uint32_t y, const uint8_t* rgb) {
        while (next < dh && ymap[next] == y) {
            if (next > 0 && ymap[next - 1] == y)
                std::memcpy(out.row(next), out.row(next - 1), out.rowBytes());
            else
                sampleRow(rgb, 3, out.row(next), outChannels, xmap);
            ++next;
        }
        return next < dh;
    });
    if (!ok || next < dh) {
        out.Free();
        failure_ = Failure::NotAnImage;
        error_ = reader.error().empty() ? "the JPEG data cannot be decoded" : "the picture cannot be decoded: " + reader.error();
        return false;
    }
    return true;
}

bool ImageImporter::RenderAlpha(Bitmap& out, const CropRect* source) {
    if (width_ == 0) return false;
    const CropRect src = source ? *source : CropRect{0, 0, static_cast<int>(width_), static_cast<int>(height_)};
    if (src.width() <= 0 || src.height() <= 0) return false;
    const uint32_t w = static_cast<uint32_t>(src.width());
    const uint32_t h = static_cast<uint32_t>(src.height());
    if (!jpeg_ && !decodeAll()) return false;
    out.Create(w, h, 8);
    if (!hasAlpha()) {
        std::memset(out.pixels(), 255, out.byteSize());
        return true;
    }
    const auto xmap = sampleMap(w, src.left, src.width(), width_);
    const auto ymap = sampleMap(h, src.top, src.height(), height_);
    for (uint32_t y = 0; y < h; ++y) {
        const uint8_t* in = decoded_->row(ymap[y]);
        uint8_t* o = out.row(y);
        for (uint32_t x = 0; x < w; ++x) o[x] = in[xmap[x] * 4 + 3];
    }
    return true;
}

const std::vector<FileFilterEntry>& ImageFileFilter() {
    static const std::vector<FileFilterEntry> filter = {
        {"All Images", "*.bmp;*.gif;*.jpg;*.pct;*.png;*.psd;*.tif;*.tga"},
        {"Bitmap (*.bmp)", "*.bmp"},
        {"GIF (*.gif)", "*.gif"},
        {"JPEG (*.jpg)", "*.jpg"},
        {"PICT (*.pict)", "*.pct"},
        {"PNG (*.png)", "*.png"},
        {"Photoshop (*psd)", "*.psd"},
        {"TIFF (*.tiff)", "*.tif"},
        {"Targa (*.tga)", "*.tga"},
        {"All Files (*.*)", "*.*"},
    };
    return filter;
}

bool hasImageExtension(const std::string& path) {
    const std::string ext = lowerExtension(path);
    static const char* const known[] = {"bmp", "gif", "jpg", "pct", "png", "psd", "tif", "tga"};
    for (const char* k : known)
        if (ext == k) return true;
    return false;
}

}  // namespace quillet
