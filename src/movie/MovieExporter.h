// Compiles a slide show into one movie file.
//
//   MovieExporter exporter(show);
//   ExportResult r = exporter.ExportMovie("show.swf", &progress);
//
// The movie is written tag by tag straight to the file. Slide pictures are
// prepared a little ahead on worker threads while the movie is written in
// order, so at most a few prepared pictures are in memory at once.
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
    int lookAhead = 2;               // slides prepared ahead of the one being written (0: none)
};

struct ExportResult {
    bool ok = false;
    bool cancelled = false;   // the user cancelled; a valid movie of the slides done so far was left
    int exportError = 0;      // 8 when compression failed
    std::string error;        // what went wrong, naming the file
    uint16_t frameCount = 0;  // frames of the movie written
    uint32_t fileLength = 0;  // uncompressed length
    int slidesWritten = 0;
    std::vector<std::string> warnings;  // pictures that could not be used, and the like
};

// The player ignores frames past this many.
constexpr int kPlayerFrameLimit = 16000;
extern const char* const kFrameLimitWarning;

class MovieExporter {
public:
    explicit MovieExporter(SlideShow& show);
    ExportResult ExportMovie(const std::string& path, ProgressSink* progress = nullptr,
                             const ExportOptions& options = {});

private:
    SlideShow& show_;
};

}  // namespace quillet
