// Fuzz target for picture import: any bytes must open or be refused, and a
// picture that opens must render at a small size (24 and 32 bits) and give
// its alpha plane, or fail cleanly. Never a crash or an out-of-bounds access.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include <Magick++.h>

#include "media/Bitmap.h"
#include "media/ImageImporter.h"

namespace {

// Pictures above this are refused here, not by the importer (which takes up
// to 400 megapixels): decoding one costs seconds and hundreds of megabytes,
// which would only hide real faults behind timeouts.
constexpr uint64_t kMaxFuzzPixels = 2048ull * 2048;

bool HasSignature(const uint8_t* d, size_t n, const char* sig, size_t len) {
    return n >= len && std::memcmp(d, sig, len) == 0;
}

// The formats that ImageMagick recognises by their first bytes. Anything else
// goes in with the two extension hints the importer knows (PICT, Targa), so
// ImageMagick is never asked to guess among all its coders.
bool HasKnownSignature(const uint8_t* d, size_t n) {
    return HasSignature(d, n, "\xFF\xD8\xFF", 3) || HasSignature(d, n, "\x89PNG", 4) ||
           HasSignature(d, n, "GIF8", 4) || HasSignature(d, n, "BM", 2) || HasSignature(d, n, "II*\0", 4) ||
           HasSignature(d, n, "MM\0*", 4) || HasSignature(d, n, "8BPS", 4);
}

void ImportOne(const uint8_t* data, size_t size, const std::string& name) {
    quillet::ImageImporter importer;
    if (!importer.OpenBytes(std::vector<uint8_t>(data, data + size), name)) {
        if (importer.error().empty()) std::abort();  // a refusal always says why
        return;
    }
    int width = 0, height = 0;
    if (!importer.GetNaturalSize(width, height) || width <= 0 || height <= 0) std::abort();
    if (static_cast<uint64_t>(width) * static_cast<uint64_t>(height) > kMaxFuzzPixels) return;

    quillet::Bitmap out;
    if (importer.Render(out, 64, 48, nullptr, 24)) {
        if (out.width() != 64 || out.height() != 48 || out.bitsPerPixel() != 24) std::abort();
    }
    // A crop (left, top, right, bottom) reaching past the picture repeats its edge.
    const quillet::CropRect beyond{-3, -2, width + 5, height / 2 + 1};
    if (importer.Render(out, 17, 5, &beyond, 32)) {
        if (out.width() != 17 || out.height() != 5 || out.bitsPerPixel() != 32) std::abort();
    }
    const quillet::CropRect corner{0, 0, width < 40 ? width : 40, height < 30 ? height : 30};
    if (importer.RenderAlpha(out, &corner)) {
        if (out.width() != static_cast<uint32_t>(corner.width()) || out.bitsPerPixel() != 8) std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    // Bounded decoding: no disk pixel cache, one thread, modest memory.
    Magick::InitializeMagick(nullptr);
    Magick::ResourceLimits::memory(256ull << 20);
    Magick::ResourceLimits::map(256ull << 20);
    Magick::ResourceLimits::disk(0);
    Magick::ResourceLimits::area(kMaxFuzzPixels * 4);
    Magick::ResourceLimits::width(16384);
    Magick::ResourceLimits::height(16384);
    Magick::ResourceLimits::thread(1);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (HasKnownSignature(data, size)) {
        ImportOne(data, size, "fuzz");
    } else {
        ImportOne(data, size, "fuzz.pct");
        ImportOne(data, size, "fuzz.tga");
    }
    return 0;
}
