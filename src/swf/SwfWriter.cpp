#include "swf/SwfWriter.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "swf/tags/FrameLabelTag.h"
#include "swf/tags/PlaceObject2Tag.h"
#include "swf/tags/RemoveObjectTags.h"

namespace quillet {

void FrameRateBytes(float frameRate, uint8_t out[2]) {
    const double rate = std::clamp(static_cast<double>(frameRate), 0.0, 255.99);
    const double whole = std::trunc(rate);
    out[0] = static_cast<uint8_t>(std::trunc((rate - whole) * 100.0));
    out[1] = static_cast<uint8_t>(whole);
}

SwfWriter::SwfWriter(bool enforceMinimumSize) : enforceMinimumSize_(enforceMinimumSize) {}

SwfWriter::~SwfWriter() = default;  // an unclosed movie is abandoned by out_

void SwfWriter::Setup(int32_t widthTwips, int32_t heightTwips, float frameRate, uint8_t version) {
    frameRect_ = SwfRect(0, widthTwips, 0, heightTwips);
    frameRate_ = frameRate;
    version_ = version;
}

bool SwfWriter::Open(const std::string& path, bool overwrite) {
    if (file_) return false;
    if (!out_.Open(path, overwrite)) return false;
    file_ = out_.File();
    path_ = path;
    good_ = true;

    int32_t width = frameRect_.xMax - frameRect_.xMin;
    int32_t height = frameRect_.yMax - frameRect_.yMin;
    // The minimum stage replaces both dimensions together, never one alone.
    if (enforceMinimumSize_ && (width < 12800 || height < 9600)) {
        width = 12800;
        height = 9600;
    }
    SwfHeader header;
    header.frameSize = SwfRect(frameRect_.xMin, frameRect_.xMin + width, frameRect_.yMin, frameRect_.yMin + height);
    frameRect_ = header.frameSize;
    header.frameRate = frameRate_;
    header.version = version_;
    header.fileLength = 32;  // placeholders until Close
    header.frameCount = 1;
    frameCount_ = 0;
    bodyBytes_ = 0;

    SwfStream s;
    s.WriteU8('F');
    s.WriteU8('W');
    s.WriteU8('S');
    s.WriteU8(header.version);
    s.WriteU32(header.fileLength);
    header.frameSize.Write(s);
    uint8_t rate[2];
    FrameRateBytes(header.frameRate, rate);
    s.WriteU8(rate[0]);
    s.WriteU8(rate[1]);
    s.WriteU16(header.frameCount);
    const auto& bytes = s.Bytes();
    if (std::fwrite(bytes.data(), 1, bytes.size(), file_) != bytes.size()) good_ = false;
    headerEnd_ = bytes.size();
    return true;
}

int SwfWriter::AddFrameListener(FrameListener listener) {
    const int key = nextListenerKey_++;
    listeners_.emplace(key, std::move(listener));
    return key;
}

void SwfWriter::RemoveFrameListener(int key) { listeners_.erase(key); }

void SwfWriter::FireFrame(uint16_t index) {
    if (firing_) return;  // not re-entrant
    firing_ = true;
    for (auto& [key, listener] : listeners_)
        if (listener) listener(index);
    firing_ = false;
}

size_t SwfWriter::AddTag(std::unique_ptr<SwfTag> tag) {
    if (!tag) return 0;
    SwfTag& ref = *tag;
    return Add(ref, false, tag);
}

size_t SwfWriter::AddTag(SwfTag& tag) {
    std::unique_ptr<SwfTag> none;
    return Add(tag, true, none);
}

size_t SwfWriter::Add(SwfTag& tag, bool keep, std::unique_ptr<SwfTag>& owned) {
    const uint16_t code = tag.Code();
    switch (code) {
    case SwfTagCode::ShowFrame:
        FireFrame(frameCount_);
        ++frameCount_;
        break;
    case SwfTagCode::SetBackgroundColor:
        background_ = std::make_unique<SetBackgroundColorTag>(static_cast<SetBackgroundColorTag&>(tag).color);
        break;
    case SwfTagCode::FrameLabel: {
        const std::string& label = static_cast<FrameLabelTag&>(tag).label;
        for (const auto& l : labels_)
            if (l == label) return 0;  // dropped; `owned` destroys it unless kept
        labels_.push_back(label);
        break;
    }
    case SwfTagCode::SoundStreamBlock:
    case SwfTagCode::SoundStreamHead:
    case SwfTagCode::DefineSound:
    case SwfTagCode::StartSound:
    case SwfTagCode::DefineButtonSound:
        if (muted_) return 0;
        break;
    default:
        break;
    }
    if (!file_) return 0;

    SwfStream stream;
    stream.version = version_;
    stream.muted = muted_ ? 1 : 0;
    stream.lend = true;  // a picture's or a sound's data goes from the tag to the file, uncopied
    tag.Write(stream);
    const size_t size = stream.Size();

    const long position = std::ftell(file_);
    if (keepIndex_ && position >= 0) {
        const uint64_t pos = static_cast<uint64_t>(position);
        if (code == SwfTagCode::PlaceObject2) {
            auto& place = static_cast<PlaceObject2Tag&>(tag);
            offsetIndex_.push_back({place.depth, pos + 3, false});
            if (indexNames_ && (place.name || !place.clipActions.empty())) {
                const auto& bytes = stream.Bytes();
                const uint32_t header = bytes.size() >= 2 && (bytes[0] & 0x3F) == 63 ? 6 : 2;
                const int nameOffset = place.NameOffsetInBody();
                if (nameOffset >= 0) offsetIndex_.push_back({place.depth, pos + header + nameOffset, true});
            }
        } else if (code == SwfTagCode::RemoveObject2) {
            offsetIndex_.push_back({static_cast<RemoveObject2Tag&>(tag).depth, pos + 2, false});
        }
    }

    if (!stream.ForEachRun([this](const uint8_t* p, size_t n) { return std::fwrite(p, 1, n, file_) == n; }))
        good_ = false;
    bodyBytes_ += size;
    if (!keep) owned.reset();
    return size;
}

uint32_t SwfWriter::Close() {
    labels_.clear();
    if (!file_) return 0;
    const long end = std::ftell(file_);
    const uint32_t fileLength = end > 0 ? static_cast<uint32_t>(end) : 0;
    uint8_t length[4] = {uint8_t(fileLength), uint8_t(fileLength >> 8), uint8_t(fileLength >> 16),
                         uint8_t(fileLength >> 24)};
    uint8_t frames[2] = {uint8_t(frameCount_), uint8_t(frameCount_ >> 8)};
    if (std::fseek(file_, 4, SEEK_SET) != 0 || std::fwrite(length, 1, 4, file_) != 4) good_ = false;
    if (std::fseek(file_, static_cast<long>(headerEnd_ - 2), SEEK_SET) != 0 || std::fwrite(frames, 1, 2, file_) != 2)
        good_ = false;
    std::fseek(file_, 0, SEEK_END);
    file_ = nullptr;
    if (frameCount_ > 0xFFFF)
        out_.SetFailed(path_ + " would hold " + std::to_string(frameCount_) + " frames; a movie holds at most 65535");
    if (!good_) out_.SetFailed("cannot write " + path_ + ": " + std::strerror(errno ? errno : EIO));
    if (!out_.Commit()) good_ = false;
    return fileLength;
}

void SwfWriter::Abandon() {
    labels_.clear();
    file_ = nullptr;
    out_.Abandon();
}

}  // namespace quillet
