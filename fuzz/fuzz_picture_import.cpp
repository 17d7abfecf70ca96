// Fuzz target for picture import: any bytes must open or be refused with a
// reason, and a picture that opens must render at a small size (24 and 32
// bits, a crop reaching past its edges) and give its alpha plane, or fail
// cleanly. Never a crash or an out-of-bounds access.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "media/Bitmap.h"
#include "media/ImageImporter.h"

namespace {

// Pictures above this are left alone after opening (the importer takes far
// larger ones): decoding one costs seconds under the sanitizers and would
// only hide real faults behind timeouts.
constexpr uint64_t kMaxFuzzPixels = 2048ull * 2048;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    // PICT and Targa carry no signature and are told by the file name; the
    // last byte picks which, so both stay reachable (a signature wins anyway).
    const std::string name = size > 0 && (data[size - 1] & 1) ? "fuzz.pct" : "fuzz.tga";
    quillet::ImageImporter importer;
    if (!importer.OpenBytes(std::vector<uint8_t>(data, data + size), name)) {
        if (importer.error().empty()) std::abort();
        return 0;
    }
    int width = 0, height = 0;
    if (!importer.GetNaturalSize(width, height) || width <= 0 || height <= 0) std::abort();
    if (static_cast<uint64_t>(width) * static_cast<uint64_t>(height) > kMaxFuzzPixels) return 0;

    quillet::Bitmap out;
    if (importer.Render(out, 64, 48, nullptr, 24)) {
        if (out.width() != 64 || out.height() != 48 || out.bitsPerPixel() != 24) std::abort();
    }
    // Left, top, right, bottom: past the picture's edges, which repeat.
    const quillet::CropRect beyond{-3, -2, width + 5, height / 2 + 1};
    if (importer.Render(out, 17, 5, &beyond, 32)) {
        if (out.width() != 17 || out.height() != 5 || out.bitsPerPixel() != 32) std::abort();
    }
    const quillet::CropRect corner{0, 0, width < 40 ? width : 40, height < 30 ? height : 30};
    if (importer.RenderAlpha(out, &corner)) {
        if (out.width() != static_cast<uint32_t>(corner.width()) || out.bitsPerPixel() != 8) std::abort();
    }
    return 0;
}
