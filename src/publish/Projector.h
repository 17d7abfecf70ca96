// Projectors: a stand-alone player program with the movie attached.
//
// Windows: player, movie, marker FA123456 and the movie's size, both
// little-endian. Mac data fork: player, movie, the size and then the marker,
// both big-endian. Each player looks for its own form, so they differ.
// The player images come from the user (we cannot ship them): a folder
// holding windows-player.exe, mac-player.data and mac-player.rsrc.
#pragma once

#include <string>

#include "model/PublishSettings.h"

namespace quillet {

extern const char* const kWindowsPlayerFile;   // "windows-player.exe"
extern const char* const kMacPlayerDataFile;   // "mac-player.data"
extern const char* const kMacPlayerRsrcFile;   // "mac-player.rsrc"

std::string WindowsProjectorBytes(const std::string& player, const std::string& movie);
std::string MacProjectorDataFork(const std::string& player, const std::string& movie);

// The movie with a first-frame script that sets the player's full-screen,
// menu and scaling modes through FSCommand. False (with `error`) when the
// bytes are not a movie we can read.
bool AddPlayerCommands(const std::string& movie, const ProjectorSettings& options, std::string& out,
                       std::string* error);

// Builds a projector at `target` from the movie at `moviePath`. A movie whose
// options differ from the player's defaults gets the player commands first.
// False with `error` naming the file and the problem.
bool WriteWindowsProjector(const std::string& target, const std::string& moviePath,
                           const ProjectorSettings& options, const std::string& playersFolder, std::string* error);
// The Mac projector packed as BinHex (type APPL, creator FP98, flags 0x0100),
// recording `macName` as the file's name.
bool WriteMacProjector(const std::string& target, const std::string& macName, const std::string& moviePath,
                       const ProjectorSettings& options, const std::string& playersFolder, std::string* error);

}  // namespace quillet
