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

// The first sync sound of a list that plays (null when none).
const SoundClip* FirstSyncClip(const SlideSound& sound) {
    if (!sound.hasSound()) return nullptr;
    for (const SoundClip& clip : sound.sounds)
        if (!clip.src.empty() && clip.sync) return &clip;
    return nullptr;
}

// The MP3 frames of a cache entry, their offsets counted from its start.
std::vector<Mp3Frame> SplitFrames(const std::vector<uint8_t>& entry, size_t head) {
    std::vector<Mp3Frame> frames = SplitMp3Frames(std::span<const uint8_t>(entry).subspan(head));
    for (Mp3Frame& f : frames) f.offset += head;
    return frames;
}

uint32_t GetU32(const uint8_t* p) { return p[0] | p[1] << 8 | p[2] << 16 | static_cast<uint32_t>(p[3]) << 24; }

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

MovieSounds::Key MovieSounds::KeyOf(const SoundClip& clip, int32_t rate, bool stereo) {
    return {clip.src, clip.startTime, clip.playEntireSound ? 0u : clip.duration, clip.playEntireSound,
            rate, clip.bitRate, stereo};
}

MovieSounds::Encoded* MovieSounds::Encode(const SoundClip& clip, int32_t rate, bool stereo) {
    const Key key = KeyOf(clip, rate, stereo);
    auto found = encodedSounds_.find(key);
    if (found != encodedSounds_.end()) return found->second.get();
    std::unique_ptr<Encoded>& slot = encodedSounds_[key];
    if (cancelled_) return nullptr;

    // The library file is part of the cache key: another LAME may make other bytes.
    CacheKey cacheKey;
    bool keyed = false;
    if (cache_) {
        KeyHasher hasher;
        hasher.Add("mp3 sound 2");
        const char* library = std::getenv("QUILLET_LAME_LIBRARY");
        hasher.Add(library ? library : "");
        for (int64_t n : {int64_t{clip.startTime}, int64_t{clip.playEntireSound ? 0 : clip.duration},
                          int64_t{clip.playEntireSound}, int64_t{rate}, int64_t{clip.bitRate}, int64_t{stereo}})
            hasher.AddNumber(n);
        keyed = hasher.AddFile(clip.src);
        cacheKey = hasher.Key();
        std::vector<uint8_t> bytes;
        if (keyed && cache_->Get(cacheKey, bytes) && bytes.size() > kEntryHead) {
            slot = std::make_unique<Encoded>();
            slot->entry = std::move(bytes);
            slot->sampleCount = GetU32(slot->entry.data());
            slot->leadSamples = GetU32(slot->entry.data() + 4);
            slot->alsoStream = streamKeys_.count(key) > 0;
            slot->frames = SplitFrames(slot->entry, kEntryHead);
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
    slot->sampleCount = static_cast<uint32_t>(mp3.samplesIn * static_cast<uint64_t>(rate) / pcm.pcm.sampleRate);
    slot->leadSamples = mp3.leadSamples;
    slot->alsoStream = streamKeys_.count(key) > 0;
    // The encoder leaves room in front for the head: no copy of the data.
    slot->entry = std::move(format.mp3);
    slot->entry.insert(slot->entry.begin(), kEntryHead, 0);
    for (int shift = 0; shift < 32; shift += 8) {
        slot->entry[static_cast<size_t>(shift / 8)] = static_cast<uint8_t>(slot->sampleCount >> shift);
        slot->entry[static_cast<size_t>(4 + shift / 8)] = static_cast<uint8_t>(slot->leadSamples >> shift);
    }
    slot->frames = SplitFrames(slot->entry, kEntryHead);
    if (keyed) cache_->Put(cacheKey, slot->entry);
    return slot.get();
}

uint16_t MovieSounds::Define(const SoundClip& clip) {
    Encoded* sound = Encode(clip, MovieRate(clip.sampleRate), clip.stereo);
    if (!sound) return 0;
    if (sound->characterId) return sound->characterId;
    sound->characterId = static_cast<uint16_t>(++nextCharacterId_);
    auto tag = std::make_unique<DefineSoundTag>(sound->characterId);
    tag->format = SwfSoundFormat::Mp3;
    tag->rate = SwfSoundRateCode(static_cast<uint32_t>(MovieRate(clip.sampleRate)));
    tag->is16Bit = true;
    tag->stereo = clip.stereo;
    tag->sampleCount = sound->sampleCount;  // heard samples, after the skipped lead
    // The data is the seek samples (skipping the lead) and the MP3 frames. The
    // character takes the entry's bytes over, its head cut to those two bytes
    // (a long sound's MP3 is the largest thing an export holds), unless the
    // stream needs them too.
    const auto seek = static_cast<uint16_t>(std::min<uint32_t>(sound->leadSamples, 32767));
    constexpr auto kCut = static_cast<std::ptrdiff_t>(kEntryHead - 2);
    if (sound->alsoStream) {
        tag->data.reserve(sound->entry.size() - kCut);
        tag->data.assign(sound->entry.begin() + kCut, sound->entry.end());
    } else {
        tag->data = std::move(sound->entry);
        tag->data.erase(tag->data.begin(), tag->data.begin() + kCut);
        sound->entry = {};
        sound->frames = {};
    }
    tag->data[0] = static_cast<uint8_t>(seek);
    tag->data[1] = static_cast<uint8_t>(seek >> 8);
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
    // The slides' sync sounds are the stream; without any, the background's are.
    Track* holder = nullptr;
    const SoundClip* first = nullptr;
    for (const auto& slide : show.slides())
        if ((first = FirstSyncClip(slide->sound))) break;
    if (first) holder = &slides_;
    else if ((first = FirstSyncClip(show.sound))) holder = &background_;
    if (holder) {
        holder->holdsStream = hasStream_ = true;
        streamRate_ = MovieRate(first->sampleRate);
        streamStereo_ = first->stereo;
        auto addKeys = [this](const SlideSound& sound) {
            if (!sound.hasSound()) return;
            for (const SoundClip& clip : sound.sounds)
                if (!clip.src.empty() && clip.sync) streamKeys_.insert(KeyOf(clip, streamRate_, streamStereo_));
        };
        if (holder == &background_) {
            addKeys(show.sound);
        } else {
            for (const auto& slide : show.slides()) addKeys(slide->sound);
        }
        auto head = std::make_unique<SoundStreamHeadTag>();
        head->playbackRate = head->streamRate = SwfSoundRateCode(static_cast<uint32_t>(streamRate_));
        head->playbackStereo = head->streamStereo = streamStereo_;
        head->streamFormat = SwfSoundFormat::Mp3;
        head->samplesPerBlock = static_cast<uint16_t>(std::lround(streamRate_ / writer_.FrameRate()));
        writer_.AddTag(std::move(head));
    }
    listener_ = writer_.AddFrameListener([this](uint16_t index) { OnFrame(index); });
    if (show.sound.hasSound()) Schedule(background_, show.sound);
}

uint32_t MovieSounds::MaxCharacters(const SlideShow& show) {
    auto count = [](const SlideSound& sound) {
        uint32_t n = 0;
        if (sound.hasSound())
            for (const SoundClip& clip : sound.sounds) n += clip.src.empty() ? 0 : 1;
        return n;
    };
    uint32_t total = count(show.sound);
    for (const auto& slide : show.slides()) total += count(slide->sound);
    return total;
}

void MovieSounds::Schedule(Track& track, const SlideSound& sound) {
    const uint32_t first = writer_.TotalFrames();
    const double fps = writer_.FrameRate();
    double at = 0;  // seconds after the list's first frame
    for (const SoundClip& clip : sound.sounds) {
        if (clip.src.empty()) continue;
        const bool stream = track.holdsStream && clip.sync;
        const int32_t rate = stream ? streamRate_ : MovieRate(clip.sampleRate);
        const Encoded* encoded = Encode(clip, rate, stream ? streamStereo_ : clip.stereo);
        if (cancelled_) return;
        if (!encoded) continue;
        // A hundredth of a frame of slack, so a length of whole frames does not round up.
        track.cues.push_back({clip, first + static_cast<uint32_t>(std::max(0.0, std::ceil(at * fps - 0.01)))});
        if (clip.loop) break;
        at += encoded->sampleCount / static_cast<double>(rate);
    }
    RunCues(track, first);
}

void MovieSounds::RunCues(Track& track, uint32_t frame) {
    while (!track.cues.empty() && track.cues.front().frame <= frame) {
        const SoundClip clip = std::move(track.cues.front().clip);
        track.cues.pop_front();
        if (track.holdsStream && clip.sync) {
            const Encoded* sound = Encode(clip, streamRate_, streamStereo_);
            if (!sound || sound->frames.empty()) continue;
            stream_ = sound;
            streamLoop_ = clip.loop;
            streamStartFrame_ = frame;
            streamNext_ = 0;
            streamSent_ = 0;
        } else if (const uint16_t id = Define(clip)) {
            Start(id, clip.loop);
            if (std::find(track.started.begin(), track.started.end(), id) == track.started.end())
                track.started.push_back(id);
        }
    }
}

void MovieSounds::StopTrack(Track& track) {
    for (uint16_t id : track.started) Stop(id);
    track.started.clear();
    track.cues.clear();
    if (track.holdsStream) stream_ = nullptr;
}

void MovieSounds::StartSlide(const SlideSound& sound) {
    const bool has = sound.hasSound();
    if (has || !slideSoundGoesOn_) StopTrack(slides_);
    if (!has) return;
    slideSoundGoesOn_ = sound.playUntilNextSound;
    Schedule(slides_, sound);
}

void MovieSounds::OnFrame(uint16_t index) {
    RunCues(background_, index);
    RunCues(slides_, index);
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
        block.insert(block.end(), stream_->entry.begin() + static_cast<std::ptrdiff_t>(f.offset),
                     stream_->entry.begin() + static_cast<std::ptrdiff_t>(f.offset + f.length));
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

void MovieSounds::EndShow(bool showLoops) {
    StopTrack(slides_);
    if (!showLoops) StopTrack(background_);
}

}  // namespace quillet
