// The MP3 quality presets and the sound file filter offered by the sound
// panels, in list order. "Custom" carries no values: choosing it leaves the
// rate and bit rate free. `isPreset` marks a real preset; `highest` is set
// on "Highest" alone.
#pragma once

#include <span>

namespace quillet {

struct SoundPreset {
    const char* label;
    int sampleRate;  // Hz
    int bitRate;     // kbit/s
    bool highest;
    bool isPreset;
};

struct SoundFileFilter {
    const char* label;
    const char* patterns;  // ';'-separated
};

std::span<const SoundPreset> SoundPresets();
std::span<const SoundFileFilter> SoundFileFilters();
// The output rates offered, highest first.
std::span<const int> SoundSampleRates();

}  // namespace quillet
