#include "media/ImageImporter.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "media/JpegReader.h"
#include "media/MagickReader.h"

namespace quillet {

namespace {

// Pictures larger than this are refused rather than risking the memory of a
// crafted header; it is well beyond any camera.
constexpr uint64_t kMaxPixels = 400ull * 1000 * 1000;

std::string lowerExtension(const std::string& name) {
    std::string ext = std::filesystem::path(name).extension().string();
    if (!ext.empty() && ext[0] == '.') ext.erase(0, 1);
    for (char& c : ext) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return ext;
}

// Nearest-neighbour index map: destination index i samples the source pixel
// under its centre, clamped to the picture.
std::vector<uint32_t> sampleMap(uint32_t destLength, int sourceStart, int sourceLength, uint32_t limit) {
    std::vector<uint32_t> map(destLength);
    for (uint32_t i = 0; i < destLength; ++i) {
        int64_t s = sourceStart + (static_cast<int64_t>(2 * i + 1) * sourceLength) / (2 * static_cast<int64_t>(destLength));
        if (s < 0) s = 0;
        if (s >= static_cast<int64_t>(limit)) s = limit - 1;
        map[i] = static_cast<uint32_t>(s);
    }
    return map;
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
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        failure_ = Failure::Unreadable;
        error_ = "the file cannot be read";
        return false;
    }
    std::vector<uint8_t> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (in.bad()) {
        failure_ = Failure::Unreadable;
        error_ = "the file cannot be read";
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
        }
    }
    if (!jpeg_) {
        MagickReader reader(bytes_.data(), bytes_.size(), extension_);
        if (!reader.Ping(width_, height_, error_)) {
            failure_ = Failure::NotAnImage;
            if (error_.empty()) error_ = "not a picture";
            return false;
        }
    }
    if (static_cast<uint64_t>(width_) * height_ > kMaxPixels) {
        failure_ = Failure::NotAnImage;
        error_ = "the picture is too large (" + std::to_string(width_) + "x" + std::to_string(height_) + ")";
        return false;
    }
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
    const auto xmap = sampleMap(dw, src.left, src.width(), width_);
    const auto ymap = sampleMap(dh, src.top, src.height(), height_);
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
        error_ = "the JPEG data cannot be decoded";
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
