#include "movie/PicturePipeline.h"

#include <algorithm>
#include <sstream>

#include "io/DiskCache.h"
#include "media/ImageFilter.h"
#include "media/ImageImporter.h"
#include "media/Progress.h"
#include "media/SlidePicture.h"
#include "xml/XmlWriter.h"

namespace quillet {

struct PicturePipeline::Slot {
    bool ready = false;
    BitmapCharacter picture;
    size_t held = 0;  // bytes charged to the budget until the writer takes it
};

namespace {

// Bumped whenever preparation changes the bytes it stores, so old cache
// entries are not taken for new ones.
constexpr int64_t kPictureFormatVersion = 1;

bool Cancelled(const ProgressSink* progress) { return progress && progress->cancelled(); }

// Only the cancel request reaches the workers; the writer shows the texts.
class CancelOnly : public ProgressSink {
public:
    explicit CancelOnly(const ProgressSink* outer) : outer_(outer) {}
    bool cancelled() const override { return Cancelled(outer_); }

private:
    const ProgressSink* outer_;
};

}  // namespace

bool PictureCacheKey(const SlideImage& image, const std::vector<std::unique_ptr<ImageFilter>>& filters,
                     CacheKey& key) {
    KeyHasher h;
    h.AddNumber(kPictureFormatVersion);
    h.Add(image.src);
    if (!h.AddFile(image.src)) return false;
    // Every setting that reaches the stored bytes (position and alignment do not).
    h.AddNumber(static_cast<int>(image.imageType)).AddNumber(image.quality);
    h.AddNumber(image.width).AddNumber(image.height);
    h.AddNumber(image.crop).AddNumber(image.cropRect.left).AddNumber(image.cropRect.top);
    h.AddNumber(image.cropRect.right).AddNumber(image.cropRect.bottom);
    h.AddNumber(image.flipVertical).AddNumber(image.flipHorizontal).AddNumber(image.rotation);
    for (uint8_t c : image.cornerOrder) h.AddNumber(c);
    h.AddNumber(image.adjustBitmapShift);
    std::ostringstream saved;
    XmlWriter w;
    w.open(saved);
    for (const auto& f : filters)
        if (f) WriteFilterElement(w, *f);
    w.close();
    h.Add(saved.str());
    key = h.Key();
    return true;
}

PicturePipeline::PicturePipeline(std::vector<PictureJob> jobs, const PipelineOptions& options)
    : jobs_(std::move(jobs)), options_(options) {
    int threads = options_.threads > 0 ? options_.threads : static_cast<int>(std::thread::hardware_concurrency());
    threads = std::clamp(threads, 1, 64);
    if (options_.window <= 0) options_.window = 16 * threads;
    slots_.resize(jobs_.size());
    for (auto& s : slots_) s = std::make_unique<Slot>();
    threads = std::min<int>(threads, static_cast<int>(jobs_.size()));
    for (int i = 0; i < threads; ++i) workers_.emplace_back([this] { Work(); });
}

PicturePipeline::~PicturePipeline() {
    {
        std::lock_guard<std::mutex> hold(lock_);
        stopping_ = true;
    }
    changed_.notify_all();
    for (auto& t : workers_) t.join();
}

PipelineStats PicturePipeline::Stats() const {
    std::lock_guard<std::mutex> hold(lock_);
    return stats_;
}

bool PicturePipeline::Reserve(size_t index, size_t bytes) {
    std::unique_lock<std::mutex> hold(lock_);
    // The picture the writer waits for always goes; the others wait until
    // they fit beside what is in flight.
    changed_.wait(hold, [&] { return stopping_ || index == nextTaken_ || inFlight_ + bytes <= options_.memoryBudget; });
    if (stopping_) return false;
    inFlight_ += bytes;
    stats_.peakEstimate = std::max(stats_.peakEstimate, inFlight_);
    return true;
}

void PicturePipeline::Release(size_t bytes) {
    {
        std::lock_guard<std::mutex> hold(lock_);
        inFlight_ -= std::min(bytes, inFlight_);
    }
    changed_.notify_all();
}

BitmapCharacter PicturePipeline::Prepare(size_t index) {
    const PictureJob& job = jobs_[index];
    if (!job.image) return {};
    static const std::vector<std::unique_ptr<ImageFilter>> kNoFilters;
    const auto& filters = job.filters ? *job.filters : kNoFilters;
    const SlideImage& image = *job.image;

    // Pictures loaded at play time or stored as the file's own bytes cost
    // little to prepare; the others go through the cache.
    const bool cacheable = options_.cache && image.imageType != ImageType::JpegExternal &&
                           image.imageType != ImageType::JpegImportData;
    CacheKey key;
    const bool keyed = cacheable && PictureCacheKey(image, filters, key);
    if (keyed) {
        std::vector<uint8_t> bytes;
        BitmapCharacter cached;
        if (options_.cache->Get(key, bytes) && DeserializeCharacter(bytes, cached)) {
            std::lock_guard<std::mutex> hold(lock_);
            ++stats_.fromCache;
            return cached;
        }
    }

    ImageImporter importer;
    if (!importer.Open(image.src)) {
        BitmapCharacter out;
        out.type = image.imageType;
        out.error = image.src + ": " + importer.error();
        return out;
    }
    const size_t estimate = EstimatePrepareBytes(importer, image);
    if (!Reserve(index, estimate)) return {};
    CancelOnly cancel(options_.progress);
    PrepareOptions prep;
    prep.progress = &cancel;
    // Pixels become the character's data on this worker too.
    BitmapCharacter picture = EncodeBitmapCharacter(PrepareSlideImage(importer, image, filters, prep));
    Release(estimate);
    {
        std::lock_guard<std::mutex> hold(lock_);
        ++stats_.prepared;
    }
    if (keyed && picture.ok && !picture.cancelled) options_.cache->Put(key, SerializeCharacter(picture));
    return picture;
}

void PicturePipeline::Work() {
    for (;;) {
        size_t index;
        {
            std::unique_lock<std::mutex> hold(lock_);
            changed_.wait(hold, [&] {
                return stopping_ || nextJob_ >= jobs_.size() ||
                       nextJob_ < nextTaken_ + static_cast<size_t>(options_.window);
            });
            if (stopping_ || nextJob_ >= jobs_.size()) return;
            index = nextJob_++;
        }
        BitmapCharacter picture;
        if (!Cancelled(options_.progress)) picture = Prepare(index);
        const size_t held = picture.ByteSize();
        {
            std::lock_guard<std::mutex> hold(lock_);
            Slot& slot = *slots_[index];
            slot.picture = std::move(picture);
            slot.held = held;
            slot.ready = true;
            inFlight_ += held;
            stats_.peakEstimate = std::max(stats_.peakEstimate, inFlight_);
        }
        changed_.notify_all();
    }
}

BitmapCharacter PicturePipeline::Next() {
    std::unique_lock<std::mutex> hold(lock_);
    if (nextTaken_ >= slots_.size()) return {};
    Slot& slot = *slots_[nextTaken_];
    changed_.wait(hold, [&] { return slot.ready; });
    BitmapCharacter picture = std::move(slot.picture);
    inFlight_ -= std::min(slot.held, inFlight_);
    ++nextTaken_;
    hold.unlock();
    changed_.notify_all();
    return picture;
}

}  // namespace quillet
