// Where the program's own data files live. An installed program finds them
// under share/quillet beside its folder (PREFIX/bin/../share/quillet/NAME);
// a program run from a build folder inside the source tree finds them in the
// source tree. The installed copy wins, so a staged install inside the tree
// uses its own files.
#pragma once

#include <string>

namespace quillet {

// The folder holding the running program (from /proc/self/exe); empty when unknown.
std::string ProgramFolder();

// PREFIX/share/quillet/`installedName` when it holds `marker`, else the first
// `sourceTreePath` found in a folder above the program that holds `marker`.
// Empty when neither does.
std::string FindDataFolder(const std::string& installedName, const std::string& sourceTreePath,
                           const std::string& marker);

// The HTML help pages (the folder holding index.html); empty when not installed.
std::string FindHelpFolder();

}  // namespace quillet
