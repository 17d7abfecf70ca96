#include <gtest/gtest.h>

#include <filesystem>

#include "settings/AppSettings.h"
#include "settings/FontRecord.h"
#include "settings/RecentList.h"
#include "settings/SettingsStore.h"
#include "support/TempDir.h"

using namespace quillet;
using quillet::test::ScopedEnv;
using quillet::test::TempDir;

TEST(AppSettings, SaveAndLoadKeepEveryValue) {
    TempDir dir;
    std::string existing = dir.file("photo.jpg");
    quillet::test::writeFile(existing, "x");

    AppSettings s;
    s.mainWindowX = -20;  // a window on a monitor left of the primary one
    s.mainWindowHeight = 777;
    s.swfPreviewWindowVisible = true;
    s.displayFullSettingsPath = false;
    s.defaultShowFontName = "DejaVu Sans";
    s.defaultSlideFont.height = -24;
    s.defaultSlideFont.weight = 700;
    s.defaultSlideFont.italic = 1;
    s.defaultSlideFont.pitchAndFamily = 34;
    s.glwPath = "/opt/glyph\\work\nline";  // backslash and line break survive
    s.defaultPublishPath = "/home/ann/Vid\xc3\xa9os";
    s.defaultImageQuality = 55;
    s.defaultImageHAlign = AppSettings::AlignEnd;
    s.defaultImageVAlign = AppSettings::AlignStart;
    s.defaultImageAdjustBitmapShift = true;
    s.readExifData = true;
    s.customColors[3] = 0x123456;
    s.recentImages.add(existing);
    ASSERT_TRUE(s.save(dir.file("sub/settings.ini")));

    AppSettings back;
    ASSERT_TRUE(back.load(dir.file("sub/settings.ini")));
    EXPECT_EQ(back, s);

    std::string text = quillet::test::readFile(dir.file("sub/settings.ini"));
    EXPECT_NE(text.find("main_window_x=dword:4294967276\n"), std::string::npos);
    EXPECT_NE(text.find("default_image_halign=string:right\n"), std::string::npos);
    EXPECT_NE(text.find("glw_pth=string:/opt/glyph\\\\work\\nline\n"), std::string::npos);
    EXPECT_NE(text.find("default_slide_font=binary:e8ffffff000000000000000000000000bc020000"),
              std::string::npos);
    // The table's order: window values first, colours last.
    EXPECT_LT(text.find("main_window_x="), text.find("recent_projects_max="));
    EXPECT_LT(text.find("recent_images_1="), text.find("display_full_settings_path="));
    EXPECT_LT(text.find("warn_tiger_version="), text.find("custcol_0="));
    EXPECT_EQ(text.find(".tmp-"), std::string::npos);
    // No temporary file is left beside it.
    size_t files = 0;
    for ([[maybe_unused]] auto& e : std::filesystem::directory_iterator(dir.file("sub"))) ++files;
    EXPECT_EQ(files, 1u);
}

TEST(AppSettings, SavingKeepsTheValuesOfOthersInTheirOrder) {
    TempDir dir;
    const std::string path = dir.file("settings.ini");
    const std::string project = dir.file("show.qpj");
    quillet::test::writeFile(project, "x");
    // Many values of another version around two of ours: all load, and all
    // survive a save in the order first written.
    constexpr int kOthers = 40000;
    std::string text = "main_window_x=dword:7\nrecent_projects_1=string:" + project + "\n";
    for (int i = 0; i < kOthers; ++i) text += "other_" + std::to_string(i) + "=dword:" + std::to_string(i) + "\n";
    text += "other_path=string:/opt/a\\tb\n";
    quillet::test::writeFile(path, text);

    AppSettings s;
    ASSERT_TRUE(s.load(path));
    EXPECT_EQ(s.mainWindowX, 7);
    s.mainWindowX = 9;
    // A file the user took off the list must not come back from the old line.
    s.recentProjects.remove(project);
    ASSERT_TRUE(s.save(path));

    SettingsStore back;
    ASSERT_TRUE(back.loadFile(path));
    EXPECT_EQ(back.dword("main_window_x"), 9u);
    EXPECT_FALSE(back.has("recent_projects_1"));
    int kept = 0;
    for (int i = 0; i < kOthers; ++i) kept += back.dword("other_" + std::to_string(i)) == uint32_t(i);
    EXPECT_EQ(kept, kOthers);
    EXPECT_EQ(back.string("other_path"), "/opt/a\tb");
    const std::string saved = quillet::test::readFile(path);
    EXPECT_LT(saved.find("main_window_x="), saved.find("other_0="));
    EXPECT_LT(saved.find("other_0="), saved.find("other_39999="));
    EXPECT_LT(saved.find("other_path="), saved.find("main_window_y="));
}

TEST(AppSettings, DamagedValuesKeepTheirDefaults) {
    SettingsStore store;
    store.parse(
        "garbage without equals\n"
        "main_window_x=dword:12abc\n"           // not a number
        "main_window_y=string:77\n"             // wrong type
        "main_window_width=dword:640\r\n"       // CRLF line is fine
        "default_image_halign=string:Right\n"   // keywords are exact
        "default_image_valign=string:bottom\n"
        "default_show_font=binary:00ff\n"       // not 28 bytes
        "default_slide_font=binary:zz\n"        // not hex
        "glw_pth=string:bad\\q escape\n"
        "custcol_2=dword:99999999999\n"         // beyond 32 bits
        "custcol_1=dword:255\n");
    AppSettings s;
    s.readFrom(store);
    EXPECT_EQ(s.mainWindowX, 50);
    EXPECT_EQ(s.mainWindowY, 50);
    EXPECT_EQ(s.mainWindowWidth, 640);
    EXPECT_EQ(s.defaultImageHAlign, AppSettings::AlignCenter);
    EXPECT_EQ(s.defaultImageVAlign, AppSettings::AlignEnd);
    EXPECT_EQ(s.defaultShowFont, FontRecord{});
    EXPECT_EQ(s.defaultSlideFont, FontRecord{});
    EXPECT_EQ(s.glwPath, "");
    EXPECT_EQ(s.customColors[2], 0xFFFFFFu);
    EXPECT_EQ(s.customColors[1], 255u);

    // A file that cannot be read as settings at all still starts with defaults.
    TempDir dir;
    const char junk[] = "\0\x01\x02\xff binary junk";
    quillet::test::writeFile(dir.file("settings.ini"), std::string(junk, sizeof junk - 1));
    AppSettings t;
    EXPECT_TRUE(t.load(dir.file("settings.ini")));
    EXPECT_EQ(t, AppSettings{});
    // A folder where the file should be cannot be read: false, defaults kept.
    std::filesystem::create_directory(dir.file("folder.ini"));
    std::string error;
    AppSettings u;
    EXPECT_FALSE(u.load(dir.file("folder.ini"), &error));
    EXPECT_FALSE(error.empty());
    EXPECT_EQ(u, AppSettings{});
}

TEST(AppSettings, FileLocationFollowsTheEnvironment) {
    {
        ScopedEnv a("QUILLET_CONFIG_DIR", "/tmp/qcfg");
        ScopedEnv b("XDG_CONFIG_HOME", "/tmp/xdg");
        EXPECT_EQ(settingsFilePath(), "/tmp/qcfg/settings.ini");
    }
    {
        ScopedEnv a("QUILLET_CONFIG_DIR", nullptr);
        ScopedEnv b("XDG_CONFIG_HOME", "/tmp/xdg");
        EXPECT_EQ(settingsFilePath(), "/tmp/xdg/quillet/settings.ini");
    }
    {
        ScopedEnv a("QUILLET_CONFIG_DIR", nullptr);
        ScopedEnv b("XDG_CONFIG_HOME", nullptr);
        ScopedEnv c("HOME", "/home/ann");
        EXPECT_EQ(settingsFilePath(), "/home/ann/.config/quillet/settings.ini");
    }
    TempDir dir;
    ScopedEnv a("QUILLET_CONFIG_DIR", dir.path().c_str());
    AppSettings s;
    s.defaultImageQuality = 42;
    ASSERT_TRUE(s.save());
    AppSettings back;
    ASSERT_TRUE(back.load());
    EXPECT_EQ(back.defaultImageQuality, 42);
}

TEST(RecentList, CapacityOrderAndCase) {
    RecentList list("recent_projects", 3);
    list.add("/a.qpj");
    list.add("/b.qpj");
    list.add("/c.qpj");
    list.add("/d.qpj");  // the oldest falls off
    EXPECT_EQ(list.entries(), (std::vector<std::string>{"/d.qpj", "/c.qpj", "/b.qpj"}));
    list.add("/B.QPJ");  // same file ignoring case: moves to the front, as given now
    EXPECT_EQ(list.entries(), (std::vector<std::string>{"/B.QPJ", "/d.qpj", "/c.qpj"}));
    list.setCapacity(1);
    EXPECT_EQ(list.entries(), (std::vector<std::string>{"/B.QPJ"}));
    list.setCapacity(0);
    list.add("/e.qpj");
    EXPECT_TRUE(list.entries().empty());
}

TEST(RecentList, LoadingDropsMissingFilesAndHonoursTheCapacity) {
    auto exists = [](const std::string& p) { return p.find("gone") == std::string::npos; };
    SettingsStore store;
    store.parse(
        "recent_projects_max=dword:5\n"
        "recent_projects_1=string:/one.qpj\n"
        "recent_projects_2=string:/gone.qpj\n"
        "recent_projects_3=string:/ONE.qpj\n"   // a duplicate of number 1
        "recent_projects_4=string:/four.qpj\n"
        "recent_projects_6=string:/six.qpj\n"   // after a gap: not read
        "recent_images_max=dword:0\n"
        "recent_images_1=string:/x.png\n");
    RecentList projects("recent_projects"), images("recent_images");
    projects.load(store, exists);
    images.load(store, exists);
    EXPECT_EQ(projects.entries(), (std::vector<std::string>{"/one.qpj", "/four.qpj"}));
    EXPECT_TRUE(images.entries().empty());
    EXPECT_EQ(images.capacity(), 0u);

    SettingsStore out;
    projects.save(out);
    EXPECT_EQ(out.dword("recent_projects_max"), 5u);
    EXPECT_EQ(out.string("recent_projects_1"), "/one.qpj");
    EXPECT_EQ(out.string("recent_projects_2"), "/four.qpj");
    EXPECT_FALSE(out.has("recent_projects_3"));

    // A deleted file disappears after the next start (the real file check).
    TempDir dir;
    std::string kept = dir.file("kept.qpj"), deleted = dir.file("deleted.qpj");
    quillet::test::writeFile(kept, "x");
    quillet::test::writeFile(deleted, "x");
    AppSettings s;
    s.recentProjects.add(deleted);
    s.recentProjects.add(kept);
    ASSERT_TRUE(s.save(dir.file("s.ini")));
    std::filesystem::remove(deleted);
    AppSettings next;
    ASSERT_TRUE(next.load(dir.file("s.ini")));
    EXPECT_EQ(next.recentProjects.entries(), (std::vector<std::string>{kept}));
}

TEST(SettingsStore, StringEscapesRoundTripEveryByte) {
    std::string all;
    for (int b = 0; b < 256; ++b) all += static_cast<char>(b);
    std::string escaped = escapeSettingString(all);
    EXPECT_EQ(escaped.find('\n'), std::string::npos);
    EXPECT_EQ(escaped.find('\r'), std::string::npos);
    EXPECT_EQ(unescapeSettingString(escaped), all);
    EXPECT_FALSE(unescapeSettingString("ends in \\"));
    EXPECT_FALSE(unescapeSettingString("\\x4"));
    EXPECT_FALSE(unescapeSettingString("\\xg0"));

    SettingsStore s;
    s.setString("a", all);
    s.setBinary("b", all);
    s.setDword("c", 0xFFFFFFFF);
    SettingsStore back;
    back.parse(s.serialize());
    EXPECT_EQ(back.string("a"), all);
    EXPECT_EQ(back.binary("b"), all);
    EXPECT_EQ(back.dword("c"), 0xFFFFFFFFu);
    EXPECT_FALSE(back.dword("a"));  // wrong type reads as absent
}

TEST(FontRecord, BytesAndHex) {
    FontRecord f;
    f.height = -16;
    f.weight = 700;
    f.italic = 1;
    f.charSet = 0xEE;
    auto bytes = f.toBytes();
    EXPECT_EQ(bytes[0], 0xF0);
    EXPECT_EQ(bytes[3], 0xFF);
    EXPECT_EQ(bytes[16], 0xBC);
    EXPECT_EQ(bytes[17], 0x02);
    EXPECT_EQ(bytes[20], 1);
    EXPECT_EQ(bytes[23], 0xEE);
    std::string hex = f.toHex();
    EXPECT_EQ(hex.size(), 56u);
    EXPECT_EQ(FontRecord::fromHex(hex), f);
    EXPECT_FALSE(FontRecord::fromHex(hex.substr(2)));
    EXPECT_FALSE(FontRecord::fromHex(hex + "00"));
    EXPECT_FALSE(FontRecord::fromBytes("short"));
}
