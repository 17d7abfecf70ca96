#include "cli/Command.h"

#include <algorithm>
#include <iostream>

namespace quillet::cli {

namespace {
std::vector<Command>& registry() {
    static std::vector<Command> list;
    return list;
}
}  // namespace

CommandRegistrar::CommandRegistrar(const Command& command) {
    auto& list = registry();
    auto pos = std::find_if(list.begin(), list.end(), [&](const Command& c) { return c.order > command.order; });
    list.insert(pos, command);
}

const std::vector<Command>& commands() { return registry(); }

const Command* findCommand(std::string_view name) {
    for (const auto& c : registry())
        if (name == c.name) return &c;
    return nullptr;
}

void printError(std::string_view file, std::string_view problem) {
    std::cerr << "quillet: " << file << ": " << problem << "\n";
}

void printError(std::string_view problem) { std::cerr << "quillet: " << problem << "\n"; }

int usageError(const Command& command, std::string_view problem) {
    std::cerr << "quillet " << command.name << ": " << problem << "\n"
              << "usage: quillet " << command.usage << "\n";
    return kExitUsage;
}

bool ParsedArgs::has(std::string_view name) const {
    return std::any_of(options.begin(), options.end(), [&](const auto& o) { return o.first == name; });
}

const std::string* ParsedArgs::value(std::string_view name) const {
    const std::string* found = nullptr;
    for (const auto& o : options)
        if (o.first == name) found = &o.second;  // the last one wins
    return found;
}

ParsedArgs parseArgs(const std::vector<std::string>& args, const std::vector<std::string>& withValue,
                     const std::vector<std::string>& flags) {
    ParsedArgs out;
    bool onlyPositional = false;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (onlyPositional || a.size() < 2 || a[0] != '-') {
            out.positional.push_back(a);
            continue;
        }
        if (a == "--") {
            onlyPositional = true;
            continue;
        }
        std::string name = a, inlineValue;
        bool hasInline = false;
        if (auto eq = a.find('='); a.rfind("--", 0) == 0 && eq != std::string::npos) {
            name = a.substr(0, eq);
            inlineValue = a.substr(eq + 1);
            hasInline = true;
        }
        if (std::find(withValue.begin(), withValue.end(), name) != withValue.end()) {
            if (hasInline) {
                out.options.emplace_back(name, inlineValue);
            } else if (i + 1 < args.size()) {
                out.options.emplace_back(name, args[++i]);
            } else {
                out.error = "option " + name + " needs a value";
                return out;
            }
        } else if (std::find(flags.begin(), flags.end(), name) != flags.end() && !hasInline) {
            out.options.emplace_back(name, "");
        } else {
            out.error = "unknown option " + a;
            return out;
        }
    }
    return out;
}

}  // namespace quillet::cli
