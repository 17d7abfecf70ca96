// The user's preferences: window placements, recent files, default fonts,
// the defaults that new slides take, the default publish folder and the
// custom colours of the colour chooser.
//
// They live in one settings file per user (see settingsFilePath()), loaded at
// start-up and saved at exit. A missing or damaged file leaves the defaults.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "settings/FontRecord.h"
#include "settings/RecentList.h"

namespace quillet {

class SettingsStore;

// $QUILLET_CONFIG_DIR/settings.ini when that variable is set, else
// $XDG_CONFIG_HOME/quillet/settings.ini (by default ~/.config/quillet/settings.ini).
std::string settingsFilePath();

class AppSettings {
public:
    // Alignment of new slides: 0 left/top, 1 center, 2 right/bottom (stored
    // as the strings "left", "center", "right" / "top", "center", "bottom").
    enum Align : int { AlignStart = 0, AlignCenter = 1, AlignEnd = 2 };

    static constexpr const char* kDefaultPlayerDownloadUrl =
        "http://download.macromedia.com/pub/shockwave/cabs/flash/swflash.cab";
    static constexpr const char* kDefaultPluginPageUrl = "http://www.macromedia.com/shockwave/download/index.cgi";

    AppSettings();

    // The settings of this run: defaults until someone loads them. New slides
    // read their image defaults from here when they are reset.
    static AppSettings& current();

    // Reads every value present in the settings file; an absent or unreadable
    // value keeps its default. False only when the file exists but cannot be
    // read (every value then keeps its default); `error` says why.
    bool load(std::string* error = nullptr);
    bool load(const std::string& path, std::string* error = nullptr);
    // Writes every value, in the order of the members below, atomically.
    // Values already in the file that are not ours keep their place.
    bool save(std::string* error = nullptr) const;
    bool save(const std::string& path, std::string* error = nullptr) const;

    void resetToDefaults();

    // The values through a store (the file's contents), for tests and tools.
    void readFrom(const SettingsStore& store, const RecentList::ExistsCheck& exists = {});
    void writeTo(SettingsStore& store) const;

    int mainWindowX = 50, mainWindowY = 50;
    int mainWindowWidth = 400, mainWindowHeight = 400;
    bool showPropertiesWindowVisible = true;
    int showPropertiesWindowX = 100, showPropertiesWindowY = 100;
    bool slidePropertiesWindowVisible = true;
    int slidePropertiesWindowX = 150, slidePropertiesWindowY = 150;
    bool swfPreviewWindowVisible = false;
    int swfPreviewWindowX = 200, swfPreviewWindowY = 200;
    RecentList recentProjects{"recent_projects"};
    RecentList recentImages{"recent_images"};
    bool displayFullSettingsPath = true;
    bool useDefaultSystemFontChooser = true;
    bool checkSoftwareUpdates = true;
    std::string defaultShowFontName = kDefaultFontFace;
    FontRecord defaultShowFont;
    std::string defaultSlideFontName = kDefaultFontFace;
    FontRecord defaultSlideFont;
    std::string glwPath;             // folder of the installed Glyphwork effects engine
    std::string defaultPublishPath;  // the user's documents folder unless set
    int defaultImageQuality = 80;
    bool defaultImageScaleToFit = true;
    bool defaultImageKeepAspectRatio = true;
    bool defaultImageAlign = true;
    int defaultImageHAlign = AlignCenter;
    int defaultImageVAlign = AlignCenter;
    bool defaultImageAdjustBitmapShift = false;
    bool readExifData = false;
    bool warnTigerVersion = true;    // true: the warning is still shown
    std::array<uint32_t, 16> customColors;  // 0x00BBGGRR, white by default
    // Published pages: where a browser without the player is sent (the OBJECT's
    // codebase and the EMBED's plug-in page), and the folder of the player
    // images projectors are made from (windows-player.exe, mac-player.data,
    // mac-player.rsrc). Saved only when set to something else.
    std::string publishPlayerDownloadUrl = kDefaultPlayerDownloadUrl;
    std::string publishPluginPageUrl = kDefaultPluginPageUrl;
    std::string publishPlayersPath;

    bool operator==(const AppSettings&) const = default;
};

// The folder proposed for published files when the settings name none:
// ~/Documents when it exists, else the home folder.
std::string defaultPublishFolder();

}  // namespace quillet
