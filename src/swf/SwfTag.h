// The tag base class. Every tag of the movie format that we write or read is
// a small subclass (swf/tags/), which knows its code, writes its header and
// body into a SwfStream, reads its body back, and moves the character ids it
// defines or refers to.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "swf/SwfInput.h"
#include "swf/SwfStream.h"

namespace quillet {

struct SwfTagCode {
    enum : uint16_t {
        End = 0, ShowFrame = 1, DefineShape = 2, FreeCharacter = 3, PlaceObject = 4, RemoveObject = 5,
        DefineBits = 6, DefineButton = 7, JPEGTables = 8, SetBackgroundColor = 9, DefineFont = 10,
        DefineText = 11, DoAction = 12, DefineFontInfo = 13, DefineSound = 14, StartSound = 15,
        DefineButtonSound = 17, SoundStreamHead = 18, SoundStreamBlock = 19, DefineBitsLossless = 20,
        DefineBitsJPEG2 = 21, DefineShape2 = 22, DefineButtonCxform = 23, Protect = 24, PlaceObject2 = 26,
        RemoveObject2 = 28, DefineShape3 = 32, DefineText2 = 33, DefineButton2 = 34, DefineBitsJPEG3 = 35,
        DefineBitsLossless2 = 36, DefineEditText = 37, DefineSprite = 39, FrameLabel = 43,
        SoundStreamHead2 = 45, DefineMorphShape = 46, DefineFont2 = 48, ExportAssets = 56, ImportAssets = 57,
        EnableDebugger = 58, DoInitAction = 59, DefineVideoStream = 60, VideoFrame = 61, DefineFontInfo2 = 62,
        EnableDebugger2 = 64, ScriptLimits = 65, SetTabIndex = 66, FileAttributes = 69, PlaceObject3 = 70,
        ImportAssets2 = 71, DefineFontAlignZones = 73, CSMTextSettings = 74, DefineFont3 = 75,
        SymbolClass = 76, Metadata = 77, DefineScalingGrid = 78, DoABC = 82, DefineShape4 = 83,
        DefineMorphShape2 = 84, DefineSceneAndFrameLabelData = 86, DefineBinaryData = 87,
        DefineFontName = 88, StartSound2 = 89, DefineBitsJPEG4 = 90, DefineFont4 = 91,
    };
};
// The published name of a tag code ("DefineShape"), or "Unknown".
const char* SwfTagName(uint16_t code);

class SwfTag {
public:
    virtual ~SwfTag() = default;

    // Parses the tag body; `body` holds exactly the body bytes. Returns the
    // bytes consumed; failures are recorded in the reader.
    virtual size_t Read(SwfInput& body);
    // Appends header and body; returns the bytes appended. The body is
    // assembled in a stream of its own first, then spliced in behind the header.
    virtual size_t Write(SwfStream& out);
    // Hook run by the writer before a tag is serialised; empty for most tags.
    virtual void Prepare() {}
    virtual uint16_t Code() const = 0;
    // Adds a signed delta to every character id the tag defines or refers to.
    virtual void OffsetIds(int16_t delta) {}

    // Tags that define a character (and the sound tags, whose id names the
    // sound) carry an id; GetId/SetId are meaningful only for them.
    virtual bool HasId() const { return false; }
    uint16_t GetId() const { return id_; }
    void SetId(uint16_t id) { id_ = id; }

    // Short header (code << 6 | length) below 63 bytes unless forceLong; else
    // code << 6 | 63 followed by the u32 length.
    void WriteHeader(SwfStream& out, uint32_t bodyLength, bool forceLong) const;

protected:
    // The body alone. Tags override this (and ReadBody) rather than Write/Read.
    virtual void WriteBody(SwfStream& body) const {}
    virtual void ReadBody(SwfInput& body) {}
    // DoAction, DoInitAction and the lossless bitmaps always take the long header.
    virtual bool ForceLongHeader() const { return false; }

    static uint16_t Offset(uint16_t id, int16_t delta) { return static_cast<uint16_t>(id + delta); }

    uint16_t id_ = 0;
};

// A tag kept as its bytes: codes we do not interpret. Written back unchanged
// (with the header form it came with).
class SwfRawTag final : public SwfTag {
public:
    explicit SwfRawTag(uint16_t code, std::vector<uint8_t> body = {}, bool longHeader = false)
        : code_(code), body_(std::move(body)), longHeader_(longHeader) {}
    uint16_t Code() const override { return code_; }
    const std::vector<uint8_t>& Body() const { return body_; }
    bool LongHeader() const { return longHeader_; }
    void SetLongHeader(bool on) { longHeader_ = on; }

protected:
    void WriteBody(SwfStream& body) const override { body.WriteBytes(body_); }
    void ReadBody(SwfInput& body) override { body_ = body.ReadRest(); }
    bool ForceLongHeader() const override { return longHeader_; }

private:
    uint16_t code_;
    std::vector<uint8_t> body_;
    bool longHeader_;
};

// A fresh, empty tag object for a code; null for codes we keep raw.
std::unique_ptr<SwfTag> CreateSwfTag(uint16_t code);

// Serialises a tag into a fresh stream of the given version and returns its bytes.
std::vector<uint8_t> SerializeTag(SwfTag& tag, uint8_t version = 4);

}  // namespace quillet
