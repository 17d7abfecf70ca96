// Sounds: DefineSound (an event sound character), StartSound (plays one),
// SoundStreamHead/SoundStreamHead2 (announce the stream sound of a
// timeline) and SoundStreamBlock (one frame's worth of stream data).
// A muted writer drops all of them.
#pragma once

#include <vector>

#include "swf/SwfSound.h"
#include "swf/SwfTag.h"

namespace quillet {

class DefineSoundTag final : public SwfTag {
public:
    DefineSoundTag() = default;
    explicit DefineSoundTag(uint16_t id) { id_ = id; }
    uint16_t Code() const override { return SwfTagCode::DefineSound; }
    bool HasId() const override { return true; }
    void OffsetIds(int16_t delta) override { id_ = Offset(id_, delta); }
    uint8_t format = SwfSoundFormat::Mp3;  // SwfSoundFormat
    uint8_t rate = 3;                      // 0 5.5 kHz, 1 11 kHz, 2 22 kHz, 3 44 kHz
    bool is16Bit = true;
    bool stereo = false;
    uint32_t sampleCount = 0;  // per channel
    // The sound data; for MP3 it begins with the s16 seek-sample count.
    std::vector<uint8_t> data;

    // Straight into `out`, without the body copy other tags go through: a
    // long sound's data is tens of megabytes.
    size_t Write(SwfStream& out) override;

protected:
    void WriteBody(SwfStream& body) const override;
    void ReadBody(SwfInput& body) override;
};

// Its id names the sound to play.
class StartSoundTag final : public SwfTag {
public:
    StartSoundTag() = default;
    explicit StartSoundTag(uint16_t soundId, SwfSoundInfo soundInfo = {}) : info(std::move(soundInfo)) { id_ = soundId; }
    uint16_t Code() const override { return SwfTagCode::StartSound; }
    bool HasId() const override { return true; }
    void OffsetIds(int16_t delta) override { id_ = Offset(id_, delta); }
    SwfSoundInfo info;

protected:
    void WriteBody(SwfStream& body) const override { body.WriteU16(id_); info.Write(body); }
    void ReadBody(SwfInput& body) override { id_ = body.ReadU16(); info.Read(body); }
};

class SwfSoundStreamHeadBase : public SwfTag {
public:
    uint8_t playbackRate = 3;  // rate code, as DefineSound
    bool playback16Bit = true;
    bool playbackStereo = false;
    uint8_t streamFormat = SwfSoundFormat::Mp3;
    uint8_t streamRate = 3;
    bool stream16Bit = true;
    bool streamStereo = false;
    uint16_t samplesPerBlock = 0;  // average samples per frame
    int16_t latencySeek = 0;       // MP3 only

protected:
    void WriteBody(SwfStream& body) const override;
    void ReadBody(SwfInput& body) override;
};

class SoundStreamHeadTag final : public SwfSoundStreamHeadBase {
public:
    uint16_t Code() const override { return SwfTagCode::SoundStreamHead; }
};

class SoundStreamHead2Tag final : public SwfSoundStreamHeadBase {
public:
    uint16_t Code() const override { return SwfTagCode::SoundStreamHead2; }
};

// One block of stream data; for MP3: u16 sample count, s16 seek samples, frames.
class SoundStreamBlockTag final : public SwfTag {
public:
    SoundStreamBlockTag() = default;
    explicit SoundStreamBlockTag(std::vector<uint8_t> blockData) : data(std::move(blockData)) {}
    uint16_t Code() const override { return SwfTagCode::SoundStreamBlock; }
    std::vector<uint8_t> data;

protected:
    void WriteBody(SwfStream& body) const override { body.WriteBytes(data); }
    void ReadBody(SwfInput& body) override { data = body.ReadRest(); }
};

}  // namespace quillet
