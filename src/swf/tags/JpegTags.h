// JPEG bitmap characters: DefineBits (shares JPEGTables), DefineBitsJPEG2
// (self-contained JPEG), DefineBitsJPEG3 (JPEG plus a zlib alpha plane), and
// the JPEGTables tag.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "swf/SwfTag.h"

namespace quillet {

// Compresses bytes with zlib at level 9 (RFC 1950 wrapper).
std::vector<uint8_t> ZlibCompress(const uint8_t* data, size_t size);
// Inflates a zlib stream, refusing to produce more than `maxOutput` bytes.
// Returns false (with a reason) on a damaged or too large stream; the reason
// is kZlibTooLarge for the latter.
inline constexpr const char* kZlibTooLarge = "compressed data expand beyond the expected size";
bool ZlibExpand(const uint8_t* data, size_t size, size_t maxOutput, std::vector<uint8_t>& out, std::string* error);

class JPEGTablesTag final : public SwfTag {
public:
    JPEGTablesTag() = default;
    explicit JPEGTablesTag(std::vector<uint8_t> tables) : data(std::move(tables)) {}
    uint16_t Code() const override { return SwfTagCode::JPEGTables; }
    std::vector<uint8_t> data;

protected:
    void WriteBody(SwfStream& body) const override { body.WriteBytes(data); }
    void ReadBody(SwfInput& body) override { data = body.ReadRest(); }
};

class DefineBitsTag final : public SwfTag {
public:
    DefineBitsTag() = default;
    DefineBitsTag(uint16_t id, std::vector<uint8_t> jpegData) : data(std::move(jpegData)) { id_ = id; }
    uint16_t Code() const override { return SwfTagCode::DefineBits; }
    bool HasId() const override { return true; }
    void OffsetIds(int16_t delta) override { id_ = Offset(id_, delta); }
    std::vector<uint8_t> data;  // JPEG without its tables

protected:
    void WriteBody(SwfStream& body) const override { body.WriteU16(id_); body.WriteLarge(data); }
    void ReadBody(SwfInput& body) override { id_ = body.ReadU16(); data = body.ReadRest(); }
};

// A complete JPEG stream (SOI ... EOI) as the bitmap.
class DefineBitsJPEG2Tag final : public SwfTag {
public:
    DefineBitsJPEG2Tag() = default;
    DefineBitsJPEG2Tag(uint16_t id, std::vector<uint8_t> jpegData) : jpeg(std::move(jpegData)) { id_ = id; }
    uint16_t Code() const override { return SwfTagCode::DefineBitsJPEG2; }
    bool HasId() const override { return true; }
    void OffsetIds(int16_t delta) override { id_ = Offset(id_, delta); }
    std::vector<uint8_t> jpeg;

protected:
    void WriteBody(SwfStream& body) const override { body.WriteU16(id_); body.WriteLarge(jpeg); }
    void ReadBody(SwfInput& body) override { id_ = body.ReadU16(); jpeg = body.ReadRest(); }
};

// JPEG colour plus one alpha byte per pixel, zlib-compressed.
class DefineBitsJPEG3Tag final : public SwfTag {
public:
    DefineBitsJPEG3Tag() = default;
    DefineBitsJPEG3Tag(uint16_t id, std::vector<uint8_t> jpegData, std::vector<uint8_t> zlibAlpha)
        : jpeg(std::move(jpegData)), alphaZlib(std::move(zlibAlpha)) { id_ = id; }
    uint16_t Code() const override { return SwfTagCode::DefineBitsJPEG3; }
    bool HasId() const override { return true; }
    void OffsetIds(int16_t delta) override { id_ = Offset(id_, delta); }
    std::vector<uint8_t> jpeg;
    std::vector<uint8_t> alphaZlib;

protected:
    void WriteBody(SwfStream& body) const override;
    void ReadBody(SwfInput& body) override;
};

}  // namespace quillet
