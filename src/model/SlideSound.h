// The sounds of a slide, or the background sound of the whole show, saved as
// `sound_data` (include, play_until_next_sound) holding one `sound` element
// per sound in play order.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace quillet {

class XmlNode;
class XmlWriter;

struct SoundClip {
    std::string src;               // the sound file (WAV, AIFF or MP3)
    uint32_t startTime = 0;        // milliseconds into the file where playback starts
    uint32_t duration = 0;         // milliseconds that play (unless playEntireSound)
    bool playEntireSound = true;   // play to the end regardless of duration
    bool loop = false;             // repeat
    int32_t sampleRate = 44100;    // output sample rate, Hz
    int32_t bitRate = 128;         // MP3 bit rate, kbit/s
    bool stereo = true;            // two output channels
    bool sync = false;             // synchronisation flag

    bool operator==(const SoundClip&) const = default;
};

class SlideSound {
public:
    bool include = false;             // sound switched on
    bool playUntilNextSound = false;  // keep playing into later slides until one has a sound
    std::vector<SoundClip> sounds;

    // Switched on and holding at least one sound with a file.
    bool hasSound() const;
    void reset() { *this = SlideSound(); }

    // `<sound_data include=... play_until_next_sound=...>`, one `<sound ... />`
    // line per sound, `</sound_data>`.
    void Write(XmlWriter& writer) const;
    // Replaces the contents with the element's attributes and `sound`
    // children (other children are ignored). Relative sound paths are taken
    // relative to `baseFolder` when one is given.
    void Read(const XmlNode& soundData, const std::string& baseFolder = "");

    bool operator==(const SlideSound&) const = default;
};

}  // namespace quillet
