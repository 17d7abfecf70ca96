// The publishing targets of a project and their options, saved with the
// project as the element `publish_data`.
#pragma once

#include <cstdint>
#include <string>

namespace quillet {

class XmlNode;
class XmlWriter;

struct PublishTarget {
    bool publish = false;   // build this target
    std::string filename;   // the file name within the output folder
    // Whether a non-interactive run may replace an existing file. Not saved.
    bool replace = true;
    bool operator==(const PublishTarget&) const = default;
};

// The page options, element `html_swf`.
struct HtmlSettings {
    enum DimensionType : int { MatchMovie = 0, Pixels = 1, Percent = 2 };  // "matchmovie", "pixels", "percent"
    enum Quality : int { Low = 0, AutoLow = 1, AutoHigh = 2, Medium = 3, High = 4, Best = 5 };
    enum WindowMode : int { Window = 0, Opaque = 1, Transparent = 2 };
    enum HtmlAlign : int { HDefault = 0, HLeft = 1, HRight = 2, HTop = 3, HBottom = 4 };
    enum Scale : int { ShowAll = 0, NoBorder = 1, ExactFit = 2 };
    enum FlashAlign : int {
        FDefault = 0, FLeft = 1, FRight = 2, FTop = 3, FBottom = 4,
        FTopLeft = 5, FTopRight = 6, FBottomLeft = 7, FBottomRight = 8
    };

    std::string swf = "Untitled.swf";  // the movie the page loads
    int origWidth = 320, origHeight = 240;  // the movie's stage size
    int width = 320, height = 240;          // the size written into the page
    uint32_t bgcolor = 0xFFFFFF;            // page background, 0x00BBGGRR
    bool autoPlay = true;
    bool loop = true;
    bool displayMenu = true;
    bool deviceFont = false;
    bool popupFunction = false;
    int dimensionType = MatchMovie;
    int quality = High;
    int windowMode = Window;
    int htmlAlign = HDefault;
    int scale = ShowAll;
    int flashAlign = FDefault;

    void Write(XmlWriter& writer) const;  // `<html_swf ... />`
    void Read(const XmlNode& element);
    bool operator==(const HtmlSettings&) const = default;
};

// Keywords of the page options ("" for a value out of range).
const char* htmlDimensionKeyword(int value);
const char* htmlQualityKeyword(int value);
const char* htmlWindowModeKeyword(int value);
const char* htmlAlignKeyword(int value);
const char* htmlScaleKeyword(int value);
const char* htmlFlashAlignKeyword(int value);

// Options of a projector, element `swf_projector`. The defaults are the
// player's own: a projector with them carries the movie unchanged.
struct ProjectorSettings {
    bool fullscreen = false;
    bool allowscale = true;
    bool showmenu = true;

    bool isPlayerDefault() const { return !fullscreen && allowscale && showmenu; }
    void Write(XmlWriter& writer) const;  // `<swf_projector ... />`
    void Read(const XmlNode& element);
    bool operator==(const ProjectorSettings&) const = default;
};

class PublishSettings {
public:
    PublishSettings();

    std::string output;                   // output folder
    bool useDefaultBaseFilename = true;   // derive every file name from the base name
    std::string defaultBaseFilename = "Untitled";

    // The targets in their fixed order.
    PublishTarget swf, flv, html, macProjector, winProjector, quicktime, screensaver;
    bool publishInstaller = false;  // the screensaver installer
    std::string installerFilename;
    bool replaceInstaller = true;   // not saved, like PublishTarget::replace
    // A page that plays the movie in Ruffle ("%s-ruffle.html"), element
    // `ruffle_page`, written only when switched on.
    PublishTarget rufflePage;

    HtmlSettings htmlSettings;
    ProjectorSettings macProjectorSettings, winProjectorSettings;
    // The movie the screensaver wraps, recorded by the publish run. Not saved.
    std::string screensaverMoviePath;

    // The defaults of a new project: the movie and the page are published
    // into the settings' default publish folder, every name from "Untitled".
    void reset();
    // Sets the base name and derives the default file names from it:
    // "%s.swf", "%s.flv", "%s.html", "%s.hqx", "%s.exe", "%s.mov", "%s.scr", "%sSS.exe",
    // "%s-ruffle.html".
    void setBaseFilename(const std::string& base);
    bool anyTarget() const;

    // `<publish_data ... >` with its target elements, `</publish_data>`. The
    // flv element's publish flag is written from the movie target's flag.
    void Write(XmlWriter& writer) const;
    // A relative output folder is taken relative to `projectFolder`.
    void Read(const XmlNode& element, const std::string& projectFolder = "");

    bool operator==(const PublishSettings&) const = default;
};

}  // namespace quillet
