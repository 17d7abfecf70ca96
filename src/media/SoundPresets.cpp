#include "media/SoundPresets.h"

namespace quillet {

std::span<const SoundPreset> SoundPresets() {
    static const SoundPreset presets[] = {
        {"Custom", 0, 0, false, false},
        {"Very Low", 11025, 56, false, true},
        {"Low", 11025, 64, false, true},
        {"Medium", 11025, 96, false, true},
        {"High", 44100, 128, false, true},
        {"Very High", 44100, 160, false, true},
        {"Highest", 44100, 320, true, true},
        {"Near-CD Quality", 44100, 160, false, true},
        {"Speech/Voice", 11025, 32, false, true},
    };
    return presets;
}

std::span<const SoundFileFilter> SoundFileFilters() {
    static const SoundFileFilter filters[] = {
        {"All Sounds", "*.aiff;*.mp3;*.wav"},
        {"AIFF (*.aiff)", "*.aiff"},
        {"MP3 (*.mp3)", "*.mp3"},
        {"Wave (*.wav)", "*.wav"},
        {"All Files (*.*)", "*.*"},
    };
    return filters;
}

std::span<const int> SoundSampleRates() {
    static const int rates[] = {44100, 22050, 11025};
    return rates;
}

}  // namespace quillet
