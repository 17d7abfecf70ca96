// How the show starts, loops and ends: the pause before it plays, the
// addresses of the click and end actions, the branches of the scripts as the
// player would follow them, and where the exported movie puts its buttons.
#include <gtest/gtest.h>

#include <map>

#include "model/Slide.h"
#include "model/SlideShow.h"
#include "movie/MovieExporter.h"
#include "movie/MovieScripts.h"
#include "support/TempDir.h"
#include "swf/SwfActions.h"
#include "swf/SwfReader.h"
#include "swf/SwfStream.h"
#include "swf/SwfTags.h"

using namespace quillet;

namespace {

// Follows the bytes of an action list as the player does, with the only If
// taking `condition`, and returns the actions that do something, in order
// ("GoToLabel slide_1", "Play", "GetURL u t"...). A branch landing inside a
// record or outside the list fails the test.
std::vector<std::string> Follow(const SwfActionList& list, bool condition) {
    SwfStream out;
    list.Write(out, true);
    const std::vector<uint8_t>& b = out.Bytes();
    std::map<size_t, size_t> next;  // record start -> following record start
    for (size_t pc = 0; pc < b.size() && b[pc] != 0;) {
        size_t len = b[pc] >= 0x80 ? 3 + (b[pc + 1] | b[pc + 2] << 8) : 1;
        next[pc] = pc + len;
        pc += len;
    }
    const size_t end = b.size() - 1;
    auto text = [&](size_t at) { return std::string(reinterpret_cast<const char*>(&b[at])); };
    std::vector<std::string> done;
    size_t pc = 0;
    for (int steps = 0; pc != end && steps < 1000; ++steps) {
        if (!next.count(pc)) {
            ADD_FAILURE() << "a branch lands at byte " << pc << ", inside a record";
            return done;
        }
        const uint8_t code = b[pc];
        size_t to = next[pc];
        auto offset = [&] { return static_cast<int16_t>(b[pc + 3] | b[pc + 4] << 8); };
        switch (code) {
            case 0x9D: if (condition) to += offset(); break;  // If
            case 0x99: to += offset(); break;                 // Jump
            case 0x8C: done.push_back("GoToLabel " + text(pc + 3)); break;
            case 0x83: done.push_back("GetURL " + text(pc + 3) + " " + text(pc + 4 + text(pc + 3).size())); break;
            case 0x9A: done.push_back("GetURL2"); break;
            case 0x81: done.push_back("GotoFrame " + std::to_string(b[pc + 3] | b[pc + 4] << 8)); break;
            case 0x8B: done.push_back("SetTarget " + text(pc + 3)); break;
            case 0x06: done.push_back("Play"); break;
            case 0x07: done.push_back("Stop"); break;
            case 0x04: done.push_back("NextFrame"); break;
            case 0x3D: done.push_back("CallFunction"); break;
            default: break;
        }
        pc = to;
    }
    EXPECT_EQ(pc, end) << "the script does not run to its end";
    return done;
}

using Steps = std::vector<std::string>;

}  // namespace

TEST(ShowScripts, PauseBeforePlayIsRoundedToFrames) {
    struct Case { SwfData::StartAction start; int ms; float fps; int frames; };
    const Case cases[] = {
        {SwfData::StartAction::PlayAfterPause, 1210, 12, 15},  // 14.52: truncation would give 14
        {SwfData::StartAction::PlayAfterPause, 1000, 15.5f, 16},
        {SwfData::StartAction::PlayAfterPause, 40, 12, 0},      // under half a frame
        {SwfData::StartAction::PlayAfterPause, 42, 12, 1},      // just over half a frame
        {SwfData::StartAction::PlayAfterPause, 0, 12, 0},
        {SwfData::StartAction::PlayAfterPause, -500, 12, 0},
        {SwfData::StartAction::PlayAutomatically, 2000, 12, 0},  // the pause only counts for its start
        {SwfData::StartAction::StopOnFirstFrame, 2000, 12, 0},
    };
    for (const Case& c : cases) {
        SlideShow show;
        show.fps = c.fps;
        show.swfData.movieStartAction = c.start;
        show.swfData.pauseTime = c.ms;
        EXPECT_EQ(StartPauseFrames(show), c.frames) << c.ms << " ms at " << c.fps << " fps";
    }
}

TEST(ShowScripts, UrlActionsReachWindowsLevelsAndClips) {
    struct Case { int action; const char* target; Steps steps; };
    const Case cases[] = {
        {0, "_blank", {"GetURL http://x/a.swf _blank"}},
        {0, "", {"GetURL http://x/a.swf "}},                     // the page's own window
        {1, "", {"GetURL http://x/a.swf _level0"}},              // replaces the show
        {1, "_level3", {"GetURL http://x/a.swf _level3"}},
        {1, "holder", {"GetURL2"}},                               // into a clip
        {2, "", {"GetURL  _level0"}},                             // unload: no address
        {2, "holder", {"GetURL2"}},
        {3, "_blank", {}},
    };
    for (const Case& c : cases) {
        SwfActionList list;
        AppendUrlAction(list, {true, c.action, "http://x/a.swf", c.target});
        EXPECT_EQ(Follow(list, false), c.steps) << "action " << c.action << " target '" << c.target << "'";
        // A clip target is pushed with the address; the loaded movie goes into it.
        if (!c.steps.empty() && c.steps[0] == "GetURL2") {
            auto& push = dynamic_cast<ActionPush&>(list[0]);
            ASSERT_EQ(push.values.size(), 2u);
            EXPECT_EQ(push.values[0].text, c.action == 1 ? "http://x/a.swf" : "");
            EXPECT_EQ(push.values[1].text, "holder");
            EXPECT_TRUE(dynamic_cast<ActionGetURL2&>(list[1]).loadTarget);
        }
    }
}

TEST(ShowScripts, EndAndGateScriptsBranchWhereTheyShould) {
    const SwfData::UrlAction end{true, 0, "http://x/end.html", "_top"};
    struct Case {
        const char* what;
        SwfData::Loop loop;
        bool controls;
        Steps whenTrue, whenFalse;  // the If taken / not taken (equal when there is no If)
    };
    const Steps again = {"GoToLabel slide_1", "Play"};
    const Steps finish = {"GetURL http://x/end.html _top", "Stop"};
    const Steps finishPaused = {"GetURL http://x/end.html _top", "CallFunction"};
    const Case cases[] = {
        {"none", SwfData::Loop::None, false, finish, finish},
        {"none, controls", SwfData::Loop::None, true, finishPaused, finishPaused},
        {"forever", SwfData::Loop::Forever, false, again, again},
        {"times", SwfData::Loop::Times, false, again, finish},
        {"times, controls", SwfData::Loop::Times, true, again, finishPaused},
    };
    for (const Case& c : cases) {
        SlideShow show;
        show.swfData.loop = c.loop;
        show.swfData.loopCount = 2;
        show.swfData.movieEndAction = end;
        SwfActionList list = BuildEndScript(show, c.controls);
        EXPECT_EQ(Follow(list, true), c.whenTrue) << c.what;
        EXPECT_EQ(Follow(list, false), c.whenFalse) << c.what;
    }
    // The gate: a started show goes to the empty frame; else the main timeline
    // and the gate stop. A click starts the main timeline and clears the gate.
    for (bool controls : {false, true}) {
        SwfActionList gate = BuildGateScript(controls);
        EXPECT_EQ(Follow(gate, true), (Steps{"SetTarget _root", "SetTarget ", "GotoFrame 1", "Stop"})) << controls;
        EXPECT_EQ(Follow(gate, false), (Steps{"SetTarget _root", "SetTarget ", "SetTarget _root",
                                              controls ? "CallFunction" : "Stop", "SetTarget ", "Stop"}))
            << controls;
        EXPECT_EQ(Follow(BuildGateClick(controls), false),
                  (Steps{"SetTarget _root", controls ? "CallFunction" : "Play", "SetTarget ", "NextFrame"}))
            << controls;
    }
}

// Where the exported movie puts the gate and the click button, and that the
// first frame no longer stops the show before any slide is on the stage.
TEST(ShowScripts, ExportedShowPlacesGateOnFirstFullFrameAndClickButtonBeforeSlides) {
    struct Case { SwfData::StartAction start; bool click; bool gate; };
    const Case cases[] = {
        {SwfData::StartAction::StopOnFirstFrame, false, true},
        {SwfData::StartAction::StopOnFirstFrame, true, true},
        {SwfData::StartAction::PlayAutomatically, true, false},
        {SwfData::StartAction::PlayAfterPause, false, false},
    };
    test::TempDir dir;
    for (const Case& c : cases) {
        SlideShow show;
        show.swfData.movieStartAction = c.start;
        show.swfData.mouseClickAction = {c.click, 0, "http://x/", "_blank"};
        for (int i = 0; i < 2; ++i) {
            auto slide = show.createSlide(SlideType::Blank);
            slide->duration = 500;
            show.append(std::move(slide));
        }
        const std::string path = dir.file("show.swf");
        ExportResult r = MovieExporter(show).ExportMovie(path);
        ASSERT_TRUE(r.ok) << r.error;
        SwfReader reader;
        ASSERT_TRUE(reader.ReadFile(path)) << reader.Error();

        int frame = 0, slideOneFrame = -1, gateFrame = -1, buttons = 0;
        size_t at = 0, slideOneAt = 0, clickAt = 0;  // tag positions
        std::vector<uint16_t> ids;
        std::map<uint16_t, const SwfTag*> defined;
        for (const auto& tag : reader.Tags()) {
            ++at;
            if (tag->HasId()) {
                ids.push_back(tag->GetId());
                defined[tag->GetId()] = tag.get();
            }
            if (tag->Code() == SwfTagCode::ShowFrame) ++frame;
            if (auto* label = dynamic_cast<const FrameLabelTag*>(tag.get()); label && label->label == "slide_1") {
                slideOneFrame = frame;
                slideOneAt = at;
            }
            if (auto* button = dynamic_cast<const DefineButton2Tag*>(tag.get())) {
                ++buttons;
                // Only a hit area: the slides show through.
                ASSERT_EQ(button->records.size(), 1u);
                EXPECT_EQ(button->records[0].states, SwfButtonRecord::HitTest);
            }
            if (auto* place = dynamic_cast<const PlaceObject2Tag*>(tag.get()); place && place->characterId) {
                const SwfTag* what = defined[*place->characterId];
                if (dynamic_cast<const DefineSpriteTag*>(what)) gateFrame = frame;
                if (dynamic_cast<const DefineButton2Tag*>(what)) clickAt = at;
            }
            // Nothing stops the main timeline before the first slide is shown.
            if (auto* action = dynamic_cast<const DoActionTag*>(tag.get()); action && slideOneFrame < 0)
                for (const auto& a : action->actions) EXPECT_NE(a->Code(), SwfActionCode::Stop);
        }
        for (size_t i = 0; i < ids.size(); ++i) EXPECT_EQ(ids[i], i + 1);
        EXPECT_EQ(buttons, (c.gate ? 1 : 0) + (c.click ? 1 : 0));
        EXPECT_EQ(gateFrame, c.gate ? slideOneFrame : -1);
        // Below every slide (buttons take clicks through shapes), for the whole show.
        if (c.click) EXPECT_TRUE(clickAt > 0 && clickAt < slideOneAt);
    }
}
