#include "movie/ControlSets.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "io/DataFolder.h"
#include "model/SlideShow.h"
#include "movie/MovieScripts.h"
#include "swf/ShowScripts.h"
#include "swf/SwfActions.h"
#include "swf/SwfTags.h"

namespace quillet {

namespace fs = std::filesystem;

namespace {

const char* FolderName(ControlKind kind) { return kind == ControlKind::Playback ? kControlsFolder : kMuteControlsFolder; }

bool IsSetFile(const fs::path& file) {
    std::error_code ec;
    return file.extension() == ".swf" && fs::is_regular_file(file, ec);
}

void AppendCall(SwfActionList& list, const char* function, int argumentCount) {
    list.Emplace<ActionPush>().Integer(argumentCount).String(function);
    list.Emplace<ActionCallFunction>();
    list.Emplace<ActionPop>();
}

// (new Sound()).setVolume(volume): a Sound made without a clip governs every
// sound of the movie.
void AppendGlobalVolume(SwfActionList& list, int volume) {
    list.Emplace<ActionPush>().Integer(volume).Integer(1).Integer(0).String("Sound");
    list.Emplace<ActionNewObject>();
    list.Emplace<ActionPush>().String("setVolume");
    list.Emplace<ActionCallMethod>();
    list.Emplace<ActionPop>();
}

}  // namespace

std::string FindControlsFolder(ControlKind kind) {
    const char* name = FolderName(kind);
    std::vector<fs::path> places;
    const fs::path program = ProgramFolder();  // empty when unknown
    if (!program.empty()) {
        places.push_back(program / name);
        places.push_back(program.parent_path() / "share" / "quillet" / name);
    }
    if (const char* env = std::getenv("QUILLET_CONTROLS_DIR"); env && *env) places.push_back(fs::path(env) / name);
    for (const fs::path& place : places) {
        std::error_code ec;
        if (!fs::is_directory(place, ec)) continue;
        for (const auto& entry : fs::directory_iterator(place, ec))
            if (IsSetFile(entry.path())) return place.string();
    }
    return {};
}

std::vector<std::string> ListControlSets(ControlKind kind) {
    std::vector<std::string> names;
    const std::string folder = FindControlsFolder(kind);
    if (folder.empty()) return names;
    std::error_code ec;
    for (const auto& entry : fs::directory_iterator(folder, ec))
        if (IsSetFile(entry.path())) names.push_back(entry.path().stem().string());
    std::sort(names.begin(), names.end());
    return names;
}

bool LoadControlSet(ControlKind kind, const std::string& name, ImportedMovie& out, std::string* error) {
    const std::vector<std::string> sets = ListControlSets(kind);
    if (sets.empty()) {
        if (error) *error = kNoControlTemplates;
        return false;
    }
    const std::string chosen = name.empty() ? sets.front() : name;
    if (std::find(sets.begin(), sets.end(), chosen) == sets.end()) {
        if (error) {
            std::string list;
            for (const std::string& s : sets) list += (list.empty() ? "" : ", ") + s;
            *error = std::string(kind == ControlKind::Playback ? "no playback control set" : "no mute control set") +
                     " called '" + chosen + "' (there are: " + list + ")";
        }
        return false;
    }
    const std::string path = (fs::path(FindControlsFolder(kind)) / (chosen + ".swf")).string();
    std::string why;
    if (!ReadImportedMovie(path, out, &why)) {
        if (error) *error = path + ": " + why;
        return false;
    }
    return true;
}

void ControlPosition(const ControlPlacement& placement, int stageWidth, int stageHeight, int setWidth, int setHeight,
                     int& x, int& y) {
    using Align = ControlPlacement::Align;
    const int right = stageWidth - setWidth, bottom = stageHeight - setHeight;
    switch (placement.align) {
        case Align::TopLeft: x = 0; y = 0; break;
        case Align::TopCenter: x = right / 2; y = 0; break;
        case Align::TopRight: x = right; y = 0; break;
        case Align::BottomLeft: x = 0; y = bottom; break;
        case Align::BottomRight: x = right; y = bottom; break;
        case Align::Custom: x = placement.x; y = placement.y; break;
        case Align::BottomCenter:
        default: x = right / 2; y = bottom; break;
    }
}

void PlaceControlSet(ControlKind kind, ImportedMovie set, const ControlPlacement& placement, MovieContext& ctx) {
    int x = 0, y = 0;
    ControlPosition(placement, ctx.StageWidth() / 20, ctx.StageHeight() / 20, set.WidthPixels(), set.HeightPixels(),
                    x, y);
    const uint16_t clipId = CopyAsSprite(std::move(set), ctx);
    const bool playback = kind == ControlKind::Playback;
    auto place = PlaceObject2Tag::Place(playback ? kPlaybackControlsDepth : kMuteControlDepth, clipId,
                                        SwfMatrix::Translate(x * 20, y * 20));
    place->name = playback ? kShowControlsName : kMuteControlName;
    ctx.movie.AddTag(std::move(place));
}

SwfActionList ControlButtonScript(ControlButton button) {
    SwfActionList list;
    switch (button) {
        case ControlButton::Play:
            list.Emplace<ActionSetTarget>("_root");
            list.SetVariable(kStartedVariable, "1");
            AppendCall(list, kShowPlayFunction, 0);
            list.Emplace<ActionSetTarget>("");
            break;
        case ControlButton::Pause:
            list.Emplace<ActionSetTarget>("_root");
            AppendCall(list, kShowPauseFunction, 0);
            list.Emplace<ActionSetTarget>("");
            break;
        case ControlButton::Previous:
        case ControlButton::Next:
            // slideshow_goto(current_slide_index -/+ 1)
            list.Emplace<ActionSetTarget>("_root");
            // The index is kept as a string: made a number first, or + would append.
            list.Emplace<ActionPush>().String(kCurrentSlideVariable);
            list.Emplace<ActionGetVariable>();
            list.Emplace<ActionToNumber>();
            list.Emplace<ActionPush>().Integer(1);
            if (button == ControlButton::Next) list.Emplace<ActionAdd2>();
            else list.Emplace<ActionSubtract>();
            AppendCall(list, kJumpFunction, 1);
            list.Emplace<ActionSetTarget>("");
            break;
        case ControlButton::First:
        case ControlButton::Last:
            // The function keeps the number within the show: 65535 is its last slide.
            list.Emplace<ActionSetTarget>("_root");
            list.Emplace<ActionPush>().Integer(button == ControlButton::First ? 1 : 65535);
            AppendCall(list, kJumpFunction, 1);
            list.Emplace<ActionSetTarget>("");
            break;
        case ControlButton::Mute:
            AppendGlobalVolume(list, 0);
            list.Emplace<ActionGotoFrame>(1);
            break;
        case ControlButton::Unmute:
            AppendGlobalVolume(list, 100);
            list.Emplace<ActionGotoFrame>(0);
            break;
    }
    return list;
}

SwfActionList PlayPauseFrameScript(int frame) {
    SwfActionList list;
    if (frame == 0) {
        // if (../../:slideshow_playing == "1") gotoAndStop(1)
        list.Emplace<ActionPush>().String(std::string("../../:") + kShowPlayingVariable);
        list.Emplace<ActionGetVariable>();
        list.Emplace<ActionPush>().String("1");
        list.Emplace<ActionStringEquals>();
        list.Emplace<ActionNot>();
        ActionGotoFrame go(1);
        list.Emplace<ActionIf>(static_cast<int16_t>(go.RecordSize()));
        list.Emplace<ActionGotoFrame>(1);
    }
    list.Emplace<ActionStop>();
    return list;
}

SwfActionList MuteFrameScript() {
    SwfActionList list;
    list.Emplace<ActionStop>();
    return list;
}

}  // namespace quillet
