// MP3 encoding with LAME, opened with dlopen when a sound is first encoded,
// so the program starts and exports without it ($QUILLET_LAME_LIBRARY names
// another library file; the default is "libmp3lame.so.0").
//
// The encoder takes the PCM written by ImportSound ("audrw.dat", big-endian
// samples), swaps each sample to the host order in chunks and writes the
// MP3 frames to "audmp.dat" in the private temporary folder, which is read
// back whole and deleted.
//
// Output rates: an MPEG-1 stream carries 32, 44.1 and 48 kHz only. At
// 22050 Hz LAME writes MPEG-2 and at 11025 Hz MPEG-2.5 frames, which the
// player plays as well; bit rates those versions lack (above 160 kbit/s) are
// lowered by LAME to the nearest one they have.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace quillet {

class ProgressSink;

// One sound as the encoder sees it.
struct SoundFormat {
    int bitRate = 128;      // kbit/s of the output
    int outChannels = 2;
    int inRate = 44100;
    int inChannels = 2;
    int outRate = 44100;
    std::vector<uint8_t> mp3;  // the encoded data, after encoding (see kMp3SpareCapacity)
};

// The encoded data comes with this much spare capacity, so that a caller can
// put a small header in front of a long sound without a second copy of it.
constexpr size_t kMp3SpareCapacity = 8;

// The encoder's configuration record (the fields LAME is set up from).
struct Mp3EncoderConfig {
    uint32_t kind = 256;          // LAME
    uint32_t version = 1;
    uint32_t size = 331;
    uint32_t sampleRate = 0;      // what the input is read as
    uint32_t resampleRate = 0;    // what the output is written at
    int mode = 1;                 // 1 joint stereo, 3 mono
    uint32_t bitRate = 0;         // kbit/s
    int preset = 2;               // high quality
    int mpegVersion = 1;
    bool original = true;
    bool noBitReservoir = true;
    bool operator==(const Mp3EncoderConfig&) const = default;
};

// The configuration for `format`. The rates follow the channel counts:
// equal counts read at the input rate and write at the output rate; fewer
// output channels read at input rate / input channels; more output channels
// read at input rate x output channels and write at input channels x output
// rate. The mode is mono only for a mono input. (The movie always hands the
// encoder PCM already mixed to the output channel count, the first case.)
Mp3EncoderConfig MakeEncoderConfig(const SoundFormat& format);

enum Mp3Error { kMp3Ok = 0, kMp3NoLibrary = 1, kMp3NoEntryPoint = 2, kMp3Failed = 3 };

struct Mp3Result {
    bool ok = false;
    bool cancelled = false;
    int error = kMp3Ok;
    std::string message;
    uint64_t samplesIn = 0;  // frames of PCM encoded (per channel)
    // Samples a decoder puts out before the sound begins: LAME's encoder
    // delay and the decoder's own (1105 in all at every rate).
    uint32_t leadSamples = 0;
};

// The delay of the standard layer III decoder (its synthesis filter bank).
constexpr uint32_t kMp3DecoderDelay = 529;

// Loads the library on first use (per library path); kMp3Ok, kMp3NoLibrary
// or kMp3NoEntryPoint, with `message` saying which.
int LoadEncoder(std::string* message = nullptr);

// Encodes the PCM file into format.mp3. progress may be null; with it the
// texts "Writing audio..." and "Writing audio...%d%%" are shown and the
// user may cancel (no data, no temporary file left).
Mp3Result EncodeMp3(SoundFormat& format, const std::string& pcmPath, ProgressSink* progress = nullptr);

}  // namespace quillet
