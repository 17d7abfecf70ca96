// The general picture decoder: ImageMagick's Magick++ over a file held in
// memory. Reads the first frame only and never turns it by its Exif
// orientation (the slide's own commands do that).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "media/Bitmap.h"

namespace quillet {

class MagickReader {
public:
    // `extension` (lower case, without the dot) hints formats that carry no
    // signature of their own (PICT, Targa).
    MagickReader(const uint8_t* data, size_t size, std::string extension);

    // The size of the first frame without decoding its pixels.
    bool Ping(uint32_t& width, uint32_t& height, std::string& error);
    // Decodes the first frame into a 24-bit bitmap, or a 32-bit one when the
    // picture has an alpha channel.
    bool Decode(Bitmap& out, std::string& error);

    // The ImageMagick coder for these bytes, or null when they are none of
    // the formats we import.
    const char* Format() const;
    // The size a PNG, GIF, BMP or PSD header declares, read without
    // ImageMagick (which may refuse a huge one without saying why).
    bool HeaderSize(uint32_t& width, uint32_t& height) const;
    // False (with `error`) for a PNG whose chunks other than the image data
    // declare more bytes than the file holds.
    bool ChunksFit(std::string& error) const;

private:
    const uint8_t* data_;
    size_t size_;
    std::string extension_;
};

}  // namespace quillet
