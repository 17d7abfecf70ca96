// The subcommands of the `quillet` program. Each subcommand lives in its own
// file and registers itself with a static CommandRegistrar, so adding one
// needs no edit elsewhere.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillet::cli {

// Exit statuses of the program.
constexpr int kExitOk = 0;
constexpr int kExitFailure = 1;
constexpr int kExitUsage = 2;

struct Command {
    const char* name;     // "export"
    const char* usage;    // "export SHOW.qpj [-o OUT.swf]"
    const char* summary;  // one line for --help
    int (*run)(const std::vector<std::string>& args);  // args after the name
    int order = 100;      // position in --help
};

struct CommandRegistrar {
    explicit CommandRegistrar(const Command& command);
};

const std::vector<Command>& commands();

// Messages on stderr, prefixed with the program's name:
// "quillet: FILE: problem" or "quillet: problem".
void printError(std::string_view file, std::string_view problem);
void printError(std::string_view problem);
// A usage error for one command: prints the message and the command's usage; returns kExitUsage.
int usageError(const Command& command, std::string_view problem);
const Command* findCommand(std::string_view name);

// Minimal option scanning shared by the commands: collects positional
// arguments and `-o X` / `--opt X` / `--flag` forms. Unknown options are errors.
struct ParsedArgs {
    std::vector<std::string> positional;
    std::vector<std::pair<std::string, std::string>> options;  // name -> value ("" for flags)
    std::string error;  // non-empty when the arguments are malformed
    bool has(std::string_view name) const;
    const std::string* value(std::string_view name) const;
};
// `withValue` lists the options that take a value (e.g. {"-o", "--fps"});
// `flags` lists those that do not.
ParsedArgs parseArgs(const std::vector<std::string>& args, const std::vector<std::string>& withValue,
                     const std::vector<std::string>& flags);

}  // namespace quillet::cli
