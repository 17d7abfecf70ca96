// Sound import and MP3 encoding: wall time and peak memory.
//
//   build/bench/bench_sound [LONG_MINUTES=120] [LONG_RATE=22050] [LONG_CHANNELS=1] [FOLDER=$TMPDIR]
//
// Cases, each run in a child process so that its peak memory is its own:
//   3 min     a three-minute stereo 44.1 kHz WAV read and encoded at 44.1 kHz
//             stereo, 128 kbit/s (import, encode and both)
//   long      a LONG_MINUTES source (mono 22.05 kHz unless told) read and
//             encoded at its own rate and channels, 64 kbit/s per channel
//   long show the same source as the music of a one-slide show, exported to
//             a movie (the MP3 then passes through the movie's character,
//             the writer and the cache)
// The sources are synthesised (a wandering tone with a little noise, so the
// encoder has real work) and deleted afterwards. Reading streams in blocks,
// so the import's memory does not grow with the length; what grows is the
// finished MP3.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "media/Mp3Encoder.h"
#include "media/SoundImport.h"
#include "model/Slide.h"
#include "model/SlideShow.h"
#include "movie/MovieExporter.h"

using namespace quillet;
namespace fs = std::filesystem;

namespace {

double Now() { return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count(); }

void PutLe(std::FILE* f, uint32_t v, int bytes) {
    for (int i = 0; i < bytes; ++i) std::fputc(static_cast<int>((v >> (8 * i)) & 0xff), f);
}

// A 16-bit PCM WAV of `seconds`, written in blocks.
bool MakeWav(const std::string& path, double seconds, uint32_t rate, uint32_t channels) {
    std::FILE* f = std::fopen(path.c_str(), "wb");
    if (!f) return false;
    const uint64_t frames = static_cast<uint64_t>(seconds * rate);
    const uint64_t dataBytes = frames * channels * 2;
    if (dataBytes + 36 > 0xffffffffull) {
        std::fclose(f);
        return false;
    }
    std::fwrite("RIFF", 1, 4, f);
    PutLe(f, static_cast<uint32_t>(36 + dataBytes), 4);
    std::fwrite("WAVEfmt ", 1, 8, f);
    PutLe(f, 16, 4);
    PutLe(f, 1, 2);
    PutLe(f, channels, 2);
    PutLe(f, rate, 4);
    PutLe(f, rate * channels * 2, 4);
    PutLe(f, channels * 2, 2);
    PutLe(f, 16, 2);
    std::fwrite("data", 1, 4, f);
    PutLe(f, static_cast<uint32_t>(dataBytes), 4);
    std::mt19937 noise(7);
    std::uniform_int_distribution<int> jitter(-300, 300);
    std::vector<int16_t> block;
    double phase = 0;
    for (uint64_t done = 0; done < frames;) {
        const uint64_t n = std::min<uint64_t>(65536, frames - done);
        block.clear();
        for (uint64_t i = 0; i < n; ++i) {
            const double t = static_cast<double>(done + i) / rate;
            phase += 2 * M_PI * (440 + 220 * std::sin(t * 0.7)) / rate;
            const auto v = static_cast<int16_t>(9000 * std::sin(phase) + jitter(noise));
            for (uint32_t c = 0; c < channels; ++c) block.push_back(v);
        }
        std::fwrite(block.data(), 2, block.size(), f);
        done += n;
    }
    return std::fclose(f) == 0;
}

struct Figures {
    double import = 0, encode = 0, wall = 0, peakMb = 0, mp3Mb = 0;
    bool ok = false;
};

Figures InChild(const std::function<Figures()>& work) {
    int fds[2];
    if (pipe(fds) != 0) return {};
    const pid_t pid = fork();
    if (pid == 0) {
        close(fds[0]);
        Figures f = work();
        (void)!write(fds[1], &f, sizeof f);
        _exit(0);
    }
    close(fds[1]);
    Figures f;
    if (read(fds[0], &f, sizeof f) != sizeof f) f.ok = false;
    close(fds[0]);
    int status = 0;
    rusage usage{};
    wait4(pid, &status, 0, &usage);
    f.peakMb = static_cast<double>(usage.ru_maxrss) / 1024;
    return f;
}

Figures Encode(const std::string& source, int channels, int rate, int bitRate) {
    Figures f;
    const double start = Now();
    SoundImportRequest request;
    request.path = source;
    request.channels = channels;
    SoundImportResult pcm = ImportSound(request);
    f.import = Now() - start;
    if (!pcm.ok) {
        std::fprintf(stderr, "bench_sound: %s\n", pcm.error.c_str());
        return f;
    }
    SoundFormat format;
    format.bitRate = bitRate;
    format.inRate = static_cast<int>(pcm.pcm.sampleRate);
    format.inChannels = format.outChannels = channels;
    format.outRate = rate;
    const double encodeStart = Now();
    Mp3Result mp3 = EncodeMp3(format, pcm.pcmPath);
    f.encode = Now() - encodeStart;
    f.wall = Now() - start;
    std::error_code ec;
    fs::remove(pcm.pcmPath, ec);
    if (!mp3.ok) std::fprintf(stderr, "bench_sound: %s\n", mp3.message.c_str());
    f.ok = mp3.ok;
    f.mp3Mb = static_cast<double>(format.mp3.size()) / 1e6;
    return f;
}

Figures ExportShow(const std::string& source, const std::string& movie, const std::string& cache, int channels,
                   int rate, int bitRate) {
    Figures f;
    SlideShow show;
    show.setSize(320, 240);
    show.fps = 12;
    auto slide = show.createSlide(SlideType::Image);
    slide->image.src = "/usr/share/backgrounds/mate/nature/Garden.jpg";
    slide->duration = 2000;
    show.append(std::move(slide));
    show.sound.include = true;
    SoundClip music;
    music.src = source;
    music.sampleRate = rate;
    music.bitRate = bitRate;
    music.stereo = channels == 2;
    show.sound.sounds.push_back(music);
    const double start = Now();
    ExportOptions options;
    options.cacheFolder = cache;  // as the command line exports
    ExportResult r = MovieExporter(show).ExportMovie(movie, nullptr, options);
    f.wall = Now() - start;
    f.ok = r.ok && r.warnings.empty();
    for (const auto& w : r.warnings) std::fprintf(stderr, "bench_sound: %s\n", w.c_str());
    if (!r.ok) std::fprintf(stderr, "bench_sound: %s\n", r.error.c_str());
    f.mp3Mb = r.fileLength / 1e6;
    return f;
}

void Print(const char* name, const Figures& f) {
    if (!f.ok) {
        std::printf("%-10s failed\n", name);
        return;
    }
    if (f.import == 0 && f.encode == 0)  // a whole export
        std::printf("%-10s export %6.2f s                                 movie %6.1f MB  peak RSS %6.1f MB\n", name,
                    f.wall, f.mp3Mb, f.peakMb);
    else
        std::printf("%-10s import %6.2f s  encode %6.2f s  total %6.2f s  MP3 %7.1f MB  peak RSS %6.1f MB\n", name,
                    f.import, f.encode, f.wall, f.mp3Mb, f.peakMb);
}

}  // namespace

int main(int argc, char** argv) {
    const double longMinutes = argc > 1 ? std::atof(argv[1]) : 120;
    const int longRate = argc > 2 ? std::atoi(argv[2]) : 22050;
    const int longChannels = argc > 3 ? std::atoi(argv[3]) : 1;
    const char* tmp = std::getenv("TMPDIR");
    const fs::path folder = fs::path(argc > 4 ? argv[4] : tmp ? tmp : "/tmp") / ("bench_sound." + std::to_string(getpid()));
    fs::create_directories(folder);
    const std::string shortWav = (folder / "three-minutes.wav").string();
    const std::string longWav = (folder / "long.wav").string();
    const int longBitRate = 64 * longChannels;

    if (!MakeWav(shortWav, 180, 44100, 2)) return 1;
    Print("3 min", InChild([&] { return Encode(shortWav, 2, 44100, 128); }));
    std::printf("           (180 s stereo 44.1 kHz -> 44.1 kHz stereo 128 kbit/s)\n");

    if (!MakeWav(longWav, longMinutes * 60, static_cast<uint32_t>(longRate), static_cast<uint32_t>(longChannels))) {
        std::fprintf(stderr, "bench_sound: cannot write %s (too long for a WAV?)\n", longWav.c_str());
        return 1;
    }
    Print("long", InChild([&] { return Encode(longWav, longChannels, longRate, longBitRate); }));
    Print("long show", InChild([&] {
              return ExportShow(longWav, (folder / "long.swf").string(), (folder / "cache").string(), longChannels, longRate, longBitRate);
          }));
    std::printf("           (%.0f min, %d Hz, %d channel(s) -> %d kbit/s)\n",
                longMinutes, longRate, longChannels, longBitRate);
    std::error_code ec;
    fs::remove_all(folder, ec);
    return 0;
}
