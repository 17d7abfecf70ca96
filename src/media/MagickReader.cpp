#include "media/MagickReader.h"

#include <cstring>
#include <cstdlib>
#include <mutex>

#include <Magick++.h>

#include "io/TempFolder.h"

namespace quillet {

namespace {

// Only the coders of the formats we import may read; ImageMagick's other
// coders (and its delegates to outside programs) stay shut.
const char kPolicy[] =
    "<policymap>"
    "<policy domain=\"delegate\" rights=\"none\" pattern=\"*\"/>"
    "<policy domain=\"coder\" rights=\"none\" pattern=\"*\"/>"
    "<policy domain=\"coder\" rights=\"read\" pattern=\"{BMP,GIF,JPEG,PICT,PNG,PSD,TIFF,TGA}\"/>"
    "</policymap>";

void initialiseMagick() {
    static std::once_flag once;
    std::call_once(once, [] {
        // Its temporary files go into our private folder, removed at exit.
        std::string temp = PrivateTempFolder();
        if (!temp.empty()) ::setenv("MAGICK_TEMPORARY_PATH", temp.c_str(), 1);
        Magick::InitializeMagick(nullptr);
        MagickCore::ExceptionInfo* exception = MagickCore::AcquireExceptionInfo();
        MagickCore::SetMagickSecurityPolicy(kPolicy, exception);
        MagickCore::DestroyExceptionInfo(exception);
        // Our own limits, whatever the distribution's policy says; pictures
        // are prepared on several threads at once, so each decode gets one.
        Magick::ResourceLimits::memory(256ull << 20);
        Magick::ResourceLimits::map(512ull << 20);
        Magick::ResourceLimits::disk(1ull << 30);
        Magick::ResourceLimits::area(128ull * 1000 * 1000);
        Magick::ResourceLimits::width(16384);
        Magick::ResourceLimits::height(16384);
        Magick::ResourceLimits::thread(1);
    });
}

void prepare(Magick::Image& image, const char* format) {
    image.quiet(true);
    image.subImage(0);
    image.subRange(1);
    image.magick(format);
}

}  // namespace

MagickReader::MagickReader(const uint8_t* data, size_t size, std::string extension)
    : data_(data), size_(size), extension_(std::move(extension)) {}

const char* MagickReader::Format() const {
    auto starts = [&](const char* sig, size_t len) { return size_ >= len && std::memcmp(data_, sig, len) == 0; };
    if (starts("\xFF\xD8\xFF", 3)) return "JPEG";
    if (starts("\x89PNG\r\n\x1A\n", 8)) return "PNG";
    if (starts("GIF87a", 6) || starts("GIF89a", 6)) return "GIF";
    if (starts("BM", 2)) return "BMP";
    if (starts("II*\0", 4) || starts("MM\0*", 4)) return "TIFF";
    if (starts("8BPS", 4)) return "PSD";
    // PICT and Targa carry no signature: the file's extension decides.
    const std::string& e = extension_;
    if (e == "pct" || e == "pict" || e == "pic") return "PICT";
    if (e == "tga" || e == "targa" || e == "vda" || e == "icb" || e == "vst") return "TGA";
    return nullptr;
}

bool MagickReader::HeaderSize(uint32_t& width, uint32_t& height) const {
    const uint8_t* d = data_;
    auto be32 = [&](size_t at) { return uint32_t(d[at]) << 24 | uint32_t(d[at + 1]) << 16 | uint32_t(d[at + 2]) << 8 | d[at + 3]; };
    auto le32 = [&](size_t at) { return uint32_t(d[at + 3]) << 24 | uint32_t(d[at + 2]) << 16 | uint32_t(d[at + 1]) << 8 | d[at]; };
    auto le16 = [&](size_t at) { return uint32_t(d[at + 1]) << 8 | d[at]; };
    const char* format = Format();
    if (!format) return false;
    const std::string f = format;
    if (f == "PNG" && size_ >= 24) {
        width = be32(16);
        height = be32(20);
    } else if (f == "GIF" && size_ >= 10) {
        width = le16(6);
        height = le16(8);
    } else if (f == "BMP" && size_ >= 26 && le32(14) >= 40) {
        width = le32(18);
        const int32_t h = static_cast<int32_t>(le32(22));  // negative: rows top down
        height = h < 0 ? static_cast<uint32_t>(-static_cast<int64_t>(h)) : static_cast<uint32_t>(h);
    } else if (f == "PSD" && size_ >= 22) {
        height = be32(14);
        width = be32(18);
    } else {
        return false;
    }
    return true;
}

bool MagickReader::ChunksFit(std::string& error) const {
    if (std::strcmp(Format() ? Format() : "", "PNG") != 0) return true;
    // ImageMagick's PNG reader allocates what a chunk declares before it
    // reads it: a 300-byte file claiming a 2 GB text chunk costs 2 GB. Only
    // the image data may run past the end (a cut-off file still shows).
    size_t at = 8;
    while (at + 8 <= size_) {
        const uint32_t length = uint32_t(data_[at]) << 24 | uint32_t(data_[at + 1]) << 16 |
                                uint32_t(data_[at + 2]) << 8 | data_[at + 3];
        const bool imageData = std::memcmp(data_ + at + 4, "IDAT", 4) == 0;
        if (std::memcmp(data_ + at + 4, "IEND", 4) == 0) return true;
        if (length > 0x7FFFFFFFu || (!imageData && uint64_t(length) + 12 > size_ - at)) {
            error = "the PNG data are damaged (a chunk of " + std::to_string(length) +
                    " bytes runs past the end of the file)";
            return false;
        }
        at += size_t(length) + 12;
    }
    return true;
}

static const char* const kNotOurs = "not a picture in a format that can be imported (BMP, GIF, JPEG, PICT, PNG, PSD, TIFF, Targa)";

bool MagickReader::Ping(uint32_t& width, uint32_t& height, std::string& error) {
    initialiseMagick();
    try {
        const char* format = Format();
        if (!format) {
            error = kNotOurs;
            return false;
        }
        if (!ChunksFit(error)) return false;
        Magick::Image image;
        prepare(image, format);
        image.ping(Magick::Blob(data_, size_));
        width = static_cast<uint32_t>(image.columns());
        height = static_cast<uint32_t>(image.rows());
        if (width == 0 || height == 0) {
            error = "the picture has no pixels";
            return false;
        }
        return true;
    } catch (const std::exception& e) {
        error = e.what();
        return false;
    }
}

bool MagickReader::Decode(Bitmap& out, std::string& error) {
    initialiseMagick();
    try {
        const char* format = Format();
        if (!format) {
            error = kNotOurs;
            return false;
        }
        if (!ChunksFit(error)) return false;
        Magick::Image image;
        prepare(image, format);
        image.read(Magick::Blob(data_, size_));
        const MagickCore::ColorspaceType cs = image.colorSpace();
        if (cs != MagickCore::sRGBColorspace && cs != MagickCore::RGBColorspace &&
            cs != MagickCore::GRAYColorspace)
            image.colorSpace(MagickCore::sRGBColorspace);
        const uint32_t w = static_cast<uint32_t>(image.columns());
        const uint32_t h = static_cast<uint32_t>(image.rows());
        if (w == 0 || h == 0) {
            error = "the picture has no pixels";
            return false;
        }
        const bool alpha = image.matte();
        out.Create(w, h, alpha ? 32 : 24);
        image.write(0, 0, w, h, alpha ? "RGBA" : "RGB", Magick::CharPixel, out.pixels());
        return true;
    } catch (const std::exception& e) {
        error = e.what();
        out.Free();
        return false;
    }
}

}  // namespace quillet
