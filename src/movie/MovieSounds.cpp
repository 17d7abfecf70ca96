#include "movie/MovieSounds.h"

#include <filesystem>

#include "media/Mp3Encoder.h"
#include "media/SoundImport.h"
#include "model/SlideSound.h"
#include "swf/SwfTags.h"
#include "swf/SwfWriter.h"

namespace quillet {

namespace {

// The player's MP3 rates; anything else is taken to the nearest one below
// (at least 11025 Hz).
int32_t MovieRate(int32_t rate) {
    if (rate >= 44100) return 44100;
    if (rate >= 22050) return 22050;
    return 11025;
}

const SoundClip* FirstClip(const SlideSound& sound) {
    if (!sound.hasSound()) return nullptr;
    for (const SoundClip& clip : sound.sounds)
        if (!clip.src.empty()) return &clip;
    return nullptr;
}

}  // namespace

uint16_t MovieSounds::Define(const SoundClip& clip) {
    const int32_t rate = MovieRate(clip.sampleRate);
    const Key key{clip.src, clip.startTime, clip.playEntireSound ? 0u : clip.duration, clip.playEntireSound,
                  rate, clip.bitRate, clip.stereo};
    auto found = defined_.find(key);
    if (found != defined_.end()) return found->second;
    uint16_t& id = defined_[key];
    if (cancelled_) return id;

    SoundImportRequest request;
    request.path = clip.src;
    request.startMs = clip.startTime;
    request.durationMs = clip.duration;
    request.playEntireSound = clip.playEntireSound;
    request.channels = clip.stereo ? 2 : 1;
    SoundImportResult pcm = ImportSound(request, progress_);
    if (!pcm.ok) {
        if (pcm.cancelled) cancelled_ = true;
        else warnings_.push_back(pcm.error + "; the show is written without it");
        return id;
    }
    SoundFormat format;
    format.bitRate = clip.bitRate;
    format.inRate = static_cast<int>(pcm.pcm.sampleRate);
    format.inChannels = format.outChannels = static_cast<int>(pcm.pcm.channels);
    format.outRate = rate;
    Mp3Result mp3 = EncodeMp3(format, pcm.pcmPath, progress_);
    std::error_code ec;
    std::filesystem::remove(pcm.pcmPath, ec);
    if (!mp3.ok) {
        if (mp3.cancelled) {
            cancelled_ = true;
        } else if (mp3.error == kMp3NoLibrary || mp3.error == kMp3NoEntryPoint) {
            if (!libraryReported_) warnings_.push_back(mp3.message + "; the show is written without sound");
            libraryReported_ = true;
        } else {
            warnings_.push_back(clip.src + ": " + mp3.message + "; the show is written without it");
        }
        return id;
    }
    ++encoded_;
    id = static_cast<uint16_t>(++nextCharacterId_);
    auto tag = std::make_unique<DefineSoundTag>(id);
    tag->format = SwfSoundFormat::Mp3;
    tag->rate = SwfSoundRateCode(static_cast<uint32_t>(rate));
    tag->is16Bit = true;
    tag->stereo = format.outChannels == 2;
    tag->sampleCount = static_cast<uint32_t>(mp3.samplesIn * static_cast<uint64_t>(rate) / pcm.pcm.sampleRate);
    tag->data.reserve(format.mp3.size() + 2);
    tag->data = {0, 0};  // seek samples
    tag->data.insert(tag->data.end(), format.mp3.begin(), format.mp3.end());
    writer_.AddTag(std::move(tag));
    return id;
}

void MovieSounds::Start(uint16_t id, bool loop) {
    SwfSoundInfo info;
    if (loop) {
        info.hasLoops = true;
        info.loopCount = 65535;  // until stopped
    }
    writer_.AddTag(std::make_unique<StartSoundTag>(id, info));
}

void MovieSounds::Stop(uint16_t id) {
    SwfSoundInfo info;
    info.syncStop = true;
    writer_.AddTag(std::make_unique<StartSoundTag>(id, info));
}

void MovieSounds::StartShow(const SlideSound& background) {
    const SoundClip* clip = FirstClip(background);
    if (!clip) return;
    background_ = Define(*clip);
    if (background_) Start(background_, clip->loop);
}

void MovieSounds::StartSlide(const SlideSound& sound) {
    const SoundClip* clip = FirstClip(sound);
    if (slideSound_ && (clip || !slideSoundGoesOn_)) {
        Stop(slideSound_);
        slideSound_ = 0;
    }
    if (!clip) return;
    slideSound_ = Define(*clip);
    slideSoundGoesOn_ = sound.playUntilNextSound;
    if (slideSound_) Start(slideSound_, clip->loop);
}

void MovieSounds::EndShow() {
    if (slideSound_) Stop(slideSound_);
    if (background_ && background_ != slideSound_) Stop(background_);
    slideSound_ = background_ = 0;
}

}  // namespace quillet
