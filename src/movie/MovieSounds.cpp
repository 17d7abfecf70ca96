#include "movie/MovieSounds.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>

#include "io/DiskCache.h"
#include "media/Mp3Encoder.h"
#include "media/SoundImport.h"
#include "model/Slide.h"
#include "model/SlideShow.h"
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

void PutU16(std::vector<uint8_t>& out, uint16_t v) {
    out.push_back(static_cast<uint8_t>(v));
    out.push_back(static_cast<uint8_t>(v >> 8));
}

}  // namespace

MovieSounds::MovieSounds(SwfWriter& writer, uint32_t& nextCharacterId, ProgressSink* progress)
    : writer_(writer), nextCharacterId_(nextCharacterId), progress_(progress) {}

MovieSounds::~MovieSounds() {
    if (listener_ >= 0) writer_.RemoveFrameListener(listener_);
}

const MovieSounds::Encoded* MovieSounds::Encode(const SoundClip& clip, int32_t rate, bool stereo) {
    const Key key{clip.src, clip.startTime, clip.playEntireSound ? 0u : clip.duration, clip.playEntireSound,
                  rate, clip.bitRate, stereo};
    auto found = encodedSounds_.find(key);
    if (found != encodedSounds_.end()) return found->second.get();
    std::unique_ptr<Encoded>& slot = encodedSounds_[key];
    if (cancelled_) return nullptr;

    // Cached as u32 sample count (little-endian) and the MP3 data. The
    // library file is part of the key: another LAME may make other bytes.
    CacheKey cacheKey;
    bool keyed = false;
    if (cache_) {
        KeyHasher hasher;
        hasher.Add("mp3 sound 1");
        const char* library = std::getenv("QUILLET_LAME_LIBRARY");
        hasher.Add(library ? library : "");
        for (int64_t n : {int64_t{clip.startTime}, int64_t{clip.playEntireSound ? 0 : clip.duration},
                          int64_t{clip.playEntireSound}, int64_t{rate}, int64_t{clip.bitRate}, int64_t{stereo}})
            hasher.AddNumber(n);
        keyed = hasher.AddFile(clip.src);
        cacheKey = hasher.Key();
        std::vector<uint8_t> bytes;
        if (keyed && cache_->Get(cacheKey, bytes) && bytes.size() > 4) {
            slot = std::make_unique<Encoded>();
            slot->sampleCount = bytes[0] | bytes[1] << 8 | bytes[2] << 16 | static_cast<uint32_t>(bytes[3]) << 24;
            slot->mp3.assign(bytes.begin() + 4, bytes.end());
            slot->frames = SplitMp3Frames(slot->mp3);
            ++fromCache_;
            return slot.get();
        }
    }

    SoundImportRequest request;
    request.path = clip.src;
    request.startMs = clip.startTime;
    request.durationMs = clip.duration;
    request.playEntireSound = clip.playEntireSound;
    request.channels = stereo ? 2 : 1;
    SoundImportResult pcm = ImportSound(request, progress_);
    if (!pcm.ok) {
        if (pcm.cancelled) cancelled_ = true;
        else warnings_.push_back(pcm.error + "; the show is written without it");
        return nullptr;
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
        return nullptr;
    }
    ++encoded_;
    slot = std::make_unique<Encoded>();
    slot->mp3 = std::move(format.mp3);
    slot->frames = SplitMp3Frames(slot->mp3);
    slot->sampleCount = static_cast<uint32_t>(mp3.samplesIn * static_cast<uint64_t>(rate) / pcm.pcm.sampleRate);
    if (keyed) {
        std::vector<uint8_t> bytes;
        bytes.reserve(slot->mp3.size() + 4);
        for (int shift = 0; shift < 32; shift += 8) bytes.push_back(static_cast<uint8_t>(slot->sampleCount >> shift));
        bytes.insert(bytes.end(), slot->mp3.begin(), slot->mp3.end());
        cache_->Put(cacheKey, bytes);
    }
    return slot.get();
}

uint16_t MovieSounds::Define(const SoundClip& clip) {
    Encoded* sound = const_cast<Encoded*>(Encode(clip, MovieRate(clip.sampleRate), clip.stereo));
    if (!sound) return 0;
    if (sound->characterId) return sound->characterId;
    sound->characterId = static_cast<uint16_t>(++nextCharacterId_);
    auto tag = std::make_unique<DefineSoundTag>(sound->characterId);
    tag->format = SwfSoundFormat::Mp3;
    tag->rate = SwfSoundRateCode(static_cast<uint32_t>(MovieRate(clip.sampleRate)));
    tag->is16Bit = true;
    tag->stereo = clip.stereo;
    tag->sampleCount = sound->sampleCount;
    // The character takes the bytes (a long sound's MP3 is the largest thing
    // an export holds); a stream use of the same sound at the same format
    // would encode it again (rare: the same file as an event and a sync sound).
    tag->data = std::move(sound->mp3);
    tag->data.insert(tag->data.begin(), 2, 0);  // seek samples
    sound->mp3 = {};
    sound->frames.clear();
    writer_.AddTag(std::move(tag));
    return sound->characterId;
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

void MovieSounds::StartShow(const SlideShow& show) {
    for (const auto& slide : show.slides()) {
        const SoundClip* clip = FirstClip(slide->sound);
        if (clip && clip->sync) {
            hasStream_ = true;
            streamRate_ = MovieRate(clip->sampleRate);
            streamStereo_ = clip->stereo;
            break;
        }
    }
    if (hasStream_) {
        auto head = std::make_unique<SoundStreamHeadTag>();
        head->playbackRate = head->streamRate = SwfSoundRateCode(static_cast<uint32_t>(streamRate_));
        head->playbackStereo = head->streamStereo = streamStereo_;
        head->streamFormat = SwfSoundFormat::Mp3;
        head->samplesPerBlock = static_cast<uint16_t>(std::lround(streamRate_ / writer_.FrameRate()));
        writer_.AddTag(std::move(head));
        listener_ = writer_.AddFrameListener([this](uint16_t index) { OnFrame(index); });
    }
    const SoundClip* clip = FirstClip(show.sound);
    if (!clip) return;
    background_ = Define(*clip);
    if (background_) Start(background_, clip->loop);
}

uint32_t MovieSounds::MaxCharacters(const SlideShow& show) {
    uint32_t count = FirstClip(show.sound) ? 1 : 0;
    for (const auto& slide : show.slides())
        if (const SoundClip* clip = FirstClip(slide->sound); clip && !clip->sync) ++count;
    return count;
}

void MovieSounds::StopSlideSound() {
    if (slideSound_) Stop(slideSound_);
    slideSound_ = 0;
    stream_ = nullptr;
}

void MovieSounds::StartSlide(const SlideSound& sound) {
    const SoundClip* clip = FirstClip(sound);
    if (clip || !slideSoundGoesOn_) StopSlideSound();
    if (!clip) return;
    slideSoundGoesOn_ = sound.playUntilNextSound;
    if (clip->sync && hasStream_) {
        stream_ = Encode(*clip, streamRate_, streamStereo_);
        if (stream_ && stream_->frames.empty()) stream_ = nullptr;
        streamLoop_ = clip->loop;
        streamStartFrame_ = writer_.TotalFrames();
        streamNext_ = 0;
        streamSent_ = 0;
        return;
    }
    slideSound_ = Define(*clip);
    if (slideSound_) Start(slideSound_, clip->loop);
}

void MovieSounds::OnFrame(uint16_t index) {
    if (!stream_ || index < streamStartFrame_) return;
    // Samples due by the start and the end of this movie frame.
    const double perFrame = streamRate_ / static_cast<double>(writer_.FrameRate());
    const uint64_t frameNo = static_cast<uint64_t>(index - streamStartFrame_);
    const auto startDue = static_cast<uint64_t>(frameNo * perFrame);
    const auto endDue = static_cast<uint64_t>((frameNo + 1) * perFrame);
    const uint64_t sentBefore = streamSent_;
    std::vector<uint8_t> block;
    PutU16(block, 0);
    PutU16(block, 0);
    uint32_t samples = 0;
    const auto& frames = stream_->frames;
    while (streamSent_ < endDue) {
        if (streamNext_ == frames.size()) {
            if (!streamLoop_) break;
            streamNext_ = 0;
        }
        const Mp3Frame& f = frames[streamNext_++];
        block.insert(block.end(), stream_->mp3.begin() + static_cast<std::ptrdiff_t>(f.offset),
                     stream_->mp3.begin() + static_cast<std::ptrdiff_t>(f.offset + f.length));
        samples += f.samples;
        streamSent_ += f.samples;
    }
    if (samples == 0) {
        if (streamNext_ == frames.size() && !streamLoop_) stream_ = nullptr;
        return;
    }
    // Where the movie frame's sound starts in this block's data; when earlier
    // blocks ran ahead it starts in an earlier block and nothing is skipped.
    const auto seek = static_cast<int16_t>(startDue > sentBefore ? std::min<uint64_t>(startDue - sentBefore, 32767) : 0);
    block[0] = static_cast<uint8_t>(samples);
    block[1] = static_cast<uint8_t>(samples >> 8);
    block[2] = static_cast<uint8_t>(static_cast<uint16_t>(seek));
    block[3] = static_cast<uint8_t>(static_cast<uint16_t>(seek) >> 8);
    writer_.AddTag(std::make_unique<SoundStreamBlockTag>(std::move(block)));
}

void MovieSounds::EndShow() {
    StopSlideSound();
    if (background_) Stop(background_);
    background_ = 0;
}

}  // namespace quillet
