// PNG data held in memory (pictures carried inside the program, such as the
// logo), decoded with libpng into a 24-bit or 32-bit bitmap.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "media/Bitmap.h"

namespace quillet {

class PngBitmap : public Bitmap {
public:
    PngBitmap() = default;
    ~PngBitmap() override;

    // Decodes the PNG; RGB gives a 24-bit bitmap, anything with transparency
    // a 32-bit one whose alpha is also copied into alphaPlane(). False for a
    // missing signature or any decoding error (the bitmap is then empty).
    bool Decode(const uint8_t* data, size_t size);

    const uint8_t* alphaPlane() const { return alpha_.get(); }
    void Free() override;

private:
    std::unique_ptr<uint8_t[]> alpha_;
};

}  // namespace quillet
