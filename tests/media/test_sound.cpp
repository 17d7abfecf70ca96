#include <gtest/gtest.h>

#include <sndfile.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "io/TempFolder.h"
#include "media/Mp3Encoder.h"
#include "media/Mp3Frames.h"
#include "media/Progress.h"
#include "media/SoundImport.h"
#include "support/TempDir.h"

namespace quillet {
namespace {

namespace fs = std::filesystem;

TEST(Mp3EncoderConfig, RatesAndModeFollowTheChannelCounts) {
    struct Row {
        int inChannels, outChannels, inRate, outRate;
        uint32_t sampleRate, resampleRate;
        int mode;
    } rows[] = {
        {2, 2, 44100, 22050, 44100, 22050, 1},   // equal: read as is
        {1, 1, 22050, 11025, 22050, 11025, 3},
        {2, 1, 44100, 11025, 22050, 11025, 1},   // fewer: input rate / input channels, still joint stereo
        {6, 2, 48000, 44100, 8000, 44100, 1},
        {1, 2, 22050, 44100, 44100, 44100, 3},   // more: input rate x output channels, input channels x output rate
        {1, 2, 11025, 22050, 22050, 22050, 3},
    };
    for (const Row& r : rows) {
        SoundFormat f;
        f.inChannels = r.inChannels;
        f.outChannels = r.outChannels;
        f.inRate = r.inRate;
        f.outRate = r.outRate;
        f.bitRate = 96;
        const Mp3EncoderConfig c = MakeEncoderConfig(f);
        SCOPED_TRACE(testing::Message() << r.inChannels << "->" << r.outChannels << " " << r.inRate << "->" << r.outRate);
        EXPECT_EQ(c.sampleRate, r.sampleRate);
        EXPECT_EQ(c.resampleRate, r.resampleRate);
        EXPECT_EQ(c.mode, r.mode);
        EXPECT_EQ(c.bitRate, 96u);
        EXPECT_EQ(c.kind, 256u);
        EXPECT_EQ(c.size, 331u);
        EXPECT_TRUE(c.original && c.noBitReservoir);
    }
}

struct Decoded {
    int rate = 0, channels = 0;
    std::vector<short> samples;
    long Frames() const { return channels ? static_cast<long>(samples.size()) / channels : 0; }
};

Decoded DecodeMp3(const std::vector<uint8_t>& mp3, const std::string& path) {
    test::writeFile(path, std::string(mp3.begin(), mp3.end()));
    Decoded d;
    SF_INFO info{};
    SNDFILE* f = sf_open(path.c_str(), SFM_READ, &info);
    if (!f) return d;
    d.rate = info.samplerate;
    d.channels = info.channels;
    std::vector<short> block(4096 * static_cast<size_t>(info.channels));
    sf_count_t n;
    while ((n = sf_readf_short(f, block.data(), 4096)) > 0)
        d.samples.insert(d.samples.end(), block.begin(), block.begin() + n * info.channels);
    sf_close(f);
    return d;
}

// Upward zero crossings of channel 0 per second, over the middle of the sound.
double Frequency(const Decoded& d) {
    const long frames = d.Frames();
    int crossings = 0;
    for (long i = frames / 4 + 1; i < frames * 3 / 4; ++i)
        if (d.samples[static_cast<size_t>((i - 1) * d.channels)] < 0 && d.samples[static_cast<size_t>(i * d.channels)] >= 0)
            ++crossings;
    return crossings * static_cast<double>(d.rate) / (frames / 2.0);
}

class SoundTest : public ::testing::Test {
protected:
    test::TempDir dir_;
};

// Every source kind comes out at the rate, channel count and length asked
// for, within one MP3 frame, and a 440 Hz tone stays 440 Hz.
TEST_F(SoundTest, SourcesRoundTripThroughTheEncoder) {
    struct Row {
        const char* name;
        const char* command;  // makes 2.5 s of 440 Hz
        int outRate, outChannels, bitRate;
        uint32_t startMs, durationMs;  // durationMs 0: the whole sound
    } rows[] = {
        {"u8.wav", "sox -n -r 22050 -c 1 -b 8 -e unsigned", 22050, 1, 64, 0, 0},
        {"s16.wav", "sox -n -r 44100 -c 2 -b 16", 44100, 2, 128, 0, 0},
        {"s24.wav", "sox -n -r 48000 -c 2 -b 24", 44100, 2, 160, 500, 1000},
        {"f32.wav", "sox -n -r 44100 -c 1 -e floating-point -b 32", 11025, 1, 32, 0, 0},
        {"six.wav", "sox -n -r 44100 -c 6 -b 16", 22050, 2, 96, 0, 0},
        {"mono-to-stereo.aiff", "sox -n -r 44100 -c 1 -b 16", 44100, 2, 128, 1000, 0},
        {"stereo-to-mono.aiff", "sox -n -r 44100 -c 2 -b 16", 44100, 1, 128, 0, 2000},
        {"tone.mp3", "ffmpeg", 22050, 2, 64, 0, 0},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(r.name);
        const std::string src = dir_.file(r.name);
        const std::string make = std::string(r.command) == "ffmpeg"
                                     ? "ffmpeg -loglevel error -f lavfi -i sine=frequency=440:duration=2.5 -ac 2 -y " + src
                                     : std::string(r.command) + " " + src + " synth 2.5 sine 440 vol 0.5";
        ASSERT_EQ(test::runCommand(make), 0);
        SoundImportRequest request;
        request.path = src;
        request.channels = r.outChannels;
        request.startMs = r.startMs;
        request.playEntireSound = r.durationMs == 0;
        request.durationMs = r.durationMs;
        const SoundImportResult pcm = ImportSound(request);
        ASSERT_TRUE(pcm.ok) << pcm.error;
        SoundFormat format;
        format.inRate = static_cast<int>(pcm.pcm.sampleRate);
        format.inChannels = format.outChannels = r.outChannels;
        format.outRate = r.outRate;
        format.bitRate = r.bitRate;
        const Mp3Result mp3 = EncodeMp3(format, pcm.pcmPath);
        ASSERT_TRUE(mp3.ok) << mp3.message;
        EXPECT_FALSE(fs::exists(PrivateTempFile("audmp.dat")));
        const Decoded d = DecodeMp3(format.mp3, dir_.file("out.mp3"));
        EXPECT_EQ(d.rate, r.outRate);
        EXPECT_EQ(d.channels, r.outChannels);
        const double seconds = (r.durationMs ? r.durationMs : 2500.0 - r.startMs) / 1000.0;
        const double frame = (r.outRate >= 32000 ? 1152 : 576);
        // The decoder keeps LAME's fixed delay of 1105 samples at the front;
        // beyond it the length is right to within one frame.
        EXPECT_NEAR(static_cast<double>(d.Frames()) - 1105, seconds * r.outRate, frame);
        EXPECT_NEAR(Frequency(d), 440.0, 3.0);
        fs::remove(pcm.pcmPath);

        // The frames cover the data exactly and carry its rate and channels;
        // a cut-short last frame is left out.
        const std::vector<Mp3Frame> frames = SplitMp3Frames(format.mp3);
        ASSERT_FALSE(frames.empty());
        size_t bytes = 0;
        for (const Mp3Frame& f : frames) {
            EXPECT_EQ(f.offset, bytes);
            EXPECT_EQ(f.sampleRate, static_cast<uint32_t>(r.outRate));
            EXPECT_EQ(f.channels, r.outChannels);
            EXPECT_EQ(f.samples, r.outRate >= 32000 ? 1152u : 576u);
            bytes += f.length;
        }
        EXPECT_EQ(bytes, format.mp3.size());
        EXPECT_EQ(static_cast<long>(frames.size() * frames[0].samples), d.Frames());
        const std::span<const uint8_t> cut(format.mp3.data(), format.mp3.size() - 1);
        EXPECT_EQ(SplitMp3Frames(cut).size(), frames.size() - 1);
    }
}

TEST_F(SoundTest, BadSourcesNameTheFile) {
    struct Row {
        const char* name;
        const char* make;
        const char* says;
    } rows[] = {
        {"text.mp3", "echo 'not a sound at all' >", "not a sound"},
        {"empty.wav", "sox -n -r 44100 -c 1 -b 16 whole.wav trim 0 0 && cp whole.wav", "empty"},
        {"short.wav", "sox -n -r 44100 -c 2 -b 16 whole.wav synth 2 sine 440 && head -c 100000 whole.wav >", "truncated"},
        {"short.aiff", "sox -n -r 44100 -c 2 -b 16 whole.aiff synth 2 sine 440 && head -c 100000 whole.aiff >", "truncated"},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(r.name);
        const std::string path = dir_.file(r.name);
        ASSERT_EQ(test::runCommand("cd " + dir_.path().string() + " && " + r.make + " " + path), 0);
        fs::remove(PrivateTempFile("audrw.dat"));
        SoundImportRequest request;
        request.path = path;
        const SoundImportResult result = ImportSound(request);
        EXPECT_FALSE(result.ok);
        EXPECT_NE(result.error.find(path), std::string::npos) << result.error;
        EXPECT_NE(result.error.find(r.says), std::string::npos) << result.error;
        EXPECT_FALSE(fs::exists(PrivateTempFile("audrw.dat")));
    }
}

// A PCM file written by hand: `bytes` of stereo samples at 44.1 kHz.
std::string WritePcm(const std::string& path, size_t bytes) {
    std::string data(32, '\0');
    const uint8_t head[16] = {'Q', 'P', 'C', 'M', 0, 0, 0, 32, 0, 0, 0xAC, 0x44, 0, 0, 0, 2};
    std::copy(head, head + 16, data.begin());
    for (int i = 0; i < 8; ++i) data[static_cast<size_t>(16 + i)] = static_cast<char>((static_cast<uint64_t>(bytes) >> (56 - 8 * i)) & 0xFF);
    for (size_t i = 0; i < bytes; ++i) data += static_cast<char>(i % 2 ? 0 : 0x10);  // big-endian 0x1000
    test::writeFile(path, data);
    return path;
}

// Lengths around the chunk (1152 frames of 4 bytes), the read size
// (102400 bytes) and an odd byte at the end all encode every frame.
TEST_F(SoundTest, ChunkBoundariesKeepEverySample) {
    for (size_t bytes : {size_t{4}, size_t{4607}, size_t{4608}, size_t{4612}, size_t{102400}, size_t{102404},
                         size_t{102401}, size_t{409600 + 2304}}) {
        SCOPED_TRACE(bytes);
        const std::string pcm = WritePcm(dir_.file("in.dat"), bytes);
        SoundFormat format;
        format.inRate = format.outRate = 44100;
        format.inChannels = format.outChannels = 2;
        const Mp3Result mp3 = EncodeMp3(format, pcm);
        ASSERT_TRUE(mp3.ok) << mp3.message;
        EXPECT_EQ(mp3.samplesIn, bytes / 4);
        const Decoded d = DecodeMp3(format.mp3, dir_.file("out.mp3"));
        EXPECT_NEAR(static_cast<double>(d.Frames()), static_cast<double>(bytes / 4), 2 * 1152.0);
    }
}

TEST_F(SoundTest, MissingLibraryOrEntryPointGivesErrorOneOrTwo) {
    const std::string pcm = WritePcm(dir_.file("in.dat"), 4608);
    struct Row {
        const char* library;
        int error;
    } rows[] = {{"/nonexistent/libmp3lame.so.0", kMp3NoLibrary}, {"libz.so.1", kMp3NoEntryPoint}};
    for (const Row& r : rows) {
        test::ScopedEnv env("QUILLET_LAME_LIBRARY", r.library);
        std::string message;
        EXPECT_EQ(LoadEncoder(&message), r.error);
        EXPECT_NE(message.find(r.library), std::string::npos) << message;
        SoundFormat format;
        const Mp3Result mp3 = EncodeMp3(format, pcm);
        EXPECT_FALSE(mp3.ok);
        EXPECT_EQ(mp3.error, r.error);
        EXPECT_TRUE(format.mp3.empty());
    }
}

class CancelWhileWriting : public ProgressSink {
public:
    void setSecondaryText(const std::string& text) override {
        texts.push_back(text);
        if (text.rfind("Writing audio...", 0) == 0 && text.size() > 16) writing = true;
    }
    bool cancelled() const override { return writing; }
    std::vector<std::string> texts;
    bool writing = false;
};

TEST_F(SoundTest, CancellingTheEncoderLeavesNothing) {
    const std::string pcm = WritePcm(dir_.file("in.dat"), 409600);
    CancelWhileWriting progress;
    SoundFormat format;
    const Mp3Result mp3 = EncodeMp3(format, pcm, &progress);
    EXPECT_TRUE(mp3.cancelled);
    EXPECT_FALSE(mp3.ok);
    EXPECT_TRUE(format.mp3.empty());
    EXPECT_FALSE(fs::exists(PrivateTempFile("audmp.dat")));
    ASSERT_GE(progress.texts.size(), 2u);
    EXPECT_EQ(progress.texts[0], "Writing audio...");
    EXPECT_EQ(progress.texts[1], "Writing audio...0%");
}

}  // namespace
}  // namespace quillet
