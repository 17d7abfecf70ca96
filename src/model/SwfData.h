// How the finished movie behaves when it starts, is clicked, ends and while it
// is still loading: one record of the show, saved as the element `swf_data`.
#pragma once

#include <cstdint>
#include <string>

#include "settings/FontRecord.h"

namespace quillet {

class XmlNode;
class XmlWriter;

struct SwfData {
    enum class StartAction : int {
        PlayAutomatically = 0,  // "play_automatically"
        PlayAfterPause = 1,     // "play_after_pause"
        StopOnFirstFrame = 2    // "stop_on_first_frame"
    };
    enum class PreloadType : int { Simple = 0, Smart = 1 };  // "simple", "smart"
    enum class Loop : int { None = 0, Times = 1, Forever = 2 };  // "none", "times", "forever"

    // The movie-wide click action: 0 get URL ("get_url"), 1 load movie ("load_movie").
    // The end action also has 2, unload movie ("unload_movie").
    struct UrlAction {
        bool enable = false;
        int action = 0;
        std::string url = "http://";
        std::string target = "_blank";
        bool operator==(const UrlAction&) const = default;
    };

    StartAction movieStartAction = StartAction::PlayAutomatically;
    int pauseTime = 2000;                // milliseconds, for PlayAfterPause
    bool preload = false;                // write a preloader in front of the show
    std::string preloadImportSrc;        // a preloader movie imported from a file
    int preloadAmount = 100;             // percent of the movie loaded before play starts
    std::string preloadText = "Loading...";
    uint32_t preloadTextColor = 0xFFFFFF;  // 0x00RRGGBB
    std::string preloadFontName = kDefaultFontFace;
    FontRecord preloadFont;
    PreloadType preloadType = PreloadType::Simple;
    Loop loop = Loop::None;
    int loopCount = 1;                   // repetitions for Loop::Times
    UrlAction mouseClickAction;
    UrlAction movieEndAction{false, 0, "http://", "_self"};

    void reset() { *this = SwfData(); }

    // `<swf_data ...>`, `<mouse_click_action ... />`, `<movie_end_action ... />`, `</swf_data>`.
    void Write(XmlWriter& writer) const;
    // Reads the same names with the file format's differences: the font name
    // comes from `font_name` (so a file we wrote keeps the default name), and
    // neither `preload_creator` nor `preload_type` is read. Relative import
    // paths are taken relative to `baseFolder` when one is given.
    void Read(const XmlNode& element, const std::string& baseFolder = "");

    bool operator==(const SwfData&) const = default;
};

}  // namespace quillet
