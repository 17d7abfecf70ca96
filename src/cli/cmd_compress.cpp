// quillet compress IN OUT [--overwrite] and quillet expand IN OUT [--overwrite]:
// turn a plain movie into a zlib-compressed one and back. OUT is written
// beside itself and renamed into place, so a failure leaves it as it was.
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

int Run(const Command& command, const std::vector<std::string>& args, bool expand) {
    const ParsedArgs parsed = parseArgs(args, {}, {"--overwrite"});
    if (!parsed.error.empty()) return usageError(command, parsed.error);
    if (parsed.positional.size() != 2) return usageError(command, "expected an input and an output movie");
    const std::string& in = parsed.positional[0];
    const std::string& out = parsed.positional[1];
    const bool overwrite = parsed.has("--overwrite");
    SetSwfLastError(kSwfErrorNone);
    std::string error;
    const bool ok = expand ? ExpandSwf(in, out, overwrite, &error) : CompressSwf(in, out, overwrite, &error);
    if (ok) return kExitOk;
    if (SwfLastError() == kSwfErrorDestination && error == out + ": the file exists already")
        printError(out, "already exists (use --overwrite to replace it)");
    else
        printError(error);
    return kExitFailure;
}

int RunCompress(const std::vector<std::string>& args) { return Run(kCompress, args, false); }
int RunExpand(const std::vector<std::string>& args) { return Run(kExpand, args, true); }

}  // namespace

}  // namespace quillet::cli
