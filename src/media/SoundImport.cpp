#include "media/SoundImport.h"

#include <sndfile.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <vector>

#include "io/TempFolder.h"
#include "media/Progress.h"

namespace quillet {

namespace {

void PutBig(uint8_t* p, uint64_t v, int bytes) {
    for (int i = bytes - 1; i >= 0; --i, v >>= 8) p[i] = static_cast<uint8_t>(v);
}

uint64_t GetBig(const uint8_t* p, int bytes) {
    uint64_t v = 0;
    for (int i = 0; i < bytes; ++i) v = (v << 8) | p[i];
    return v;
}

struct SndCloser {
    void operator()(SNDFILE* f) const { sf_close(f); }
};
struct FileCloser {
    void operator()(FILE* f) const { std::fclose(f); }
};

int16_t Clip16(int v) { return static_cast<int16_t>(std::clamp(v, -32768, 32767)); }

short FloatTo16(float v) { return static_cast<short>(std::clamp(std::lrint(v * 32767.0f), -32768L, 32767L)); }

// Mixes one frame of `in` channels into `out` (1 or 2). Mono takes the mean
// of every channel. Stereo from mono doubles it; from more than two channels
// the even-numbered ones (left, centre, left surround in the usual 5.1
// order) go left and the odd ones right.
void MixFrame(const short* src, int in, int out, int16_t* dst) {
    if (in == out) {
        std::copy(src, src + in, dst);
        return;
    }
    if (out == 1) {
        int sum = 0;
        for (int c = 0; c < in; ++c) sum += src[c];
        dst[0] = Clip16(sum / in);
        return;
    }
    if (in == 1) {
        dst[0] = dst[1] = src[0];
        return;
    }
    int left = 0, right = 0;
    for (int c = 0; c < in; ++c) (c % 2 ? right : left) += src[c];
    dst[0] = Clip16(left / ((in + 1) / 2));
    dst[1] = Clip16(right / (in / 2));
}

}  // namespace

bool ReadPcmHeader(const std::string& path, PcmInfo& info) {
    std::unique_ptr<FILE, FileCloser> file(std::fopen(path.c_str(), "rb"));
    uint8_t head[kPcmHeaderBytes];
    if (!file || std::fread(head, 1, sizeof head, file.get()) != sizeof head || std::memcmp(head, "QPCM", 4) != 0)
        return false;
    info.dataOffset = GetBig(head + 4, 4);
    info.sampleRate = static_cast<uint32_t>(GetBig(head + 8, 4));
    info.channels = static_cast<uint32_t>(GetBig(head + 12, 4));
    info.dataBytes = GetBig(head + 16, 8);
    return info.channels > 0 && info.sampleRate > 0;
}

SoundImportResult ImportSound(const SoundImportRequest& request, ProgressSink* progress) {
    SoundImportResult result;
    const std::string& path = request.path;
    if (progress) progress->setSecondaryText("Reading audio...");
    SF_INFO info{};
    std::unique_ptr<SNDFILE, SndCloser> sound(sf_open(path.c_str(), SFM_READ, &info));
    if (!sound) {
        // libsndfile's own text for a failed open is often beside the point
        // (it blames the file type for a missing file and the reverse).
        std::error_code ec;
        result.error = path + (std::filesystem::is_regular_file(path, ec)
                                   ? ": not a sound that can be read (WAV, AIFF or MP3)"
                                   : ": the file does not exist");
        return result;
    }
    if (info.frames <= 0 || info.channels <= 0 || info.samplerate <= 0) {
        result.error = path + ": the sound is empty";
        return result;
    }
    result.sourceRate = static_cast<uint32_t>(info.samplerate);
    result.sourceChannels = static_cast<uint32_t>(info.channels);
    // Every format is read as float in -1..1 (libsndfile normalises integer
    // data; float data read as short would be truncated, not scaled) and
    // scaled and clipped to 16 bits here.
    sf_command(sound.get(), SFC_SET_NORM_FLOAT, nullptr, SF_TRUE);

    const uint64_t rate = static_cast<uint64_t>(info.samplerate);
    const uint64_t total = static_cast<uint64_t>(info.frames);
    const uint64_t first = request.startMs * rate / 1000;
    if (first >= total) {
        result.error = path + ": the start time lies past the end of the sound";
        return result;
    }
    uint64_t last = total;
    if (!request.playEntireSound) last = std::min(total, first + request.durationMs * rate / 1000);
    if (last <= first) {
        result.error = path + ": the part of the sound chosen to play is empty";
        return result;
    }
    if (first > 0 && sf_seek(sound.get(), static_cast<sf_count_t>(first), SEEK_SET) < 0) {
        result.error = path + ": cannot seek to the start time";
        return result;
    }

    std::string tempError;
    const std::string pcmPath = PrivateTempFile("audrw.dat", &tempError);
    if (pcmPath.empty()) {
        result.error = path + ": " + tempError;
        return result;
    }
    std::unique_ptr<FILE, FileCloser> out(std::fopen(pcmPath.c_str(), "wb"));
    auto fail = [&](std::string message, bool cancelled = false) {
        out.reset();
        std::error_code ec;
        std::filesystem::remove(pcmPath, ec);
        result.error = std::move(message);
        result.cancelled = cancelled;
        return result;
    };
    if (!out) return fail(path + ": cannot create the temporary file " + pcmPath);

    const int inChannels = info.channels;
    const int outChannels = request.channels >= 2 ? 2 : 1;
    uint8_t head[kPcmHeaderBytes] = {'Q', 'P', 'C', 'M'};
    PutBig(head + 4, kPcmHeaderBytes, 4);
    PutBig(head + 8, rate, 4);
    PutBig(head + 12, static_cast<uint64_t>(outChannels), 4);
    if (std::fwrite(head, 1, sizeof head, out.get()) != sizeof head) return fail(path + ": cannot write " + pcmPath);

    constexpr sf_count_t kBlockFrames = 8192;
    std::vector<float> block(static_cast<size_t>(kBlockFrames * inChannels));
    std::vector<short> in(block.size());
    std::vector<uint8_t> bytes(static_cast<size_t>(kBlockFrames * outChannels * 2));
    const uint64_t wanted = last - first;
    uint64_t done = 0;
    int shownPercent = -1;
    while (done < wanted) {
        if (progress && progress->cancelled()) return fail(path + ": cancelled", true);
        const int percent = static_cast<int>(done * 100 / wanted);
        if (progress && percent != shownPercent) {
            char text[48];
            std::snprintf(text, sizeof text, "Reading Audio...%d%%", percent);
            progress->setSecondaryText(text);
            shownPercent = percent;
        }
        const sf_count_t ask = static_cast<sf_count_t>(std::min<uint64_t>(kBlockFrames, wanted - done));
        const sf_count_t got = sf_readf_float(sound.get(), block.data(), ask);
        if (got <= 0) break;
        std::transform(block.begin(), block.begin() + got * inChannels, in.begin(), FloatTo16);
        uint8_t* p = bytes.data();
        for (sf_count_t f = 0; f < got; ++f) {
            int16_t mixed[2];
            MixFrame(&in[static_cast<size_t>(f * inChannels)], inChannels, outChannels, mixed);
            for (int c = 0; c < outChannels; ++c) {
                const uint16_t s = static_cast<uint16_t>(mixed[c]);
                *p++ = static_cast<uint8_t>(s >> 8);
                *p++ = static_cast<uint8_t>(s);
            }
        }
        const size_t n = static_cast<size_t>(p - bytes.data());
        if (std::fwrite(bytes.data(), 1, n, out.get()) != n) return fail(path + ": cannot write " + pcmPath);
        done += static_cast<uint64_t>(got);
    }
    if (sf_error(sound.get()) != SF_ERR_NO_ERROR) return fail(path + ": " + sf_strerror(sound.get()));
    // MP3 lengths are estimates; for the other formats fewer frames than the
    // header promised means the file was cut short.
    const bool mpeg = (info.format & SF_FORMAT_TYPEMASK) == SF_FORMAT_MPEG;
    if (done == 0) return fail(path + ": the sound is empty");
    if (done < wanted && !mpeg) return fail(path + ": the file is truncated");
    // libsndfile reads a cut-short WAV or AIFF up to where it ends and notes
    // in its log that the data chunk's length "should be" less.
    char log[4096] = {};
    sf_command(sound.get(), SFC_GET_LOG_INFO, log, sizeof log);
    for (const char* line = log; line && *line;) {
        const char* end = std::strchr(line, '\n');
        std::string text(line, end ? static_cast<size_t>(end - line) : std::strlen(line));
        text.erase(0, text.find_first_not_of(' '));
        if ((text.rfind("data", 0) == 0 || text.rfind("SSND", 0) == 0) && text.find("should be") != std::string::npos)
            return fail(path + ": the file is truncated");
        line = end ? end + 1 : nullptr;
    }

    PutBig(head + 16, done * static_cast<uint64_t>(outChannels) * 2, 8);
    if (std::fseek(out.get(), 0, SEEK_SET) != 0 || std::fwrite(head, 1, sizeof head, out.get()) != sizeof head ||
        std::fflush(out.get()) != 0)
        return fail(path + ": cannot write " + pcmPath);
    out.reset();
    if (progress) progress->setSecondaryText("Reading Audio...100%");
    result.ok = true;
    result.pcmPath = pcmPath;
    result.pcm.sampleRate = static_cast<uint32_t>(rate);
    result.pcm.channels = static_cast<uint32_t>(outChannels);
    result.pcm.dataOffset = kPcmHeaderBytes;
    result.pcm.dataBytes = done * static_cast<uint64_t>(outChannels) * 2;
    return result;
}

}  // namespace quillet
