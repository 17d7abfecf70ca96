// The sounds of a movie.
//
// A slide's sound is an event sound: its MP3 data is one DefineSound
// character, defined just before the first use, and a StartSound on the
// slide's first frame (the first frame of its transition) plays it. When
// the next slide begins, the sound is stopped (StartSound with the stop flag)
// unless it was marked to play until the next sound, in which case it goes
// on until a later slide brings a sound of its own. A looped sound repeats
// until it is stopped. Of a slide's list of sounds the first with a file is
// played.
//
// The show's background sound starts with the first slide and is stopped on
// the last frame; when it loops it repeats until then.
//
// Each source is imported and encoded once per movie for each setting that
// changes the bytes (range, rate, bit rate, channels); later uses share the
// character. A sound that cannot be read or encoded is left out with a
// warning naming the file; a missing encoder library is reported once.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <tuple>
#include <vector>

namespace quillet {

class ProgressSink;
class SlideSound;
class SwfWriter;
struct SoundClip;

class MovieSounds {
public:
    MovieSounds(SwfWriter& writer, uint32_t& nextCharacterId, ProgressSink* progress)
        : writer_(writer), nextCharacterId_(nextCharacterId), progress_(progress) {}

    // Before the show's first slide.
    void StartShow(const SlideSound& background);
    // Before each slide's frames.
    void StartSlide(const SlideSound& sound);
    // Before the last frame: stops everything still playing.
    void EndShow();

    std::vector<std::string>& Warnings() { return warnings_; }
    bool Cancelled() const { return cancelled_; }
    int SoundsEncoded() const { return encoded_; }

private:
    // The character for `clip` (0 when it cannot be used).
    uint16_t Define(const SoundClip& clip);
    void Start(uint16_t id, bool loop);
    void Stop(uint16_t id);

    using Key = std::tuple<std::string, uint32_t, uint32_t, bool, int32_t, int32_t, bool>;
    SwfWriter& writer_;
    uint32_t& nextCharacterId_;
    ProgressSink* progress_;
    std::map<Key, uint16_t> defined_;  // 0: tried and failed
    std::vector<std::string> warnings_;
    bool libraryReported_ = false;
    bool cancelled_ = false;
    int encoded_ = 0;
    uint16_t slideSound_ = 0;       // the slide sound playing
    bool slideSoundGoesOn_ = false; // it plays until the next sound
    uint16_t background_ = 0;
};

}  // namespace quillet
