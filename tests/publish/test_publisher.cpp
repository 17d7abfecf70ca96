// The publish run: which targets are built, what the replace answers keep,
// the failure rules, and that nothing lands outside the output folder.
#include <gtest/gtest.h>

#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <set>
#include <sstream>

#include "model/PublishSettings.h"
#include "model/SlideShow.h"
#include "publish/Publisher.h"
#include "support/TempDir.h"
#include "xml/XmlWriter.h"

namespace quillet {
namespace {

namespace fs = std::filesystem;

class ScriptedPrompts : public PublishPrompts {
public:
    std::deque<ReplaceReply> replies;
    std::vector<std::string> asked;
    ReplaceReply AskReplace(const std::string& question) override {
        asked.push_back(question);
        if (replies.empty()) return {ReplaceAnswer::Stop, false};
        ReplaceReply r = replies.front();
        replies.pop_front();
        return r;
    }
};

// name -> contents of every file under `folder`, folders marked with '/'.
std::map<std::string, std::string> listing(const fs::path& folder) {
    std::map<std::string, std::string> out;
    for (const auto& e : fs::recursive_directory_iterator(folder)) {
        std::string rel = fs::relative(e.path(), folder).string();
        out[rel + (e.is_directory() ? "/" : "")] = e.is_directory() ? "" : test::readFile(e.path().string());
    }
    return out;
}

std::set<std::string> names(const std::map<std::string, std::string>& files) {
    std::set<std::string> out;
    for (const auto& [name, _] : files) out.insert(name);
    return out;
}

struct Scenario {
    const char* name;
    std::function<void(PublishSettings&)> select;
    std::vector<std::string> existing;    // files there before, holding "old"
    std::deque<ReplaceReply> replies;     // empty: a non-interactive run
    bool replaceFlag;                     // the non-interactive replace flag
    std::set<std::string> replaced;       // existing files that get new contents
    std::set<std::string> created;        // new files
    bool ok;
    const char* lastMessage;
    std::vector<std::string> skipped = {};
    bool withoutMacResources = false;     // the players folder lacks mac-player.rsrc
};

void only(PublishSettings& s, std::initializer_list<PublishTarget*> targets) {
    s.swf.publish = s.html.publish = false;
    for (PublishTarget* t : targets) t->publish = true;
}

constexpr ReplaceReply kReplace{ReplaceAnswer::Replace, false};
constexpr ReplaceReply kReplaceAll{ReplaceAnswer::Replace, true};
constexpr ReplaceReply kKeep{ReplaceAnswer::DontReplace, false};
constexpr ReplaceReply kKeepAll{ReplaceAnswer::DontReplace, true};
constexpr ReplaceReply kStop{ReplaceAnswer::Stop, false};

TEST(Publisher, TargetsAnswersAndFailures) {
    const char* done = "Publishing has completed.";
    const Scenario scenarios[] = {
        {"defaults: movie and page", [](PublishSettings&) {}, {}, {}, false, {}, {"show.swf", "show.html"}, true, done},
        {"page alone names the movie but writes none", [](PublishSettings& s) { only(s, {&s.html}); }, {}, {},
         false, {}, {"show.html"}, true, done},
        {"a Ruffle page brings its movie", [](PublishSettings& s) { only(s, {&s.rufflePage}); }, {}, {}, false, {},
         {"show.swf", "show-ruffle.html", "ruffle/", "ruffle/ruffle.js"}, true, done},
        {"nothing selected", [](PublishSettings& s) { only(s, {}); }, {}, {}, false, {}, {}, true,
         "You have not selected any formats to publish."},
        {"targets this version lacks are left out",
         [](PublishSettings& s) { only(s, {&s.flv, &s.quicktime, &s.screensaver, &s.html}); }, {}, {}, false, {},
         {"show.html"}, true, done},
        {"stop at the first question keeps everything", [](PublishSettings&) {}, {"show.swf", "show.html"},
         {kStop}, false, {}, {}, true, done},
        {"replace one, keep the next", [](PublishSettings&) {}, {"show.swf", "show.html"}, {kReplace, kKeep},
         false, {"show.swf"}, {}, true, done},
        {"replace all asks once", [](PublishSettings& s) { s.winProjector.publish = true; },
         {"show.swf", "show.html", "show.exe"}, {kReplaceAll}, false, {"show.swf", "show.html", "show.exe"}, {},
         true, done},
        {"keep all drops the later targets",
         [](PublishSettings& s) { s.winProjector.publish = true; }, {"show.swf", "show.html"}, {kKeepAll}, false,
         {}, {"show.exe"}, true, done},
        {"a pipe keeps existing files and says which", [](PublishSettings&) {}, {"show.html"}, {}, false, {},
         {"show.swf"}, true, done, {"HTML page"}},
        {"a pipe with --replace replaces", [](PublishSettings&) {}, {"show.html"}, {}, true, {"show.html"},
         {"show.swf"}, true, done},
        {"projectors from a movie kept outside the folder",
         [](PublishSettings& s) { only(s, {&s.winProjector, &s.macProjector}); }, {}, {}, false, {},
         {"show.exe", "show.hqx"}, true, done},
        {"a missing player fails after the movie",
         [](PublishSettings& s) { s.macProjector.publish = true; s.macProjector.filename = "nope.hqx"; }, {}, {},
         false, {}, {"show.swf", "show.html"}, false, "An error occurred while trying to publish the Macintosh Projectir.",
         {}, true},
        {"a name that climbs out", [](PublishSettings& s) { s.swf.filename = "../x.swf"; }, {}, {}, false, {}, {},
         false, "Please enter a valid filename for the SWF."},
        {"an absolute name", [](PublishSettings& s) { s.html.filename = "/tmp/x.html"; }, {}, {}, false, {}, {},
         false, "Please enter a valid filename for the HTML."},
        {"an empty name", [](PublishSettings& s) { s.winProjector.publish = true; s.winProjector.filename = ""; }, {},
         {}, false, {}, {}, false, "Please enter a valid filename for the Windows Projector."},
        {"no output folder", [](PublishSettings& s) { s.output += "/missing"; }, {}, {}, false, {}, {}, false,
         "The output location does not exist. Please choose a valid location to output the files to."},
    };
    for (const Scenario& sc : scenarios) {
        SCOPED_TRACE(sc.name);
        test::TempDir dir;
        fs::path out = dir.path() / "out", players = dir.path() / "players";
        fs::create_directories(out);
        fs::create_directories(players);
        test::writeFile((players / "windows-player.exe").string(), "WINPLAYER");
        test::writeFile((players / "mac-player.data").string(), "MACDATA");
        test::writeFile((players / "mac-player.rsrc").string(), "MACRSRC");
        test::writeFile((players / "ruffle.js").string(), "RUFFLE");
        if (sc.withoutMacResources) fs::remove(players / "mac-player.rsrc");
        for (const std::string& f : sc.existing) test::writeFile((out / f).string(), "old");
        auto before = listing(dir.path());

        SlideShow show;
        PublishSettings settings;
        settings.output = out.string();
        settings.setBaseFilename("show");
        for (PublishTarget* t : {&settings.swf, &settings.html, &settings.winProjector, &settings.macProjector})
            t->replace = sc.replaceFlag;
        sc.select(settings);
        ScriptedPrompts prompts;
        prompts.replies = sc.replies;
        PublishOptions options;
        if (!sc.replies.empty()) options.prompts = &prompts;
        options.playersFolder = players.string();
        options.rufflePlayer = players.string();

        PublishResult r = Publish(settings, show, options);
        EXPECT_EQ(r.ok, sc.ok);
        ASSERT_FALSE(r.messages.empty());
        EXPECT_EQ(r.messages.back().text, sc.lastMessage);
        if (sc.withoutMacResources) {
            EXPECT_NE(r.messages.back().detail.find("mac-player.rsrc"), std::string::npos) << r.messages.back().detail;
        }
        EXPECT_EQ(prompts.asked.size(), sc.replies.size());
        EXPECT_EQ(r.skipped, sc.skipped);

        auto after = listing(dir.path());
        std::set<std::string> expected = names(before);
        for (const std::string& f : sc.created) expected.insert("out/" + f);
        EXPECT_EQ(names(after), expected);
        for (const std::string& f : sc.existing)
            EXPECT_EQ(after["out/" + f] != "old", sc.replaced.count(f) == 1) << f;
    }
}

TEST(Publisher, ProjectorsCarryTheMovieAndThePagePointsAtIt) {
    test::TempDir dir;
    fs::create_directories(dir.path() / "p");
    test::writeFile(dir.file("p/windows-player.exe"), std::string(1000, 'W'));
    test::writeFile(dir.file("p/mac-player.data"), "D");
    test::writeFile(dir.file("p/mac-player.rsrc"), "R");
    SlideShow show;
    show.setSize(640, 480);
    PublishSettings settings;
    settings.output = dir.path().string();
    settings.setBaseFilename("my show");
    settings.winProjector.publish = true;
    settings.htmlSettings.swf = "stale.swf";
    PublishOptions options;
    options.playersFolder = dir.file("p");
    PublishResult r = Publish(settings, show, options);
    ASSERT_TRUE(r.ok) << r.messages.back().detail;

    std::string movie = test::readFile(dir.file("my show.swf"));
    std::string exe = test::readFile(dir.file("my show.exe"));
    EXPECT_EQ(exe, std::string(1000, 'W') + movie + "\x56\x34\x12\xFA" + std::string(1, char(movie.size())) +
                       std::string(1, char(movie.size() >> 8)) + std::string(2, '\0'));
    std::string page = test::readFile(dir.file("my show.html"));
    EXPECT_NE(page.find("<PARAM NAME=movie VALUE=\"my show.swf\">"), std::string::npos);
    EXPECT_NE(page.find("WIDTH=\"640\" HEIGHT=\"480\""), std::string::npos);
}

TEST(Publisher, RufflePageIsSavedOnlyWhenOn) {
    auto saved = [](const PublishSettings& s) {
        std::ostringstream text;
        XmlWriter w;
        w.open(text);
        s.Write(w);
        return text.str();
    };
    PublishSettings settings;
    settings.setBaseFilename("show");
    std::string plain = saved(settings);
    EXPECT_EQ(plain.find("ruffle"), std::string::npos);
    settings.rufflePage.publish = true;
    std::string on = saved(settings);
    EXPECT_NE(on.find("<ruffle_page publish=\"true\" filename=\"show-ruffle.html\" />\n</publish_data>"),
              std::string::npos)
        << on;
}

}  // namespace
}  // namespace quillet
