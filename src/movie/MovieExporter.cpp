#include "movie/MovieExporter.h"

#include <cstdio>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <future>
#include <system_error>

#include "effects/SlideRender.h"
#include "media/Exif.h"
#include "media/Progress.h"
#include "media/SlidePicture.h"
#include "model/Slide.h"
#include "model/SlideShow.h"
#include "movie/MovieScripts.h"
#include "movie/SlideStep.h"
#include "settings/AppSettings.h"
#include "swf/SwfCompress.h"
#include "swf/SwfTags.h"
#include "swf/SwfWriter.h"

namespace quillet {

const char* const kFrameLimitWarning =
    "The slide show SWF output exceeds the 16,000 frame limit in the Flash Player. The Flash Player will ignore all "
    "frames past 16,000. Please reduce the number of slides or durations.";

namespace {

namespace fs = std::filesystem;

// A private folder for the uncompressed movie that is compressed at the end.
class TempFolder {
public:
    TempFolder() {
        std::string pattern = (fs::temp_directory_path() / "quillet-XXXXXX").string();
        if (mkdtemp(pattern.data())) path_ = pattern;
    }
    ~TempFolder() {
        std::error_code ec;
        if (!path_.empty()) fs::remove_all(path_, ec);
    }
    bool ok() const { return !path_.empty(); }
    std::string file(const char* name) const { return (fs::path(path_) / name).string(); }

private:
    std::string path_;
};

// Forwards only the cancel request to the worker threads that prepare
// pictures; the texts are shown by the thread that writes the movie.
class CancelOnly : public ProgressSink {
public:
    explicit CancelOnly(const ProgressSink* outer) : outer_(outer) {}
    bool cancelled() const override { return outer_ && outer_->cancelled(); }

private:
    const ProgressSink* outer_;
};

bool Cancelled(const ProgressSink* progress) { return progress && progress->cancelled(); }

// Makes every image slide ready to be written: its bitmap-shift flag follows
// the setting of the moment, and a slide whose picture was never measured
// (a project written by hand) is measured and fitted now.
void PrepareSlides(SlideShow& show) {
    const bool shift = AppSettings::current().defaultImageAdjustBitmapShift;
    for (const auto& slide : show.slides()) {
        if (slide->type != SlideType::Image) continue;
        slide->image.adjustBitmapShift = shift;
        if (slide->image.sourceWidth > 0 && slide->image.width > 0 && slide->image.height > 0) continue;
        AssignOptions options;
        options.stageWidth = show.width();
        options.stageHeight = show.height();
        // A picture that cannot be read is reported when the slide is written.
        std::string path = slide->image.src;
        AssignPicture(slide->image, path, options);
    }
}

}  // namespace

MovieExporter::MovieExporter(SlideShow& show) : show_(show) {}

ExportResult MovieExporter::ExportMovie(const std::string& path, ProgressSink* progress, const ExportOptions& options) {
    ExportResult result;
    const int count = show_.count();
    if (progress) {
        progress->setRange(0, count);
        progress->setMainText("Exporting Slide Show...");
    }
    const bool compress = show_.useCompression && !options.forceUncompressed;
    uint16_t nextCharacterId = 0;
    uint16_t nextDepth = 0;

    PrepareSlides(show_);

    // Version 5 plays everything a show needs; a picture loaded at play time
    // needs 6, and so does a compressed movie.
    uint8_t version = 5;
    for (const auto& slide : show_.slides())
        if (slide->type == SlideType::Image && slide->image.imageType == ImageType::JpegExternal) version = 6;
    if (compress && version < 6) version = 6;

    TempFolder temp;
    std::string target = path;
    if (compress) {
        if (!temp.ok()) {
            result.error = "cannot make a temporary folder";
            return result;
        }
        target = temp.file("export.swf");
    }

    SwfWriter writer(false);
    writer.Setup(show_.width() * kTwipsPerPixel, show_.height() * kTwipsPerPixel, show_.fps, version);
    if (!writer.Open(target, options.overwrite || compress)) {
        result.error = fs::exists(path) && !options.overwrite ? "the file exists already"
                                                               : "cannot create the file";
        return result;
    }
    writer.AddTag(std::make_unique<SetBackgroundColorTag>(SwfColor::FromRgb(show_.bgColor)));

    // The first frame: the show's functions and start action.
    const bool controls = show_.controls.enabled;
    SwfActionList start = BuildStartScript(show_, controls);
    if (start.size() > 0 || controls) {
        writer.AddTag(std::make_unique<DoActionTag>(std::move(start)));
        writer.AddTag(std::make_unique<ShowFrameTag>());
    }
    for (int i = StartPauseFrames(show_); i > 0; --i) writer.AddTag(std::make_unique<ShowFrameTag>());

    // Pictures are prepared ahead on worker threads; the movie is written in order.
    CancelOnly workerProgress(progress);
    std::deque<std::future<PreparedPicture>> ahead;
    int queued = 0;
    auto queueNext = [&] {
        while (queued < count && static_cast<int>(ahead.size()) <= options.lookAhead) {
            const Slide* slide = show_.slideAt(queued++);
            ahead.push_back(std::async(std::launch::async, [slide, &workerProgress] {
                if (slide->type != SlideType::Image) return PreparedPicture();
                PrepareOptions prep;
                prep.progress = &workerProgress;
                return PrepareSlideImage(slide->image, slide->imageFilters(), prep);
            }));
        }
    };

    auto endMovie = [&] {
        writer.AddTag(std::make_unique<EndTag>());
        writer.SetNextCharacterId(nextCharacterId);
        result.fileLength = writer.Close();
        result.frameCount = writer.FrameCount();
    };

    SlideStep step(writer, show_.fps, nextCharacterId, nextDepth);
    SlideOnStage previous;
    bool havePrevious = false;
    for (int i = 1; i <= count; ++i) {
        if (Cancelled(progress)) {
            result.cancelled = true;
            break;
        }
        char text[32];
        std::snprintf(text, sizeof text, "Processing %d of %d", i, count);
        if (progress) {
            progress->setMainText(text);
            progress->setSecondaryText("Writing slide...");
        }
        queueNext();
        PreparedPicture picture = ahead.front().get();
        ahead.pop_front();
        if (picture.cancelled || Cancelled(progress)) {
            result.cancelled = true;
            break;
        }
        const Slide* slide = show_.slideAt(i - 1);
        if (slide->type == SlideType::Image && !picture.ok) result.warnings.push_back(picture.error);

        SlideStepInput in;
        in.slide = slide;
        in.index = i;
        in.picture = slide->type == SlideType::Image ? &picture : nullptr;
        in.backgroundColor = show_.bgColor;
        in.stageWidth = show_.width();
        in.stageHeight = show_.height();
        in.movieFolder = fs::path(path).parent_path().string();
        previous = step.WriteSlide(in, havePrevious ? &previous : nullptr);
        havePrevious = true;
        result.slidesWritten = i;
        if (progress) progress->step(i);
    }
    // Let the workers still running finish before the show goes away.
    for (auto& f : ahead) f.wait();

    if (result.cancelled) {
        // What is written so far stays a valid movie of the slides done.
        endMovie();
        if (compress) CompressSwf(target, path, true);
        result.error = "cancelled";
        return result;
    }

    SwfActionList end = BuildEndScript(show_, controls);
    if (end.size() > 0 || controls) writer.AddTag(std::make_unique<DoActionTag>(std::move(end)));
    writer.AddTag(std::make_unique<ShowFrameTag>());
    endMovie();
    if (!writer.Good()) {
        result.error = "writing the movie failed (disk full?)";
        return result;
    }
    if (compress && !CompressSwf(target, path, true)) {
        result.exportError = 8;
        result.error = "cannot write the compressed movie";
        return result;
    }
    if (result.frameCount > kPlayerFrameLimit) result.warnings.push_back(kFrameLimitWarning);
    result.ok = true;
    return result;
}

}  // namespace quillet
