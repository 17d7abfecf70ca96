// Prepares the pictures of a show on worker threads while the movie is
// written in slide order. A picture starts only when the memory its
// preparation is estimated to need fits the budget beside the others in
// flight (the one the writer needs next always starts), and never more
// than a few pictures ahead of the writer, so memory stays flat however
// long the show. Prepared pictures are kept in the disk cache when one is
// given, and taken from it on the next export.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "media/SlideImage.h"
#include "movie/BitmapCharacter.h"

namespace quillet {

struct CacheKey;
class DiskCache;
class ImageFilter;
class ProgressSink;

struct PictureJob {
    const SlideImage* image = nullptr;  // null: a slide without a picture
    const std::vector<std::unique_ptr<ImageFilter>>* filters = nullptr;
};

struct PipelineOptions {
    int threads = 0;                       // 0: one per core
    size_t memoryBudget = 190u << 20;      // estimated bytes of pictures in flight and waiting
    int window = 0;                        // pictures prepared ahead of the writer (0: 16 a worker)
    DiskCache* cache = nullptr;            // null: no cache
    const ProgressSink* progress = nullptr;  // polled for cancel
};

struct PipelineStats {
    int prepared = 0;    // pictures decoded and encoded
    int fromCache = 0;   // pictures taken from the cache
    size_t peakEstimate = 0;  // the most estimated bytes held at once
};

class PicturePipeline {
public:
    PicturePipeline(std::vector<PictureJob> jobs, const PipelineOptions& options);
    ~PicturePipeline();  // stops the workers (the pictures not taken are dropped)
    PicturePipeline(const PicturePipeline&) = delete;
    PicturePipeline& operator=(const PicturePipeline&) = delete;

    // The next slide's bitmap in slide order, waiting for it. An empty
    // result for a slide without a picture.
    BitmapCharacter Next();
    PipelineStats Stats() const;

private:
    struct Slot;
    void Work();
    BitmapCharacter Prepare(size_t index);
    bool Reserve(size_t index, size_t bytes);  // false when stopping
    void Release(size_t bytes);

    std::vector<PictureJob> jobs_;
    PipelineOptions options_;
    std::vector<std::unique_ptr<Slot>> slots_;
    mutable std::mutex lock_;
    std::condition_variable changed_;
    size_t nextJob_ = 0;     // the next job a worker takes
    size_t nextTaken_ = 0;   // the next picture the writer takes
    size_t inFlight_ = 0;    // estimated bytes reserved
    bool stopping_ = false;
    PipelineStats stats_;
    std::vector<std::thread> workers_;
};

// The cache key of a slide's prepared picture: the picture file's path and
// contents and every setting that changes the stored bytes. False when the
// file cannot be read.
bool PictureCacheKey(const SlideImage& image, const std::vector<std::unique_ptr<ImageFilter>>& filters,
                     CacheKey& key);

}  // namespace quillet
