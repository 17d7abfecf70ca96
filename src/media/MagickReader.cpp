#include "media/MagickReader.h"

#include <cstring>
#include <mutex>

#include <Magick++.h>

namespace quillet {

namespace {

void initialiseMagick() {
    static std::once_flag once;
    std::call_once(once, [] { Magick::InitializeMagick(nullptr); });
}

// Formats that ImageMagick recognises by their first bytes; for anything
// else the file's extension decides.
bool hasKnownSignature(const uint8_t* d, size_t n) {
    auto starts = [&](const char* sig, size_t len) { return n >= len && std::memcmp(d, sig, len) == 0; };
    return starts("\xFF\xD8\xFF", 3) || starts("\x89PNG", 4) || starts("GIF8", 4) || starts("BM", 2) ||
           starts("II*\0", 4) || starts("MM\0*", 4) || starts("8BPS", 4);
}

const char* magickForExtension(const std::string& ext) {
    if (ext == "pct" || ext == "pict" || ext == "pic") return "PICT";
    if (ext == "tga" || ext == "targa" || ext == "vda" || ext == "icb" || ext == "vst") return "TGA";
    return nullptr;
}

void prepare(Magick::Image& image, const uint8_t* data, size_t size, const std::string& ext) {
    image.quiet(true);
    image.subImage(0);
    image.subRange(1);
    if (!hasKnownSignature(data, size)) {
        if (const char* m = magickForExtension(ext)) image.magick(m);
    }
}

}  // namespace

MagickReader::MagickReader(const uint8_t* data, size_t size, std::string extension)
    : data_(data), size_(size), extension_(std::move(extension)) {}

bool MagickReader::Ping(uint32_t& width, uint32_t& height, std::string& error) {
    initialiseMagick();
    try {
        Magick::Image image;
        prepare(image, data_, size_, extension_);
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
        Magick::Image image;
        prepare(image, data_, size_, extension_);
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
