// A slide's picture as the movie stores it: the body of its bitmap
// character without the id (JPEG data, premultiplied colours, the packed and
// compressed lossless pixels). Made from the plain pixels of a prepared
// picture on the worker that prepared it, kept in the disk cache as it is,
// and given its id when the slide is written.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "media/SlideImage.h"

namespace quillet {

struct PreparedPicture;
class SwfTag;

struct BitmapCharacter {
    bool ok = false;          // false: the slide gets no picture (see error)
    bool cancelled = false;   // preparation stopped on the user's request
    std::string error;
    ImageType type = ImageType::Jpeg;
    uint32_t width = 0, height = 0;           // the slide's displayed size
    int naturalWidth = 0, naturalHeight = 0;  // the picture file's own size

    uint16_t code = 0;  // the character's tag code; 0 for none ("jpeg_external")
    std::vector<uint8_t> jpeg;       // DefineBitsJPEG2, DefineBitsJPEG3
    std::vector<uint8_t> alphaZlib;  // DefineBitsJPEG3
    uint8_t format = 0;              // DefineBitsLossless(2): 3, 4 or 5
    uint16_t colorTableSize = 0;     // format 3
    std::vector<uint8_t> zlibData;   // DefineBitsLossless(2): colour table and pixels

    // Memory held by the data.
    size_t ByteSize() const { return jpeg.size() + alphaZlib.size() + zlibData.size() + sizeof(*this); }
};

// Premultiplies, packs and compresses what the character needs; the
// picture's pixels are consumed.
BitmapCharacter EncodeBitmapCharacter(PreparedPicture&& picture);
// The character with its id (the data are moved out); null for none.
std::unique_ptr<SwfTag> MakeBitmapTag(BitmapCharacter& character, uint16_t id);

// The character as cache bytes and back (false on anything malformed).
std::vector<uint8_t> SerializeCharacter(const BitmapCharacter& character);
bool DeserializeCharacter(const std::vector<uint8_t>& bytes, BitmapCharacter& character);

// Lossless pixels as the lossless characters store them: 8 bits with a
// palette (exact up to 256 colours, else median cut), 15 bits, or 24 bits
// (as X,R,G,B); with alpha, colours premultiplied. Rows are padded to four
// bytes; the colour table and the pixels form one zlib stream. `alpha`
// (width x height) may be null. False for a bad size or depth.
struct LosslessPixels {
    uint8_t format = 5;
    uint16_t colorTableSize = 0;
    std::vector<uint8_t> zlibData;
};
bool PackLossless(uint32_t width, uint32_t height, const uint8_t* rgb, int channels, const uint8_t* alpha,
                  int bitsPerPixel, bool withAlpha, LosslessPixels& out);

// The placeholder clip of the n-th "jpeg_external" slide: "jpegtarget_%d".
std::string ExternalJpegTargetName(int counter);

}  // namespace quillet
