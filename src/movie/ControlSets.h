// The playback and mute controls of a show.
//
// A control set is a small movie of its own, "NAME.swf" in the "Controls"
// (playback) or "Mute Controls" folder. Our sets are drawn and written at
// build time by tools/make_controls; any movie that follows the same names
// works. The folders are looked for beside the program, then in
// ../share/quillet beside it (an installed program), then in
// $QUILLET_CONTROLS_DIR.
//
// At export the chosen set's main timeline becomes one clip: "show_controls"
// at depth 65535 for playback, "mute_control" at 65534 for the mute button,
// above every slide, caption and frame of the show. The clip is placed at the
// set's alignment on the stage (or the custom x, y), using the set's stage
// size as its own.
//
// What a playback set holds (its names are what the show's scripts use):
// - "playpause_btn": a two-frame clip. Frame 0 shows the play button (the
//   show is paused), frame 1 the pause button (it plays); slideshow_play and
//   slideshow_pause send it to 1 and 0. Its frame 0 script goes straight to
//   frame 1 when the show is playing as the clip appears
//   (../../:slideshow_playing is "1"). Play also marks the show started, so a
//   show waiting on its first slide starts from the play button and does not
//   wait again when it loops.
// - buttons for previous, next, first and last, where the set has them: they
//   call slideshow_goto on the main timeline with the slide to show, taken
//   from current_slide_index. The show defines slideshow_goto when its
//   controls are on (MovieScripts); it keeps the number within 1..N and goes
//   to "slide_N", playing or stopped as the show was.
// Every button script addresses the main timeline as "_root", as the start
// gate does.
//
// A mute set holds "mute_btn": frame 0 shows the sound on (its button mutes),
// frame 1 the sound off (its button turns the sound back on). Muting sets the
// volume of a global Sound object to 0 and back to 100, which silences every
// sound of the movie, streams included, and can be undone (stopAllSounds
// would only stop the sounds playing and cannot be undone).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "movie/MovieImport.h"
#include "swf/SwfAction.h"

namespace quillet {

struct ControlPlacement;

enum class ControlKind { Playback, Mute };

inline constexpr const char* kControlsFolder = "Controls";
inline constexpr const char* kMuteControlsFolder = "Mute Controls";
inline constexpr const char* kNoControlTemplates =
    "No control templates were found. Please make sure the program was installed properly.";

inline constexpr const char* kShowControlsName = "show_controls";
inline constexpr const char* kPlayPauseName = "playpause_btn";
inline constexpr const char* kMuteControlName = "mute_control";
inline constexpr const char* kMuteButtonName = "mute_btn";
inline constexpr const char* kJumpFunction = "slideshow_goto";

// Both stay above everything else the show places (captions count down from
// below them, the decorative frame takes 65533).
constexpr uint16_t kPlaybackControlsDepth = 65535;
constexpr uint16_t kMuteControlDepth = 65534;

// The folder holding the sets of a kind; empty when none of the places has it.
std::string FindControlsFolder(ControlKind kind);
// The names of the sets found (file names without ".swf"), sorted.
std::vector<std::string> ListControlSets(ControlKind kind);

// Reads the set a placement names (the first set when it names none).
// Fails with kNoControlTemplates when there is no set at all, and with a
// reason naming the set or its file otherwise.
bool LoadControlSet(ControlKind kind, const std::string& name, ImportedMovie& out, std::string* error);

// Where the set's top-left corner goes on the stage, in pixels.
void ControlPosition(const ControlPlacement& placement, int stageWidth, int stageHeight, int setWidth,
                     int setHeight, int& x, int& y);

// Copies the set in as a clip named by its kind and places it at its depth.
void PlaceControlSet(ControlKind kind, ImportedMovie set, const ControlPlacement& placement, MovieContext& ctx);

// Button and frame scripts of the sets, for the tool that draws them.
enum class ControlButton { Play, Pause, Previous, Next, First, Last, Mute, Unmute };
SwfActionList ControlButtonScript(ControlButton button);
// Frame `frame` (0 or 1) of "playpause_btn" / "mute_btn": stops there; frame
// 0 of "playpause_btn" first moves to frame 1 when the show plays.
SwfActionList PlayPauseFrameScript(int frame);
SwfActionList MuteFrameScript();

}  // namespace quillet
