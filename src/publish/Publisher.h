// One publish run: every selected target of a show written into the output
// folder, the movie built once and handed to the others.
//
// Targets in their fixed order: movie, FLV, HTML page, Ruffle page, Mac
// projector, Windows projector, QuickTime movie, screensaver, screensaver
// installer. FLV, QuickTime and the screensaver targets are not built by
// this version: a run that selects them says so and builds the others.
//
// Interactive runs ask before replacing a file (PublishPrompts); the others
// follow each target's `replace` flag and report what they skipped. Nothing
// is written outside the output folder and the private temporary folder:
// a file name that is empty, "." or "..", or holds a '/', is refused.
#pragma once

#include <string>
#include <vector>

#include "model/PublishSettings.h"
#include "movie/MovieExporter.h"
#include "publish/HtmlPage.h"

namespace quillet {

class ProgressSink;
class SlideShow;

enum class ReplaceAnswer { Replace, DontReplace, Stop };
struct ReplaceReply {
    ReplaceAnswer answer = ReplaceAnswer::DontReplace;
    bool applyToAll = false;
};

class PublishPrompts {
public:
    virtual ~PublishPrompts() = default;
    // `question`: "The item \"NAME\" in FOLDER already exists. Replace it?"
    virtual ReplaceReply AskReplace(const std::string& question) = 0;
};

struct PublishOptions {
    PublishPrompts* prompts = nullptr;  // null: a non-interactive run
    PageAddresses addresses;
    std::string playersFolder;  // windows-player.exe, mac-player.data, mac-player.rsrc
    std::string rufflePlayer;   // the folder holding ruffle.js
    ExportOptions exportOptions;
    ProgressSink* progress = nullptr;
};

struct PublishMessage {
    std::string caption;  // "Publish Error" or "Publish"
    std::string text;     // the message as shown
    std::string detail;   // what went wrong underneath (a file and its problem), or ""
};

struct PublishResult {
    bool ok = false;
    std::vector<PublishMessage> messages;  // in the order shown
    std::vector<std::string> written;      // files written, in order
    std::vector<std::string> skipped;      // targets not built because their file exists
    std::vector<std::string> notAvailable; // targets this version does not build
    std::vector<std::string> warnings;     // from building the movie
};

extern const char* const kPublishErrorCaption;  // "Publish Error"

// Publishes `show` with `settings` (the page settings are pointed at the
// movie target's file and, when matching the movie, its stage size).
PublishResult Publish(PublishSettings& settings, const SlideShow& show, const PublishOptions& options);

}  // namespace quillet
