// Direct libjpeg decoding of JPEG files held in memory, row by row, so a
// photo can be scaled down while it is read without holding all its pixels.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>

namespace quillet {

class JpegReader {
public:
    JpegReader();
    ~JpegReader();
    JpegReader(const JpegReader&) = delete;
    JpegReader& operator=(const JpegReader&) = delete;

    // Reads the header. False when the data is not a JPEG this path decodes
    // (CMYK and YCCK pictures are left to the general decoder).
    bool Open(const uint8_t* data, size_t size);
    uint32_t width() const { return width_; }
    uint32_t height() const { return height_; }

    // Decodes rows top to bottom as R,G,B and hands each to `row` with its
    // index; `row` returns false to stop early (the rest is not decoded).
    // False when the data turns out to be damaged beyond reading.
    bool ReadRows(const std::function<bool(uint32_t y, const uint8_t* rgb)>& row);

private:
    struct State;
    std::unique_ptr<State> state_;
    uint32_t width_ = 0, height_ = 0;
};

// True when the bytes start like a JPEG file.
bool looksLikeJpeg(const uint8_t* data, size_t size);

}  // namespace quillet
