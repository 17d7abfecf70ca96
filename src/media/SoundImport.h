// Reads a WAV, AIFF or MP3 file through libsndfile into 16-bit big-endian
// PCM in "audrw.dat" in the private temporary folder, ready for the MP3
// encoder. The file is read in blocks, so memory stays flat however long it
// is; only the part that plays (start time, duration) is written, already
// mixed to the channel count wanted in the movie.
//
// "audrw.dat" layout (all numbers big-endian):
//   0  "QPCM"
//   4  u32 offset of the samples (32)
//   8  u32 sample rate, Hz
//  12  u32 channels (1 or 2)
//  16  u64 length of the samples in bytes
//  24  8 bytes zero
//  32  interleaved s16 samples
#pragma once

#include <cstdint>
#include <string>

namespace quillet {

class ProgressSink;

struct SoundImportRequest {
    std::string path;
    uint32_t startMs = 0;          // where in the file playback starts
    uint32_t durationMs = 0;       // how much plays, unless playEntireSound
    bool playEntireSound = true;
    int channels = 2;              // 1 or 2 in the output
};

struct PcmInfo {
    uint32_t sampleRate = 0;
    uint32_t channels = 0;
    uint64_t dataOffset = 0;
    uint64_t dataBytes = 0;
    uint64_t Frames() const { return channels ? dataBytes / (2ull * channels) : 0; }
};

struct SoundImportResult {
    bool ok = false;
    bool cancelled = false;
    std::string error;       // names the file and the problem
    std::string pcmPath;     // "audrw.dat" when ok
    PcmInfo pcm;
    uint32_t sourceRate = 0, sourceChannels = 0;
};

constexpr uint32_t kPcmHeaderBytes = 32;

SoundImportResult ImportSound(const SoundImportRequest& request, class ProgressSink* progress = nullptr);
// Reads the header of a PCM file written by ImportSound; false when it is not one.
bool ReadPcmHeader(const std::string& path, PcmInfo& info);

}  // namespace quillet
