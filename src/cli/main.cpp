// quillet: the command-line face of the slide show compiler.
#include <csignal>
#include <cstring>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "cli/Command.h"

using namespace quillet::cli;

namespace {

void printHelp(std::ostream& out) {
    out << "usage: quillet COMMAND [ARGS...]\n"
           "       quillet --help | --version\n\n"
           "Builds photo slide shows (.qpj projects) into SWF movies.\n\n"
           "Commands:\n";
    for (const auto& c : commands()) {
        std::string u = c.usage;
        out << "  " << u;
        if (u.size() < 40) out << std::string(40 - u.size(), ' ');
        else out << "\n  " << std::string(40, ' ');
        out << c.summary << "\n";
    }
    out << "\nRun 'quillet COMMAND --help' for a command's own options.\n"
           "Exit status: 0 success, 1 failure, 2 wrong usage.\n";
}

}  // namespace

int main(int argc, char** argv) {
    // A file-size limit (ulimit -f) then fails the write with EFBIG, which is
    // reported and leaves the old file in place, instead of killing the program.
    std::signal(SIGXFSZ, SIG_IGN);
    std::vector<std::string> args(argv + 1, argv + argc);
    if (args.empty()) {
        printHelp(std::cerr);
        return kExitUsage;
    }
    if (args[0] == "--help" || args[0] == "-h" || args[0] == "help") {
        printHelp(std::cout);
        return kExitOk;
    }
    if (args[0] == "--version") {
        std::cout << "quillet " << QUILLET_VERSION << "\n";
        return kExitOk;
    }
    const Command* command = findCommand(args[0]);
    if (!command) {
        printError("unknown command '" + args[0] + "' (see 'quillet --help')");
        return kExitUsage;
    }
    std::vector<std::string> rest(args.begin() + 1, args.end());
    for (const auto& a : rest) {
        if (a == "--help" || a == "-h") {
            std::cout << "usage: quillet " << command->usage << "\n" << command->summary << "\n";
            return kExitOk;
        }
    }
    try {
        return command->run(rest);
    } catch (const std::exception& e) {
        printError(e.what());
        return kExitFailure;
    }
}
