// Compiles a slide show into one movie file.
//
//   MovieExporter exporter(show);
//   ExportResult r = exporter.ExportMovie("show.swf", &progress);
//
// The movie is written tag by tag into a private file beside the target and
// renamed into place when complete (a cancelled export leaves the valid
// movie of the slides done; a failed one leaves the old file untouched).
// Slide pictures are prepared on worker threads while the movie is written
// in order (see PicturePipeline). The show itself is not changed.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace quillet {

class ProgressSink;
class SlideShow;

struct ExportOptions {
    bool forceUncompressed = false;  // write FWS even when the show asks for compression
    bool overwrite = true;           // replace an existing file at the destination
    // The "default_image_adjust_bitmap_shift" setting of the moment: every
    // slide's bitmap fill follows it.
    bool bitmapShift = false;
    int threads = 0;                 // picture workers (0: one per core)
    size_t memoryBudget = 190u << 20;  // estimated bytes of pictures being prepared or waiting
    // Prepared pictures are kept here and taken from here; empty: no cache.
    std::string cacheFolder;
    uint64_t cacheMaxBytes = 1ull << 30;
};

struct ExportResult {
    bool ok = false;
    bool cancelled = false;   // the user cancelled; a valid movie of the slides done so far was left
    int exportError = 0;      // 8 when compression failed
    std::string error;        // what went wrong, naming the file
    uint16_t frameCount = 0;  // frames of the movie written
    uint32_t fileLength = 0;  // uncompressed length
    int slidesWritten = 0;
    int picturesPrepared = 0;   // decoded and encoded in this export
    int picturesFromCache = 0;  // taken from the cache
    std::vector<std::string> warnings;  // pictures that could not be used, and the like
};

// The player ignores frames past this many.
constexpr int kPlayerFrameLimit = 16000;
extern const char* const kFrameLimitWarning;
// Frame counts, character ids and depths are 16-bit in the file.
constexpr uint32_t kMovieFieldLimit = 65535;

class MovieExporter {
public:
    explicit MovieExporter(const SlideShow& show);
    ExportResult ExportMovie(const std::string& path, ProgressSink* progress = nullptr,
                             const ExportOptions& options = {});

private:
    const SlideShow& show_;
};

}  // namespace quillet
