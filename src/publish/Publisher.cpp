#include "publish/Publisher.h"

#include <filesystem>

#include "io/OutputFile.h"
#include "io/TempFolder.h"
#include "model/SlideShow.h"
#include "publish/Projector.h"
#include "publish/RufflePage.h"

namespace quillet {

const char* const kPublishErrorCaption = "Publish Error";

namespace fs = std::filesystem;

namespace {

enum class Kind { Movie, Flv, Html, Ruffle, MacProjector, WinProjector, QuickTime, Screensaver, Installer };

struct Target {
    Kind kind;
    const char* name;           // for the skipped and not-available reports
    bool* publish;
    std::string* filename;
    bool* replace;
    const char* badNameMessage; // "" when this version does not build the target
    const char* failureMessage;
    bool keep = false;
};

bool validName(const std::string& name) {
    return !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos &&
           name.find('\0') == std::string::npos;
}

class Run {
public:
    Run(PublishSettings& s, const SlideShow& show, const PublishOptions& o) : s_(s), show_(show), o_(o) {}

    PublishResult Go() {
        std::vector<Target> targets = {
            {Kind::Movie, "movie", &s_.swf.publish, &s_.swf.filename, &s_.swf.replace,
             "Please enter a valid filename for the SWF.", "An error occurred while trying to publish the SWF file."},
            {Kind::Flv, "FLV", &s_.flv.publish, &s_.flv.filename, &s_.flv.replace, "", ""},
            {Kind::Html, "HTML page", &s_.html.publish, &s_.html.filename, &s_.html.replace,
             "Please enter a valid filename for the HTML.", "An error occurred while trying to publish the HTML file."},
            {Kind::Ruffle, "Ruffle page", &s_.rufflePage.publish, &s_.rufflePage.filename, &s_.rufflePage.replace,
             "Please enter a valid filename for the Ruffle page.",
             "An error occurred while trying to publish the Ruffle page."},
            {Kind::MacProjector, "Mac projector", &s_.macProjector.publish, &s_.macProjector.filename,
             &s_.macProjector.replace, "Please enter a valid filename for the Macintosh Projector.",
             "An error occurred while trying to publish the Macintosh Projectir."},
            {Kind::WinProjector, "Windows projector", &s_.winProjector.publish, &s_.winProjector.filename,
             &s_.winProjector.replace, "Please enter a valid filename for the Windows Projector.",
             "An error occurred while trying to publish the Windows Projector."},
            {Kind::QuickTime, "QuickTime movie", &s_.quicktime.publish, &s_.quicktime.filename, &s_.quicktime.replace,
             "", ""},
            {Kind::Screensaver, "screensaver", &s_.screensaver.publish, &s_.screensaver.filename,
             &s_.screensaver.replace, "", ""},
            {Kind::Installer, "screensaver installer", &s_.publishInstaller, &s_.installerFilename,
             &s_.replaceInstaller, "", ""},
        };

        if (!s_.anyTarget()) {
            message("Publish Error", "You have not selected any formats to publish.");
            r_.ok = true;
            return std::move(r_);
        }
        // What this version cannot build is reported and left out.
        std::vector<Target*> selected;
        // A Ruffle page plays the movie beside it: it brings the movie along.
        const bool pageNeedsMovie = s_.rufflePage.publish && !s_.swf.publish;
        for (Target& t : targets) {
            if (!*t.publish && !(pageNeedsMovie && t.kind == Kind::Movie)) continue;
            if (*t.badNameMessage == '\0') {
                r_.notAvailable.push_back(t.name);
                continue;
            }
            if (!validName(*t.filename)) {
                message(kPublishErrorCaption, t.badNameMessage, "\"" + *t.filename + "\" is not a plain file name");
                return std::move(r_);
            }
            selected.push_back(&t);
        }
        std::error_code ec;
        if (!fs::is_directory(s_.output, ec)) {
            message(kPublishErrorCaption,
                    "The output location does not exist. Please choose a valid location to output the files to.",
                    s_.output);
            return std::move(r_);
        }

        Decide(selected);
        if (!BuildMovie(targets[0], selected)) return std::move(r_);
        for (Target* t : selected) {
            if (!t->keep || t->kind == Kind::Movie) continue;
            std::string error;
            if (!Build(*t, error)) {
                message(kPublishErrorCaption, t->failureMessage, error);
                RemoveTempMovie();
                return std::move(r_);
            }
        }
        RemoveTempMovie();
        message("Publish", "Publishing has completed.");
        r_.ok = true;
        return std::move(r_);
    }

private:
    std::string PathOf(const Target& t) const { return (fs::path(s_.output) / *t.filename).string(); }

    void message(const std::string& caption, const std::string& text, const std::string& detail = "") {
        r_.messages.push_back({caption, text, detail});
    }

    // Which selected targets are built: a target whose file exists is asked
    // about (interactive) or follows its replace flag.
    void Decide(const std::vector<Target*>& selected) {
        bool replaceAll = false, stopped = false;
        for (Target* t : selected) {
            std::error_code ec;
            bool exists = fs::symlink_status(PathOf(*t), ec).type() != fs::file_type::not_found;
            if (!exists || replaceAll) {
                t->keep = true;
                continue;
            }
            if (stopped) continue;
            if (!o_.prompts) {
                t->keep = *t->replace;
                if (!t->keep) r_.skipped.push_back(t->name);
                continue;
            }
            ReplaceReply reply = o_.prompts->AskReplace("The item \"" + *t->filename + "\" in " + s_.output +
                                                        " already exists. Replace it?");
            if (reply.answer == ReplaceAnswer::Replace) {
                t->keep = true;
                replaceAll = reply.applyToAll;
            } else if (reply.answer == ReplaceAnswer::Stop || reply.applyToAll) {
                stopped = true;
            }
        }
    }

    bool BuildMovie(Target& movieTarget, const std::vector<Target*>& selected) {
        bool projector = false;
        for (Target* t : selected)
            if (t->keep && (t->kind == Kind::MacProjector || t->kind == Kind::WinProjector)) projector = true;
        std::string path;
        if (movieTarget.keep) {
            path = PathOf(movieTarget);
        } else if (projector) {
            std::string why;
            path = PrivateTempFile("_tmppblsh.swf", &why);
            if (path.empty()) {
                message(kPublishErrorCaption, movieTarget.failureMessage, why);
                return false;
            }
            tempMovie_ = path;
        } else {
            return true;
        }
        ExportResult result = MovieExporter(show_).ExportMovie(path, o_.progress, o_.exportOptions);
        r_.warnings.insert(r_.warnings.end(), result.warnings.begin(), result.warnings.end());
        if (!result.ok || result.cancelled) {
            message(kPublishErrorCaption, movieTarget.failureMessage,
                    result.cancelled ? path + ": cancelled" : result.error);
            return false;
        }
        moviePath_ = path;
        if (movieTarget.keep) r_.written.push_back(path);
        return true;
    }

    void RemoveTempMovie() {
        if (tempMovie_.empty()) return;
        std::error_code ec;
        fs::remove(tempMovie_, ec);
        tempMovie_.clear();
    }

    // The page settings point at the movie target's file; matching the movie
    // takes the stage size.
    HtmlSettings PageSettings() const {
        HtmlSettings h = s_.htmlSettings;
        h.swf = s_.swf.filename;
        h.origWidth = show_.width();
        h.origHeight = show_.height();
        if (h.dimensionType == HtmlSettings::MatchMovie) {
            h.width = h.origWidth;
            h.height = h.origHeight;
        }
        return h;
    }

    bool Build(Target& t, std::string& error) {
        std::string path = PathOf(t);
        switch (t.kind) {
            case Kind::Html: {
                s_.htmlSettings = PageSettings();
                if (!WriteFileAtomically(path, MakeHtmlPage(s_.htmlSettings, o_.addresses), &error)) {
                    error = path + ": " + error;
                    return false;
                }
                break;
            }
            case Kind::Ruffle: {
                std::string folder = (fs::path(s_.output) / kRuffleFolderName).string();
                if (o_.rufflePlayer.empty()) {
                    error = "the Ruffle player is not installed (set QUILLET_RUFFLE_DIR to its folder)";
                    return false;
                }
                if (!CopyRufflePlayer(o_.rufflePlayer, folder, &error)) return false;
                r_.written.push_back(folder + "/");
                if (!WriteFileAtomically(path, MakeRufflePage(PageSettings(), s_.defaultBaseFilename), &error)) {
                    error = path + ": " + error;
                    return false;
                }
                break;
            }
            case Kind::MacProjector:
                if (!WriteMacProjector(path, *t.filename, moviePath_, s_.macProjectorSettings, o_.playersFolder, &error))
                    return false;
                break;
            case Kind::WinProjector:
                if (!WriteWindowsProjector(path, moviePath_, s_.winProjectorSettings, o_.playersFolder, &error))
                    return false;
                break;
            default:
                return true;
        }
        r_.written.push_back(path);
        return true;
    }

    PublishSettings& s_;
    const SlideShow& show_;
    const PublishOptions& o_;
    PublishResult r_;
    std::string moviePath_, tempMovie_;
};

}  // namespace

PublishResult Publish(PublishSettings& settings, const SlideShow& show, const PublishOptions& options) {
    return Run(settings, show, options).Go();
}

}  // namespace quillet
