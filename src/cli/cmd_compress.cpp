// quillet compress IN OUT [--overwrite] and quillet expand IN OUT [--overwrite]:
// turn a plain movie into a zlib-compressed one and back.
#include <filesystem>
#include <system_error>

#include "cli/Command.h"
#include "swf/SwfCompress.h"

namespace quillet::cli {

namespace {

int RunCompress(const std::vector<std::string>& args);
int RunExpand(const std::vector<std::string>& args);

const Command kCompress{"compress", "compress IN.swf OUT.swf [--overwrite]",
                        "store a movie compressed (CWS, zlib)", RunCompress, 61};
const Command kExpand{"expand", "expand IN.swf OUT.swf [--overwrite]",
                      "turn a compressed movie back into a plain one (FWS)", RunExpand, 62};
const CommandRegistrar kRegisterCompress(kCompress);
const CommandRegistrar kRegisterExpand(kExpand);

bool Exists(const std::string& path) {
    std::error_code ec;
    return std::filesystem::exists(path, ec);
}

// Explains a failure from the last-error code and what we can see of the files.
int Report(const std::string& in, const std::string& out, bool expand) {
    switch (SwfLastError()) {
    case kSwfErrorNotMovie:
        if (!Exists(in)) printError(in, "cannot open: no such file");
        else printError(in, "not a movie (it does not begin with FWS or CWS)");
        break;
    case kSwfErrorNotCompressed:
        if (!Exists(in)) printError(in, "cannot open: no such file");
        else printError(in, "not a compressed movie (it does not begin with CWS)");
        break;
    case kSwfErrorCannotRead:
        printError(in, "cannot open for reading");
        break;
    case kSwfErrorDestination:
        if (std::filesystem::is_directory(out)) printError(out, "is a folder");
        else if (Exists(out)) printError(out, "already exists (use --overwrite to replace it)");
        else printError(out, "cannot be created");
        break;
    default:
        if (expand) printError(in, "the compressed data are damaged or cut short");
        else printError(in, "already compressed (it begins with CWS)");
        break;
    }
    return kExitFailure;
}

int Run(const Command& command, const std::vector<std::string>& args, bool expand) {
    const ParsedArgs parsed = parseArgs(args, {}, {"--overwrite"});
    if (!parsed.error.empty()) return usageError(command, parsed.error);
    if (parsed.positional.size() != 2) return usageError(command, "expected an input and an output movie");
    const std::string& in = parsed.positional[0];
    const std::string& out = parsed.positional[1];
    const bool overwrite = parsed.has("--overwrite");
    SetSwfLastError(kSwfErrorNone);
    const bool ok = expand ? ExpandSwf(in, out, overwrite) : CompressSwf(in, out, overwrite);
    // Expansion goes on after a destination problem; a success clears it.
    if (ok) return kExitOk;
    return Report(in, out, expand);
}

int RunCompress(const std::vector<std::string>& args) { return Run(kCompress, args, false); }
int RunExpand(const std::vector<std::string>& args) { return Run(kExpand, args, true); }

}  // namespace

}  // namespace quillet::cli
