// Direct libjpeg decoding of JPEG files held in memory, row by row, so a
// photo can be scaled down while it is read without holding all its pixels.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

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
    // Progressive files make the decoder hold every coefficient of the
    // picture (about 3 bytes a pixel) whatever the output size.
    bool progressive() const { return progressive_; }
    // Working memory of a decode: the coefficient buffer of a progressive
    // file, else a few rows.
    size_t DecodeBytes() const { return decodeBytes_; }

    // Decodes at M/8 of the full size (the DCT does the scaling almost for
    // free), with the least M that still gives `needWidth` x `needHeight`
    // pixels across the part `partWidth` x `partHeight` of the picture that
    // will be shown. Call before ReadRows; rows are then of outputWidth().
    void ScaleFor(uint32_t needWidth, uint32_t needHeight, uint32_t partWidth, uint32_t partHeight);
    uint32_t outputWidth() const { return outputWidth_; }
    uint32_t outputHeight() const { return outputHeight_; }
    int scaleEighths() const { return scale_; }

    // Decodes rows top to bottom as R,G,B and hands each to `row` with its
    // index; `row` returns false to stop early (the rest is not decoded).
    // False when the data turns out to be damaged beyond reading.
    bool ReadRows(const std::function<bool(uint32_t y, const uint8_t* rgb)>& row);

    // Why decoding failed, in libjpeg's words (empty when it did not).
    const std::string& error() const;

    struct State;

private:
    std::unique_ptr<State> state_;
    uint32_t width_ = 0, height_ = 0;
    uint32_t outputWidth_ = 0, outputHeight_ = 0;
    int scale_ = 8;
    bool progressive_ = false;
    size_t decodeBytes_ = 0;
};

// The most working memory one decode may take; a picture that needs more
// (a huge progressive file) is refused instead of exhausting the machine.
constexpr long kJpegMemoryLimit = 400L * 1024 * 1024;

// True when the bytes start like a JPEG file.
bool looksLikeJpeg(const uint8_t* data, size_t size);

}  // namespace quillet
