// The sounds of a movie.
//
// A slide's sound is an event sound unless it is marked `sync`: its MP3
// data is one DefineSound character, defined just before its first use, and
// a StartSound on the slide's first frame (the first frame of its
// transition) plays it. A sync sound is the movie's stream sound instead:
// the main timeline has one SoundStreamHead (written before the first slide
// when any slide has a sync sound, with the rate and channels of the first
// one; every sync sound is encoded to that format), and from the slide's
// first frame on each movie frame carries one SoundStreamBlock with the MP3
// frames that play up to its end (sample count = their samples, seek
// samples = where the movie frame starts within them). A frame that needs no
// new MP3 frame (possible at 11025 Hz and a high frame rate) has no block.
// The player keeps the stream in step with the timeline.
//
// When the next slide begins, the sound is stopped (StartSound with the stop
// flag; a stream simply gets no more blocks) unless it was marked to play
// until the next sound, in which case it goes on until a later slide brings
// a sound of its own. A looped sound repeats until it is stopped. Of a
// slide's list of sounds the first with a file is played.
//
// The show's background sound (an event sound) starts with the first slide
// and is stopped on the last frame; when it loops it repeats until then.
//
// Each source is imported and encoded once per movie for each setting that
// changes the bytes (range, rate, bit rate, channels); later uses share the
// character or the data. A sound that cannot be read or encoded is left out
// with a warning naming the file; a missing encoder library is reported once.
// With a disk cache the encoded data is kept there, keyed by the source
// file's contents and those settings, so a re-export does not encode again.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "media/Mp3Frames.h"

namespace quillet {

class DiskCache;
class ProgressSink;
class SlideShow;
class SlideSound;
class SwfWriter;
struct SoundClip;

class MovieSounds {
public:
    MovieSounds(SwfWriter& writer, uint32_t& nextCharacterId, ProgressSink* progress);
    ~MovieSounds();
    MovieSounds(const MovieSounds&) = delete;
    MovieSounds& operator=(const MovieSounds&) = delete;

    // How many characters the show's sounds can take at most (for the
    // check of the movie's 16-bit limits before anything is written).
    static uint32_t MaxCharacters(const SlideShow& show);

    void SetCache(DiskCache* cache) { cache_ = cache; }
    // Before the show's first slide: the stream head and the background sound.
    void StartShow(const SlideShow& show);
    // Before each slide's frames.
    void StartSlide(const SlideSound& sound);
    // Before the last frame: stops everything still playing.
    void EndShow();

    std::vector<std::string>& Warnings() { return warnings_; }
    bool Cancelled() const { return cancelled_; }
    int SoundsEncoded() const { return encoded_; }
    int SoundsFromCache() const { return fromCache_; }

private:
    struct Encoded {
        std::vector<uint8_t> mp3;
        std::vector<Mp3Frame> frames;
        uint32_t sampleCount = 0;  // per channel, at the output rate
        uint16_t characterId = 0;  // event sounds: the DefineSound
    };
    using Key = std::tuple<std::string, uint32_t, uint32_t, bool, int32_t, int32_t, bool>;
    // The encoded sound (null when it cannot be used), at `rate` and `stereo`.
    const Encoded* Encode(const SoundClip& clip, int32_t rate, bool stereo);
    uint16_t Define(const SoundClip& clip);
    void Start(uint16_t id, bool loop);
    void Stop(uint16_t id);
    void StopSlideSound();
    void OnFrame(uint16_t index);

    SwfWriter& writer_;
    uint32_t& nextCharacterId_;
    ProgressSink* progress_;
    int listener_ = -1;
    std::map<Key, std::unique_ptr<Encoded>> encodedSounds_;  // null: tried and failed
    std::vector<std::string> warnings_;
    bool libraryReported_ = false;
    bool cancelled_ = false;
    int encoded_ = 0;
    int fromCache_ = 0;
    DiskCache* cache_ = nullptr;
    uint16_t slideSound_ = 0;        // the slide's event sound playing
    bool slideSoundGoesOn_ = false;  // the slide's sound plays until the next sound
    uint16_t background_ = 0;

    // The stream sound.
    bool hasStream_ = false;
    int32_t streamRate_ = 44100;
    bool streamStereo_ = true;
    const Encoded* stream_ = nullptr;  // feeding blocks when set
    bool streamLoop_ = false;
    uint32_t streamStartFrame_ = 0;
    size_t streamNext_ = 0;            // the next MP3 frame
    uint64_t streamSent_ = 0;          // samples handed out
};

}  // namespace quillet
