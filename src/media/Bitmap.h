// The in-memory picture every slide image passes through: rows top to
// bottom, pixels left to right, no row padding, channels R, G, B (and A).
// 8-bit bitmaps hold one plane (alpha planes).
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace quillet {

class Bitmap {
public:
    Bitmap() = default;
    virtual ~Bitmap() = default;
    Bitmap(const Bitmap&) = delete;
    Bitmap& operator=(const Bitmap&) = delete;
    Bitmap(Bitmap&&) = default;
    Bitmap& operator=(Bitmap&&) = default;

    // Drops the pixel array; the dimensions stay as they were.
    virtual void Free();

    // Sets the dimensions and allocates byteSize bytes, uninitialised.
    bool Create(uint32_t width, uint32_t height, uint16_t bitsPerPixel);
    // ... and copies byteSize bytes from data.
    bool Create(uint32_t width, uint32_t height, uint16_t bitsPerPixel, const uint8_t* data);
    // ... adopting data (which must hold byteSize bytes) as the pixel array.
    bool Create(uint32_t width, uint32_t height, uint16_t bitsPerPixel, std::unique_ptr<uint8_t[]> data);

    // Resamples to the new size with a triangle filter; nothing happens
    // without pixels or when the size is unchanged.
    void Resize(uint32_t newWidth, uint32_t newHeight);
    void FlipVertical();
    void FlipHorizontal();
    // 90/-270 clockwise, 270/-90 counter-clockwise, 180/-180 half turn, 0
    // nothing. Any other angle (or a depth other than 24/32 bits) leaves an
    // unfilled buffer of the same size.
    void Rotate(int degrees);
    // Takes the other bitmap's dimensions and a copy of its pixels.
    void CopyFrom(const Bitmap& other);

    uint32_t width() const { return width_; }
    uint32_t height() const { return height_; }
    uint16_t bitsPerPixel() const { return bitsPerPixel_; }
    uint32_t channels() const { return bitsPerPixel_ >> 3; }
    size_t byteSize() const { return byteSize_; }
    size_t rowBytes() const { return static_cast<size_t>(width_) * channels(); }
    uint8_t* pixels() { return pixels_.get(); }
    const uint8_t* pixels() const { return pixels_.get(); }
    uint8_t* row(uint32_t y) { return pixels_.get() + y * rowBytes(); }
    const uint8_t* row(uint32_t y) const { return pixels_.get() + y * rowBytes(); }
    bool empty() const { return !pixels_; }

protected:
    void SetBuffer(std::unique_ptr<uint8_t[]> data, size_t byteSize);
    std::unique_ptr<uint8_t[]> ReleaseBuffer();

private:
    size_t byteSize_ = 0;
    uint32_t width_ = 0;
    uint32_t height_ = 0;
    uint16_t bitsPerPixel_ = 0;
    std::unique_ptr<uint8_t[]> pixels_;
};

// The triangle (linear) resampler behind Bitmap::Resize, usable on its own:
// any number of 8-bit channels per pixel. Returns null when the sizes are
// equal (the caller keeps its pixels) or any size is zero.
std::unique_ptr<uint8_t[]> Resample(const uint8_t* source, uint32_t sourceWidth, uint32_t sourceHeight,
                                    uint32_t channels, uint32_t destWidth, uint32_t destHeight);

}  // namespace quillet
