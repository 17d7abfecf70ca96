#include "settings/AppSettings.h"

#include <cstdlib>
#include <filesystem>
#include <pwd.h>
#include <unistd.h>

#include "settings/SettingsStore.h"

namespace quillet {

namespace {

// Longest strings accepted from the file; a longer value keeps the default.
constexpr size_t kMaxFaceName = 255;
constexpr size_t kMaxPath = 4096;

const char* const kHAlignNames[] = {"left", "center", "right"};
const char* const kVAlignNames[] = {"top", "center", "bottom"};

std::string homeFolder() {
    if (const char* home = std::getenv("HOME"); home && *home) return home;
    if (const passwd* pw = getpwuid(getuid()); pw && pw->pw_dir) return pw->pw_dir;
    return "";
}

void readInt(const SettingsStore& s, const char* name, int& out) {
    if (auto v = s.dword(name)) out = static_cast<int>(*v);
}

void readBool(const SettingsStore& s, const char* name, bool& out) {
    if (auto v = s.dword(name)) out = *v != 0;
}

void readString(const SettingsStore& s, const char* name, std::string& out, size_t limit) {
    if (auto v = s.string(name); v && v->size() <= limit) out = *v;
}

void readFont(const SettingsStore& s, const char* name, FontRecord& out) {
    if (auto v = s.binary(name))
        if (auto f = FontRecord::fromBytes(*v)) out = *f;
}

// Alignment keywords are compared exactly; an unknown one keeps the default.
void readAlign(const SettingsStore& s, const char* name, const char* const (&names)[3], int& out) {
    auto v = s.string(name);
    if (!v) return;
    for (int i = 0; i < 3; ++i)
        if (*v == names[i]) out = i;
}

void writeFont(SettingsStore& s, const char* name, const FontRecord& f) {
    auto b = f.toBytes();
    s.setBinary(name, std::string_view(reinterpret_cast<const char*>(b.data()), b.size()));
}

const char* alignName(const char* const (&names)[3], int value) {
    return (value >= 0 && value <= 2) ? names[value] : names[1];
}

uint32_t u(int v) { return static_cast<uint32_t>(v); }

}  // namespace

std::string settingsFilePath() {
    namespace fs = std::filesystem;
    if (const char* dir = std::getenv("QUILLET_CONFIG_DIR"); dir && *dir)
        return (fs::path(dir) / "settings.ini").string();
    fs::path base;
    if (const char* xdg = std::getenv("XDG_CONFIG_HOME"); xdg && *xdg && xdg[0] == '/')
        base = xdg;
    else
        base = fs::path(homeFolder()) / ".config";
    return (base / "quillet" / "settings.ini").string();
}

std::string defaultPublishFolder() {
    std::string home = homeFolder();
    if (home.empty()) return "";
    std::error_code ec;
    std::filesystem::path docs = std::filesystem::path(home) / "Documents";
    if (std::filesystem::is_directory(docs, ec)) return docs.string();
    return home;
}

AppSettings::AppSettings() { resetToDefaults(); }

AppSettings& AppSettings::current() {
    static AppSettings settings;
    return settings;
}

void AppSettings::resetToDefaults() {
    mainWindowX = mainWindowY = 50;
    mainWindowWidth = mainWindowHeight = 400;
    showPropertiesWindowVisible = true;
    showPropertiesWindowX = showPropertiesWindowY = 100;
    slidePropertiesWindowVisible = true;
    slidePropertiesWindowX = slidePropertiesWindowY = 150;
    swfPreviewWindowVisible = false;
    swfPreviewWindowX = swfPreviewWindowY = 200;
    recentProjects = RecentList("recent_projects");
    recentImages = RecentList("recent_images");
    displayFullSettingsPath = true;
    useDefaultSystemFontChooser = true;
    checkSoftwareUpdates = true;
    defaultShowFontName = kDefaultFontFace;
    defaultShowFont = FontRecord{};
    defaultSlideFontName = kDefaultFontFace;
    defaultSlideFont = FontRecord{};
    glwPath.clear();
    defaultPublishPath = defaultPublishFolder();
    defaultImageQuality = 80;
    defaultImageScaleToFit = true;
    defaultImageKeepAspectRatio = true;
    defaultImageAlign = true;
    defaultImageHAlign = AlignCenter;
    defaultImageVAlign = AlignCenter;
    defaultImageAdjustBitmapShift = false;
    readExifData = false;
    warnTigerVersion = true;
    customColors.fill(0xFFFFFF);
    publishPlayerDownloadUrl = kDefaultPlayerDownloadUrl;
    publishPluginPageUrl = kDefaultPluginPageUrl;
    publishPlayersPath.clear();
}

void AppSettings::readFrom(const SettingsStore& s, const RecentList::ExistsCheck& exists) {
    readInt(s, "main_window_x", mainWindowX);
    readInt(s, "main_window_y", mainWindowY);
    readInt(s, "main_window_width", mainWindowWidth);
    readInt(s, "main_window_height", mainWindowHeight);
    readBool(s, "show_properties_window_visible", showPropertiesWindowVisible);
    readInt(s, "show_properties_window_x", showPropertiesWindowX);
    readInt(s, "show_properties_window_y", showPropertiesWindowY);
    readBool(s, "slide_properties_window_visible", slidePropertiesWindowVisible);
    readInt(s, "slide_properties_window_x", slidePropertiesWindowX);
    readInt(s, "slide_properties_window_y", slidePropertiesWindowY);
    readBool(s, "swf_preview_window_visible", swfPreviewWindowVisible);
    readInt(s, "swf_preview_window_x", swfPreviewWindowX);
    readInt(s, "swf_preview_window_y", swfPreviewWindowY);
    recentProjects.load(s, exists);
    recentImages.load(s, exists);
    readBool(s, "display_full_settings_path", displayFullSettingsPath);
    readBool(s, "use_default_system_font_chooser", useDefaultSystemFontChooser);
    readBool(s, "check_software_updates", checkSoftwareUpdates);
    readString(s, "default_show_font_name", defaultShowFontName, kMaxFaceName);
    readFont(s, "default_show_font", defaultShowFont);
    readString(s, "default_slide_font_name", defaultSlideFontName, kMaxFaceName);
    readFont(s, "default_slide_font", defaultSlideFont);
    readString(s, "glw_pth", glwPath, kMaxPath);
    readString(s, "default_publish_path", defaultPublishPath, kMaxPath);
    readInt(s, "default_image_quality", defaultImageQuality);
    readBool(s, "default_image_scale_to_fit", defaultImageScaleToFit);
    readBool(s, "default_image_keep_aspect_ratio", defaultImageKeepAspectRatio);
    readBool(s, "default_image_align", defaultImageAlign);
    readAlign(s, "default_image_halign", kHAlignNames, defaultImageHAlign);
    readAlign(s, "default_image_valign", kVAlignNames, defaultImageVAlign);
    readBool(s, "default_image_adjust_bitmap_shift", defaultImageAdjustBitmapShift);
    readBool(s, "read_exif_data", readExifData);
    readBool(s, "warn_tiger_version", warnTigerVersion);
    for (size_t i = 0; i < customColors.size(); ++i)
        if (auto v = s.dword("custcol_" + std::to_string(i))) customColors[i] = *v;
    readString(s, "publish_player_download_url", publishPlayerDownloadUrl, kMaxPath);
    readString(s, "publish_plugin_page_url", publishPluginPageUrl, kMaxPath);
    readString(s, "publish_players_path", publishPlayersPath, kMaxPath);
}

void AppSettings::writeTo(SettingsStore& s) const {
    s.setDword("main_window_x", u(mainWindowX));
    s.setDword("main_window_y", u(mainWindowY));
    s.setDword("main_window_width", u(mainWindowWidth));
    s.setDword("main_window_height", u(mainWindowHeight));
    s.setDword("show_properties_window_visible", showPropertiesWindowVisible);
    s.setDword("show_properties_window_x", u(showPropertiesWindowX));
    s.setDword("show_properties_window_y", u(showPropertiesWindowY));
    s.setDword("slide_properties_window_visible", slidePropertiesWindowVisible);
    s.setDword("slide_properties_window_x", u(slidePropertiesWindowX));
    s.setDword("slide_properties_window_y", u(slidePropertiesWindowY));
    s.setDword("swf_preview_window_visible", swfPreviewWindowVisible);
    s.setDword("swf_preview_window_x", u(swfPreviewWindowX));
    s.setDword("swf_preview_window_y", u(swfPreviewWindowY));
    recentProjects.save(s);
    recentImages.save(s);
    s.setDword("display_full_settings_path", displayFullSettingsPath);
    s.setDword("use_default_system_font_chooser", useDefaultSystemFontChooser);
    s.setDword("check_software_updates", checkSoftwareUpdates);
    s.setString("default_show_font_name", defaultShowFontName);
    writeFont(s, "default_show_font", defaultShowFont);
    s.setString("default_slide_font_name", defaultSlideFontName);
    writeFont(s, "default_slide_font", defaultSlideFont);
    s.setString("glw_pth", glwPath);
    s.setString("default_publish_path", defaultPublishPath);
    s.setDword("default_image_quality", u(defaultImageQuality));
    s.setDword("default_image_scale_to_fit", defaultImageScaleToFit);
    s.setDword("default_image_keep_aspect_ratio", defaultImageKeepAspectRatio);
    s.setDword("default_image_align", defaultImageAlign);
    s.setString("default_image_halign", alignName(kHAlignNames, defaultImageHAlign));
    s.setString("default_image_valign", alignName(kVAlignNames, defaultImageVAlign));
    s.setDword("default_image_adjust_bitmap_shift", defaultImageAdjustBitmapShift);
    s.setDword("read_exif_data", readExifData);
    s.setDword("warn_tiger_version", warnTigerVersion);
    for (size_t i = 0; i < customColors.size(); ++i) s.setDword("custcol_" + std::to_string(i), customColors[i]);
    // Written only when changed, so a settings file stays as it always was.
    if (publishPlayerDownloadUrl != kDefaultPlayerDownloadUrl)
        s.setString("publish_player_download_url", publishPlayerDownloadUrl);
    if (publishPluginPageUrl != kDefaultPluginPageUrl) s.setString("publish_plugin_page_url", publishPluginPageUrl);
    if (!publishPlayersPath.empty()) s.setString("publish_players_path", publishPlayersPath);
}

bool AppSettings::load(std::string* error) { return load(settingsFilePath(), error); }

bool AppSettings::load(const std::string& path, std::string* error) {
    SettingsStore store;
    if (!store.loadFile(path, error)) return false;
    readFrom(store);
    return true;
}

bool AppSettings::save(std::string* error) const { return save(settingsFilePath(), error); }

bool AppSettings::save(const std::string& path, std::string* error) const {
    // Values this program does not know (another version's, or ones written by
    // hand) stay in the file; a file that cannot be read is simply replaced.
    SettingsStore store;
    store.loadFile(path);
    writeTo(store);
    return store.saveFile(path, error);
}

}  // namespace quillet
