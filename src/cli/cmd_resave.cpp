// quillet resave SHOW.qpj -o OUT.qpj: loads a project and saves it again in
// the current form.
#include "cli/Command.h"
#include "model/ProjectFile.h"
#include "model/PublishSettings.h"
#include "model/SlideShow.h"

namespace quillet::cli {

namespace {

int runResave(const std::vector<std::string>& args);

const Command kResave{"resave", "resave SHOW.qpj -o OUT.qpj", "load a project and save it again", runResave, 25};
const CommandRegistrar registrar(kResave);

int runResave(const std::vector<std::string>& args) {
    ParsedArgs parsed = parseArgs(args, {"-o", "--output"}, {});
    if (!parsed.error.empty()) return usageError(kResave, parsed.error);
    if (parsed.positional.size() != 1) return usageError(kResave, "expected one project file");
    const std::string* out = parsed.value("-o");
    if (!out) out = parsed.value("--output");
    if (!out || out->empty()) return usageError(kResave, "the output file is missing (-o OUT.qpj)");
    const std::string& path = parsed.positional[0];

    SlideShow show;
    PublishSettings publish;
    std::string error;
    if (!LoadProject(path, show, publish, &error)) {
        printError(path, error);
        return kExitFailure;
    }
    if (!SaveProject(*out, show, publish, &error)) {
        printError(*out, error);
        return kExitFailure;
    }
    return kExitOk;
}

}  // namespace

}  // namespace quillet::cli
