// A page that plays the published movie in today's browsers through the
// self-hosted Ruffle player, whose files are copied into a folder "ruffle"
// beside the page. It honours the page settings that make sense there: size
// (pixels or percent), colour, autoplay, loop, menu, scale and alignment.
#pragma once

#include <string>

#include "model/PublishSettings.h"

namespace quillet {

extern const char* const kRuffleFolderName;  // "ruffle", beside the page

std::string MakeRufflePage(const HtmlSettings& settings, const std::string& title);

// Copies the player's scripts, WebAssembly modules and licences from
// `playerFolder` into `destination` (made when missing), each file written
// beside its target and renamed into place. False with `error`.
bool CopyRufflePlayer(const std::string& playerFolder, const std::string& destination, std::string* error);

// The player: $QUILLET_RUFFLE_DIR, else the installed share/quillet/ruffle,
// else node_modules/@ruffle-rs/ruffle in a folder above the program (a build
// in the source tree). Empty when none holds ruffle.js.
std::string FindRufflePlayer();

}  // namespace quillet
