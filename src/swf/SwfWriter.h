// Writes one movie file: the header, then each tag straight through to the
// file as it is added (a whole movie never stands in memory), counting
// frames; Close() patches the length and frame count into the header.
//
//   SwfWriter w;                       // or SwfWriter(true): stage at least 640x480
//   w.Setup(width * 20, height * 20, 12.0f, 6);
//   if (!w.Open(path, true)) ...;
//   w.AddTag(std::make_unique<SetBackgroundColorTag>(SwfColor{0, 0, 0}));
//   w.AddTag(std::make_unique<ShowFrameTag>());
//   w.AddTag(std::make_unique<EndTag>());
//   w.Close();
#pragma once

#include <cstdint>
#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "io/OutputFile.h"
#include "swf/SwfRecords.h"
#include "swf/SwfTag.h"
#include "swf/tags/SetBackgroundColorTag.h"

namespace quillet {

struct SwfHeader {
    bool compressed = false;  // "CWS" when read
    float frameRate = 12.0f;
    uint16_t frameRateRaw = 0x0C00;  // the two bytes as read (8.8)
    uint16_t frameCount = 0;
    uint32_t fileLength = 0;
    SwfRect frameSize;
    uint8_t version = 4;
};

// Frame-rate bytes: [0] = fractional part * 100 (truncated), [1] = integer part.
// This decimal coding is the same as 8.8 for whole rates; 12.5 becomes 50, 12.
void FrameRateBytes(float frameRate, uint8_t out[2]);

struct SwfOffsetEntry {
    uint16_t depth = 0;    // PlaceObject2/RemoveObject2 depth
    uint64_t offset = 0;   // file offset (tag position + 3 for PlaceObject2, + 2 for RemoveObject2)
    bool isName = false;   // an entry of the second switch: the position of the instance name
};

class SwfWriter {
public:
    explicit SwfWriter(bool enforceMinimumSize = false);
    ~SwfWriter();
    SwfWriter(const SwfWriter&) = delete;
    SwfWriter& operator=(const SwfWriter&) = delete;

    // frameRect becomes 0, 0, width, height (twips).
    void Setup(int32_t widthTwips, int32_t heightTwips, float frameRate, uint8_t version);
    // Set between construction and Open.
    void SetMuted(bool muted) { muted_ = muted; }
    void KeepOffsetIndex(bool keep, bool withNames = false) { keepIndex_ = keep; indexNames_ = withNames; }

    // Starts the movie in a private file beside `path`; Close renames it
    // into place, so an existing movie there stays whole until the new one
    // is complete. Fails when the file exists and overwrite is false, when
    // path is a folder, or when its folder cannot be written (Error() says).
    bool Open(const std::string& path, bool overwrite);
    // The writer owns and destroys the tag. Returns bytes written, 0 when the
    // tag was dropped (duplicate frame label, sound while muted) or null.
    size_t AddTag(std::unique_ptr<SwfTag> tag);
    // The caller keeps the tag.
    size_t AddTag(SwfTag& tag);
    // Patches the header and puts the file in place; returns the file length
    // (0 when nothing was open). Good() is false when the file could not be
    // completed, and then the old file at the path is untouched.
    uint32_t Close();
    // Drops the movie written so far; the file at the path stays as it was.
    void Abandon();
    const std::string& Error() const { return out_.Error(); }

    // Frame listeners are told the 0-based index of each completed frame.
    // A frame event raised while listeners are being told is ignored.
    using FrameListener = std::function<void(uint16_t frameIndex)>;
    int AddFrameListener(FrameListener listener);  // returns a key for RemoveFrameListener
    void RemoveFrameListener(int key);

    uint16_t FrameCount() const { return static_cast<uint16_t>(frameCount_); }
    // Frames counted so far, past what the header's 16 bits hold (a writer
    // that was never opened counts too, for a dry run).
    uint32_t TotalFrames() const { return frameCount_; }
    float FrameRate() const { return frameRate_; }
    uint8_t Version() const { return version_; }
    bool Muted() const { return muted_; }
    // The stage as written into the header (after the minimum-size rule).
    SwfRect FrameRect() const { return frameRect_; }
    int32_t StageWidthTwips() const { return frameRect_.Width(); }
    int32_t StageHeightTwips() const { return frameRect_.Height(); }
    uint64_t BodyBytes() const { return bodyBytes_; }
    uint64_t HeaderEnd() const { return headerEnd_; }
    const std::string& Path() const { return path_; }
    bool IsOpen() const { return file_ != nullptr; }
    // The last SetBackgroundColor written, or null.
    const SetBackgroundColorTag* Background() const { return background_.get(); }
    const std::vector<SwfOffsetEntry>& OffsetIndex() const { return offsetIndex_; }
    // False once a write or the final close failed.
    bool Good() const { return good_; }

    // Told by the exporter before closing; kept for whoever needs it.
    void SetNextCharacterId(uint16_t id) { nextCharacterId_ = id; }
    uint16_t NextCharacterId() const { return nextCharacterId_; }

private:
    size_t Add(SwfTag& tag, bool keep, std::unique_ptr<SwfTag>& owned);
    void FireFrame(uint16_t index);

    OutputFile out_;
    std::FILE* file_ = nullptr;  // out_'s stream while open
    std::string path_;
    SwfRect frameRect_{0, 20, 0, 20};
    float frameRate_ = 0;
    uint8_t version_ = 4;
    uint64_t headerEnd_ = 0;
    uint32_t frameCount_ = 0;
    uint64_t bodyBytes_ = 0;
    std::vector<std::string> labels_;
    std::unique_ptr<SetBackgroundColorTag> background_;
    bool enforceMinimumSize_ = false;
    bool muted_ = false;
    bool keepIndex_ = false, indexNames_ = false;
    std::vector<SwfOffsetEntry> offsetIndex_;
    std::map<int, FrameListener> listeners_;
    int nextListenerKey_ = 1;
    bool firing_ = false;
    bool good_ = true;
    uint16_t nextCharacterId_ = 0;
};

}  // namespace quillet
