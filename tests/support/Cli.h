// Runs the built quillet program as a user would, with its settings folder
// and cache in a scratch folder (header only: QUILLET_CLI is set for each
// test program, not for the support library).
#pragma once

#include <string>

#include "support/TempDir.h"

namespace quillet::test {

struct CliRun {
    int status;
    std::string out, err;
};

inline std::string quote(const std::string& s) { return "'" + s + "'"; }

// `quillet ARGS`, settings and cache under `dir`; stdout and stderr apart.
inline CliRun RunQuillet(const TempDir& dir, const std::string& args) {
    CliRun r;
    const std::string errFile = dir.file("stderr.txt");
    r.status = runCommand(ScratchUserEnvironment(dir) + QUILLET_CLI + " " + args + " 2>" + quote(errFile), &r.out);
    r.err = readFile(errFile);
    return r;
}

}  // namespace quillet::test
