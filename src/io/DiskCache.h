// A folder of cached results, each a file named by a 128-bit key and checked
// by a hash of its contents when read. Entries are written beside their final
// name and renamed into place, so two processes filling the same cache never
// see half an entry; a damaged entry reads as a miss and is removed. The
// folder is kept under a size limit by dropping the entries used longest ago.
//
//   DiskCache cache(DiskCache::DefaultFolder(), 512 << 20);
//   CacheKey key = HashParts({settingsBytes, fileHash});
//   if (!cache.Get(key, bytes)) { bytes = Compute(); cache.Put(key, bytes); }
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quillet {

struct CacheKey {
    uint64_t high = 0, low = 0;
    std::string Hex() const;
    bool operator==(const CacheKey&) const = default;
};

// Builds a key from any number of byte strings (their lengths are hashed too,
// so ("ab", "c") and ("a", "bc") differ).
class KeyHasher {
public:
    KeyHasher();
    ~KeyHasher();
    KeyHasher(const KeyHasher&) = delete;
    KeyHasher& operator=(const KeyHasher&) = delete;
    KeyHasher& Add(std::string_view bytes);
    KeyHasher& Add(const void* data, size_t size) { return Add(std::string_view(static_cast<const char*>(data), size)); }
    KeyHasher& AddNumber(int64_t value);
    // The contents of a file (read in pieces); false when it cannot be read.
    bool AddFile(const std::string& path);
    CacheKey Key() const;

private:
    void* state_;
};

class DiskCache {
public:
    DiskCache(std::string folder, uint64_t maxBytes);

    // $XDG_CACHE_HOME/quillet, else ~/.cache/quillet; empty when neither is known.
    static std::string DefaultFolder();

    // False on a miss, a damaged entry (removed) or an unusable folder.
    bool Get(const CacheKey& key, std::vector<uint8_t>& value) const;
    // Best effort: false when the entry could not be written (the work goes on).
    bool Put(const CacheKey& key, const std::vector<uint8_t>& value);
    // Drops the least recently used entries until the folder fits maxBytes.
    void Trim() const;

    const std::string& Folder() const { return folder_; }
    uint64_t MaxBytes() const { return maxBytes_; }

private:
    std::string PathFor(const CacheKey& key) const;
    std::string folder_;
    uint64_t maxBytes_;
};

}  // namespace quillet
