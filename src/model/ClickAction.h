// What clicking a slide does, and the browser window a popup click opens.
// Both are parts of a slide, saved as the empty elements `click_actions` and
// `popup_data`.
#pragma once

#include <string>

namespace quillet {

class XmlNode;
class XmlWriter;

struct ClickAction {
    enum class Type : int {
        GetUrl = 0,         // "get_url"
        LoadMovie = 1,      // "load_movie"
        NextSlide = 2,      // "next_slide"
        PreviousSlide = 3,  // "previous_slide"
        JumpToSlide = 4,    // "jump_to_slide"
        FirstSlide = 5,     // "first_slide"
        LastSlide = 6,      // "last_slide"
        Print = 7           // "print"
    };

    bool enable = false;                        // clicking the slide runs the action
    Type type = Type::GetUrl;
    int jumpTo = 1;                             // 1-based slide number for JumpToSlide
    std::string target = "_self";               // browser window for GetUrl
    std::string url = "http://";                // address for GetUrl / LoadMovie
    bool popup = false;                         // open url in the slide's popup window
    bool pauseAfter = false;                    // pause the show after the action
    bool loadUrlOnDisplay = false;              // open a URL when the slide is first shown
    std::string onDisplayLoadUrl = "http://";
    std::string onDisplayLoadTarget = "_blank";

    // `<click_actions enable=... on_display_load_target=... />` on one line.
    void write(XmlWriter& writer) const;
    // The type keyword is compared ignoring case; the others exactly.
    void read(const XmlNode& element);

    bool operator==(const ClickAction&) const = default;
};

const char* clickActionKeyword(ClickAction::Type type);  // "" when out of range
bool clickActionFromKeyword(const std::string& keyword, ClickAction::Type& out);  // ignoring case

// The features of the browser window that a popup click action opens.
struct PopupWindow {
    int width = 100, height = 100;  // pixels
    int x = 0, y = 0;
    bool resizable = false;
    bool toolbar = false;
    bool scrollbar = false;
    bool directory = false;
    bool status = false;
    bool location = false;
    bool menubar = false;

    // `<popup_data width=... menubar=... />` on one line.
    void write(XmlWriter& writer) const;
    void read(const XmlNode& element);

    bool operator==(const PopupWindow&) const = default;
};

}  // namespace quillet
