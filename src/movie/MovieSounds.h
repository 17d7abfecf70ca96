// The sounds of a movie.
//
// A list of sounds (a slide's, or the show's background list) plays one
// sound after another in its order: the first starts on the list's first
// frame (for a slide the first frame of its transition), each later one on
// the movie frame in which the one before it ends, rounded up to a whole
// frame, so the sounds of one list never overlap. A looped sound repeats
// until its list is stopped; the sounds after it in the list never come.
// The background list and a slide's list play at the same time (the player
// mixes event sounds).
//
// A sound is an event sound unless it is marked `sync` and its list holds
// the movie's stream: its MP3 data is one DefineSound character, defined
// when it is first started, and a StartSound on its frame plays it. Its seek
// samples skip the encoder's and the decoder's delay (1105 samples), so it is
// heard from its first frame and the next sound of the list follows on time.
//
// The stream: the main timeline holds one stream sound. When any slide has a
// sync sound, the slides' sync sounds are the stream; otherwise the sync
// sounds of the background list are (the music then paces the whole show:
// the player keeps the timeline in step with a stream). A sync sound of the
// other list plays as an event sound. The SoundStreamHead, in the rate and
// channels of the first sync sound of the list that holds the stream (every
// sync sound of it is encoded to that format), comes before the first slide;
// from a sync sound's frame on each movie frame carries one SoundStreamBlock
// with the MP3 frames that play up to its end (sample count = their samples,
// seek samples = where the movie frame starts within them). A frame that
// needs no new MP3 frame (possible at 11025 Hz and a high frame rate) has no
// block.
//
// When the next slide begins, the slide's sounds are stopped (StartSound with
// the stop flag; a stream simply gets no more blocks) and the rest of its list
// is dropped, unless the slide plays until the next sound: then its list goes
// on until a later slide brings sounds of its own. The background list starts
// with the first slide and is stopped on the last frame.
//
// Each source is imported and encoded once per movie for each setting that
// changes the bytes (range, rate, bit rate, channels); later uses share the
// character or the data (a sound that is both an event sound and part of the
// stream in the same format keeps its data beside the character). A sound
// that cannot be read or encoded is left out with a warning naming the file;
// a missing encoder library is reported once. With a disk cache the encoded
// data is kept there, keyed by the source file's contents and those
// settings, so a re-export does not encode again.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "media/Mp3Frames.h"
#include "model/SlideSound.h"

namespace quillet {

class DiskCache;
class ProgressSink;
class SlideShow;
class SwfWriter;

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
    // Before the last frame: stops everything still playing, except the
    // background sound of a show that loops: the loop goes back to
    // "slide_1", past the frame that started it, so it plays on through the
    // passes (a counted loop's end script stops all sounds after the last).
    void EndShow(bool showLoops);

    std::vector<std::string>& Warnings() { return warnings_; }
    bool Cancelled() const { return cancelled_; }
    int SoundsEncoded() const { return encoded_; }
    int SoundsFromCache() const { return fromCache_; }

private:
    // One encoded sound, held once: the cache entry itself (u32 sample count,
    // u32 lead samples, little-endian, then the MP3 data) until its character
    // takes the bytes over.
    static constexpr size_t kEntryHead = 8;
    struct Encoded {
        std::vector<uint8_t> entry;
        std::vector<Mp3Frame> frames;  // offsets within `entry`
        uint32_t sampleCount = 0;  // per channel, at the output rate
        uint32_t leadSamples = 0;  // decoder output before the sound begins
        uint16_t characterId = 0;  // event sounds: the DefineSound
        bool alsoStream = false;   // part of the stream too: the character copies the data
    };
    // A list of sounds playing one after another.
    struct Track {
        struct Cue {
            SoundClip clip;
            uint32_t frame = 0;
        };
        std::deque<Cue> cues;           // sounds still to start, in order
        std::vector<uint16_t> started;  // its event sounds started so far
        bool holdsStream = false;       // its sync sounds are the stream
    };
    using Key = std::tuple<std::string, uint32_t, uint32_t, bool, int32_t, int32_t, bool>;
    static Key KeyOf(const SoundClip& clip, int32_t rate, bool stereo);
    // The encoded sound (null when it cannot be used), at `rate` and `stereo`.
    Encoded* Encode(const SoundClip& clip, int32_t rate, bool stereo);
    uint16_t Define(const SoundClip& clip);
    void Start(uint16_t id, bool loop);
    void Stop(uint16_t id);
    // Encodes the list's sounds and plans the frame each one starts on.
    void Schedule(Track& track, const SlideSound& sound);
    void RunCues(Track& track, uint32_t frame);
    void StopTrack(Track& track);
    void OnFrame(uint16_t index);

    SwfWriter& writer_;
    uint32_t& nextCharacterId_;
    ProgressSink* progress_;
    int listener_ = -1;
    std::map<Key, std::unique_ptr<Encoded>> encodedSounds_;  // null: tried and failed
    std::set<Key> streamKeys_;                              // the encodings the stream uses
    std::vector<std::string> warnings_;
    bool libraryReported_ = false;
    bool cancelled_ = false;
    int encoded_ = 0;
    int fromCache_ = 0;
    DiskCache* cache_ = nullptr;
    Track slides_;
    Track background_;
    bool slideSoundGoesOn_ = false;  // the slide's list plays until the next sound

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
