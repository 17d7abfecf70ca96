#include "media/Mp3Encoder.h"

#include <dlfcn.h>
#include <lame/lame.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>

#include "io/TempFolder.h"
#include "media/Progress.h"
#include "media/SoundImport.h"

namespace quillet {

namespace {

// The LAME calls used, resolved from the library by name.
struct LameApi {
    decltype(&lame_init) init = nullptr;
    decltype(&lame_set_num_channels) setNumChannels = nullptr;
    decltype(&lame_set_in_samplerate) setInRate = nullptr;
    decltype(&lame_set_out_samplerate) setOutRate = nullptr;
    decltype(&lame_set_mode) setMode = nullptr;
    decltype(&lame_set_brate) setBitRate = nullptr;
    decltype(&lame_set_quality) setQuality = nullptr;
    decltype(&lame_set_original) setOriginal = nullptr;
    decltype(&lame_set_disable_reservoir) setDisableReservoir = nullptr;
    decltype(&lame_set_bWriteVbrTag) setWriteVbrTag = nullptr;
    decltype(&lame_init_params) initParams = nullptr;
    decltype(&lame_get_framesize) getFrameSize = nullptr;
    decltype(&lame_get_encoder_delay) getEncoderDelay = nullptr;
    decltype(&lame_encode_buffer_interleaved) encodeInterleaved = nullptr;
    decltype(&lame_encode_buffer) encodeMono = nullptr;
    decltype(&lame_encode_flush) flush = nullptr;
    decltype(&lame_close) close = nullptr;
    decltype(&get_lame_version) version = nullptr;
};

struct LoadedLibrary {
    int error = kMp3Ok;
    std::string message;
    LameApi api;
};

std::string LibraryPath() {
    const char* env = std::getenv("QUILLET_LAME_LIBRARY");
    return env && *env ? env : "libmp3lame.so.0";
}

// Loaded once per path and kept for the life of the process.
const LoadedLibrary& Library() {
    static std::mutex mutex;
    static std::map<std::string, LoadedLibrary> loaded;
    std::lock_guard lock(mutex);
    const std::string path = LibraryPath();
    auto found = loaded.find(path);
    if (found != loaded.end()) return found->second;
    LoadedLibrary& lib = loaded[path];
    void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle) {
        lib.error = kMp3NoLibrary;
        const char* why = dlerror();
        lib.message = "the MP3 encoder library " + path + " cannot be loaded (error 1" + (why ? std::string(": ") + why : "") + ")";
        return lib;
    }
    std::string missing;
    auto resolve = [&](auto& fn, const char* name) {
        fn = reinterpret_cast<std::remove_reference_t<decltype(fn)>>(dlsym(handle, name));
        if (!fn && missing.empty()) missing = name;
    };
    LameApi& a = lib.api;
    resolve(a.init, "lame_init");
    resolve(a.setNumChannels, "lame_set_num_channels");
    resolve(a.setInRate, "lame_set_in_samplerate");
    resolve(a.setOutRate, "lame_set_out_samplerate");
    resolve(a.setMode, "lame_set_mode");
    resolve(a.setBitRate, "lame_set_brate");
    resolve(a.setQuality, "lame_set_quality");
    resolve(a.setOriginal, "lame_set_original");
    resolve(a.setDisableReservoir, "lame_set_disable_reservoir");
    resolve(a.setWriteVbrTag, "lame_set_bWriteVbrTag");
    resolve(a.initParams, "lame_init_params");
    resolve(a.getFrameSize, "lame_get_framesize");
    resolve(a.getEncoderDelay, "lame_get_encoder_delay");
    resolve(a.encodeInterleaved, "lame_encode_buffer_interleaved");
    resolve(a.encodeMono, "lame_encode_buffer");
    resolve(a.flush, "lame_encode_flush");
    resolve(a.close, "lame_close");
    resolve(a.version, "get_lame_version");
    if (!missing.empty()) {
        lib.error = kMp3NoEntryPoint;
        lib.message = "the MP3 encoder library " + path + " lacks the entry point " + missing + " (error 2)";
    }
    return lib;
}

struct FileCloser {
    void operator()(FILE* f) const { std::fclose(f); }
};

constexpr size_t kInputBufferBytes = 819200;
constexpr size_t kOutputBufferBytes = 409600;
constexpr size_t kReadBytes = 102400;

}  // namespace

Mp3EncoderConfig MakeEncoderConfig(const SoundFormat& f) {
    Mp3EncoderConfig c;
    if (f.outChannels == f.inChannels) {
        c.sampleRate = static_cast<uint32_t>(f.inRate);
        c.resampleRate = static_cast<uint32_t>(f.outRate);
    } else if (f.outChannels < f.inChannels) {
        c.sampleRate = static_cast<uint32_t>(f.inRate / std::max(f.inChannels, 1));
        c.resampleRate = static_cast<uint32_t>(f.outRate);
    } else {
        c.sampleRate = static_cast<uint32_t>(f.inRate * f.outChannels);
        c.resampleRate = static_cast<uint32_t>(f.inChannels * f.outRate);
    }
    c.mode = f.inChannels < 2 ? 3 : 1;
    c.bitRate = static_cast<uint32_t>(std::max(f.bitRate, 0));
    return c;
}

int LoadEncoder(std::string* message) {
    const LoadedLibrary& lib = Library();
    if (message) *message = lib.message;
    return lib.error;
}

Mp3Result EncodeMp3(SoundFormat& format, const std::string& pcmPath, ProgressSink* progress) {
    Mp3Result result;
    format.mp3.clear();
    if (progress) progress->setSecondaryText("Writing audio...");
    const LoadedLibrary& lib = Library();
    if (lib.error != kMp3Ok) {
        result.error = lib.error;
        result.message = lib.message;
        return result;
    }
    const LameApi& lame = lib.api;
    auto failed = [&](std::string message) {
        result.error = kMp3Failed;
        result.message = std::move(message);
        return result;
    };

    PcmInfo pcm;
    if (!ReadPcmHeader(pcmPath, pcm)) return failed(pcmPath + ": not a PCM file of ours");
    std::unique_ptr<FILE, FileCloser> in(std::fopen(pcmPath.c_str(), "rb"));
    if (!in || std::fseek(in.get(), static_cast<long>(pcm.dataOffset), SEEK_SET) != 0)
        return failed(pcmPath + ": cannot be read");
    const int channels = static_cast<int>(pcm.channels);

    const Mp3EncoderConfig config = MakeEncoderConfig(format);
    std::unique_ptr<lame_global_flags, decltype(lame.close)> gfp(lame.init(), lame.close);
    if (!gfp) return failed("the MP3 encoder cannot start");
    lame.setNumChannels(gfp.get(), channels);
    lame.setInRate(gfp.get(), static_cast<int>(config.sampleRate));
    lame.setOutRate(gfp.get(), static_cast<int>(config.resampleRate));
    lame.setMode(gfp.get(), config.mode == 3 ? MONO : JOINT_STEREO);
    lame.setBitRate(gfp.get(), static_cast<int>(config.bitRate));
    lame.setQuality(gfp.get(), config.preset);  // 2: LAME's high-quality setting
    lame.setOriginal(gfp.get(), config.original ? 1 : 0);
    lame.setDisableReservoir(gfp.get(), config.noBitReservoir ? 1 : 0);
    // No Xing/Info frame: the data goes into a movie, not a file of its own.
    lame.setWriteVbrTag(gfp.get(), 0);
    if (lame.initParams(gfp.get()) < 0)
        return failed("the MP3 encoder refuses " + std::to_string(config.resampleRate) + " Hz at " +
                      std::to_string(config.bitRate) + " kbit/s");
    // One chunk is one MP3 frame of samples for every channel.
    const size_t chunkSamples = static_cast<size_t>(lame.getFrameSize(gfp.get())) * static_cast<size_t>(channels);

    std::string tempError;
    const std::string mp3Path = PrivateTempFile("audmp.dat", &tempError);
    if (mp3Path.empty()) return failed(tempError);
    std::unique_ptr<FILE, FileCloser> out(std::fopen(mp3Path.c_str(), "wb"));
    auto cleanUp = [&] {
        out.reset();
        std::error_code ec;
        std::filesystem::remove(mp3Path, ec);
    };
    if (!out) return failed("cannot create " + mp3Path);

    std::vector<uint8_t> input(kInputBufferBytes);
    std::vector<uint8_t> output(kOutputBufferBytes);
    std::vector<int16_t> samples(kInputBufferBytes / 2);
    size_t have = 0;  // bytes at the front of input not yet encoded
    // Encodes the first `bytes` of input (a whole number of samples); false on failure.
    auto encode = [&](size_t bytes) {
        const size_t count = bytes / 2;
        for (size_t i = 0; i < count; ++i)
            samples[i] = static_cast<int16_t>(static_cast<uint16_t>(input[2 * i] | (input[2 * i + 1] << 8)));
        const int frames = static_cast<int>(count / static_cast<size_t>(channels));
        const int n = channels == 1
                          ? lame.encodeMono(gfp.get(), samples.data(), samples.data(), frames, output.data(),
                                            static_cast<int>(output.size()))
                          : lame.encodeInterleaved(gfp.get(), samples.data(), frames, output.data(),
                                                   static_cast<int>(output.size()));
        if (n < 0) return false;
        return std::fwrite(output.data(), 1, static_cast<size_t>(n), out.get()) == static_cast<size_t>(n);
    };

    const uint64_t total = pcm.dataBytes;
    uint64_t done = 0;
    const uint64_t hundredth = std::max<uint64_t>(total / 100, 1);
    while (done < total) {
        char text[48];
        std::snprintf(text, sizeof text, "Writing audio...%d%%", static_cast<int>(std::min<uint64_t>(done / hundredth, 100)));
        if (progress) progress->setSecondaryText(text);
        if (progress && progress->cancelled()) {
            cleanUp();
            result.cancelled = true;
            result.message = "cancelled";
            return result;
        }
        const size_t want = static_cast<size_t>(std::min<uint64_t>(kReadBytes, total - done));
        const size_t got = std::fread(input.data() + have, 1, want, in.get());
        if (got == 0) break;  // the file is shorter than its header says: encode what there is
        // The file holds big-endian samples: swap each whole pair to the
        // little-endian order read above (an odd last byte stays as it is).
        for (size_t i = have; i + 1 < have + got; i += 2) std::swap(input[i], input[i + 1]);
        done += got;
        have += got;
        const size_t use = have / chunkSamples * chunkSamples;
        if (use > 0) {
            if (!encode(use)) {
                cleanUp();
                return failed("the MP3 encoder failed");
            }
            std::memmove(input.data(), input.data() + use, have - use);
            have -= use;
        }
    }
    // The remainder: whole frames of every channel.
    const size_t tail = have / (2 * static_cast<size_t>(channels)) * 2 * static_cast<size_t>(channels);
    if (tail > 0 && !encode(tail)) {
        cleanUp();
        return failed("the MP3 encoder failed");
    }
    const int last = lame.flush(gfp.get(), output.data(), static_cast<int>(output.size()));
    if (last < 0 || std::fwrite(output.data(), 1, static_cast<size_t>(last), out.get()) != static_cast<size_t>(last)) {
        cleanUp();
        return failed("the MP3 encoder failed at the end");
    }
    if (std::fflush(out.get()) != 0) {
        cleanUp();
        return failed("cannot write " + mp3Path);
    }
    out.reset();

    // Read the MP3 file back whole; then it goes.
    {
        std::unique_ptr<FILE, FileCloser> back(std::fopen(mp3Path.c_str(), "rb"));
        std::error_code ec;
        const auto length = std::filesystem::file_size(mp3Path, ec);
        if (!back || ec) {
            cleanUp();
            return failed("cannot read " + mp3Path);
        }
        format.mp3.clear();
        format.mp3.reserve(static_cast<size_t>(length) + kMp3SpareCapacity);
        format.mp3.resize(static_cast<size_t>(length));
        if (std::fread(format.mp3.data(), 1, format.mp3.size(), back.get()) != format.mp3.size()) {
            format.mp3.clear();
            cleanUp();
            return failed("cannot read " + mp3Path);
        }
    }
    cleanUp();
    result.ok = true;
    result.samplesIn = total / (2ull * static_cast<uint64_t>(channels));
    result.leadSamples = static_cast<uint32_t>(std::max(0, lame.getEncoderDelay(gfp.get()))) + kMp3DecoderDelay;
    return result;
}

}  // namespace quillet
