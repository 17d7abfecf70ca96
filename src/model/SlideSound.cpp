#include "model/SlideSound.h"

#include <algorithm>

#include "model/PathResolve.h"
#include "xml/XmlReader.h"
#include "xml/XmlWriter.h"

namespace quillet {

bool SlideSound::hasSound() const {
    return include && std::any_of(sounds.begin(), sounds.end(), [](const SoundClip& s) { return !s.src.empty(); });
}

void SlideSound::Write(XmlWriter& w) const {
    w.write("<sound_data");
    w.attribute("include", include);
    w.attribute("play_until_next_sound", playUntilNextSound);
    w.write(">\n");
    for (const SoundClip& s : sounds) {
        w.write("<sound");
        w.attribute("src", s.src);
        w.attribute("start_time", s.startTime);
        w.attribute("duration", s.duration);
        w.attribute("play_entire_sound", s.playEntireSound);
        w.attribute("loop", s.loop);
        w.attribute("sample_rate", s.sampleRate);
        w.attribute("bit_rate", s.bitRate);
        w.attribute("stereo", s.stereo);
        w.attribute("sync", s.sync);
        w.write(" />\n");
    }
    w.write("</sound_data>\n");
}

void SlideSound::Read(const XmlNode& e, const std::string& baseFolder) {
    reset();
    e.readBool("include", include);
    e.readBool("play_until_next_sound", playUntilNextSound);
    for (const XmlNode& c : e.children()) {
        if (c.name() != "sound") continue;
        SoundClip s;
        if (c.readString("src", s.src)) s.src = resolveAgainst(baseFolder, s.src);
        c.readUnsigned("start_time", s.startTime);
        c.readUnsigned("duration", s.duration);
        c.readBool("play_entire_sound", s.playEntireSound);
        c.readBool("loop", s.loop);
        c.readInt("sample_rate", s.sampleRate);
        c.readInt("bit_rate", s.bitRate);
        c.readBool("stereo", s.stereo);
        c.readBool("sync", s.sync);
        sounds.push_back(std::move(s));
    }
}

}  // namespace quillet
