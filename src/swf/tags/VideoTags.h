// Embedded video: DefineVideoStream and its VideoFrame tags.
#pragma once

#include <vector>

#include "swf/SwfTag.h"

namespace quillet {

class DefineVideoStreamTag final : public SwfTag {
public:
    uint16_t Code() const override { return SwfTagCode::DefineVideoStream; }
    bool HasId() const override { return true; }
    void OffsetIds(int16_t delta) override { id_ = Offset(id_, delta); }
    uint16_t frameCount = 0;
    uint16_t width = 0, height = 0;
    uint8_t flags = 0;  // deblocking (bits 1-3) and smoothing (bit 0)
    uint8_t codec = 2;  // 2 Sorenson H.263, 3 screen video, 4 VP6, 5 VP6 alpha

protected:
    void WriteBody(SwfStream& body) const override;
    void ReadBody(SwfInput& body) override;
};

class VideoFrameTag final : public SwfTag {
public:
    uint16_t Code() const override { return SwfTagCode::VideoFrame; }
    void OffsetIds(int16_t delta) override { streamId = Offset(streamId, delta); }
    uint16_t streamId = 0;
    uint16_t frameNumber = 0;
    std::vector<uint8_t> data;

protected:
    void WriteBody(SwfStream& body) const override { body.WriteU16(streamId); body.WriteU16(frameNumber); body.WriteBytes(data); }
    void ReadBody(SwfInput& body) override { streamId = body.ReadU16(); frameNumber = body.ReadU16(); data = body.ReadRest(); }
};

}  // namespace quillet
