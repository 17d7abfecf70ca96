// Fuzz target for the Exif reader: any bytes (a JPEG with an APP1 block, a
// bare Exif block, or junk) give an orientation of 0..8 without a crash or
// an out-of-bounds read.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "media/Exif.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const int orientation = quillet::ReadExifOrientation(data, size);
    if (orientation < 0 || orientation > 8) std::abort();
    return 0;
}
