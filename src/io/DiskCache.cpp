#include "io/DiskCache.h"

#include <xxhash.h>

#include <algorithm>
#include <cstdlib>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

#include "io/OutputFile.h"
#include "io/ReadFile.h"

namespace quillet {

namespace fs = std::filesystem;

namespace {

// "QLC1", the payload's length (u64, little end first), its 128-bit hash,
// then the payload.
constexpr char kMagic[4] = {'Q', 'L', 'C', '1'};
constexpr size_t kHeader = 4 + 8 + 16;
constexpr uint64_t kMaxEntry = 1ull << 30;

void PutU64(uint8_t* p, uint64_t v) {
    for (int i = 0; i < 8; ++i) p[i] = static_cast<uint8_t>(v >> (8 * i));
}

uint64_t GetU64(const uint8_t* p) {
    uint64_t v = 0;
    for (int i = 7; i >= 0; --i) v = v << 8 | p[i];
    return v;
}

}  // namespace

std::string CacheKey::Hex() const {
    char text[33];
    std::snprintf(text, sizeof text, "%016llx%016llx", static_cast<unsigned long long>(high),
                  static_cast<unsigned long long>(low));
    return text;
}

KeyHasher::KeyHasher() : state_(XXH3_createState()) { XXH3_128bits_reset(static_cast<XXH3_state_t*>(state_)); }
KeyHasher::~KeyHasher() { XXH3_freeState(static_cast<XXH3_state_t*>(state_)); }

KeyHasher& KeyHasher::AddNumber(int64_t value) {
    uint8_t bytes[8];
    PutU64(bytes, static_cast<uint64_t>(value));
    XXH3_128bits_update(static_cast<XXH3_state_t*>(state_), bytes, 8);
    return *this;
}

KeyHasher& KeyHasher::Add(std::string_view bytes) {
    AddNumber(static_cast<int64_t>(bytes.size()));
    XXH3_128bits_update(static_cast<XXH3_state_t*>(state_), bytes.data(), bytes.size());
    return *this;
}

bool KeyHasher::AddFile(const std::string& path) {
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return false;
    std::vector<char> buffer(1 << 20);
    int64_t total = 0;
    for (;;) {
        const ssize_t n = ::read(fd, buffer.data(), buffer.size());
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) {
            ::close(fd);
            return false;
        }
        if (n == 0) break;
        XXH3_128bits_update(static_cast<XXH3_state_t*>(state_), buffer.data(), static_cast<size_t>(n));
        total += n;
    }
    ::close(fd);
    AddNumber(total);
    return true;
}

CacheKey KeyHasher::Key() const {
    const XXH128_hash_t h = XXH3_128bits_digest(static_cast<XXH3_state_t*>(state_));
    return {h.high64, h.low64};
}

DiskCache::DiskCache(std::string folder, uint64_t maxBytes) : folder_(std::move(folder)), maxBytes_(maxBytes) {}

std::string DiskCache::DefaultFolder() {
    const char* xdg = std::getenv("XDG_CACHE_HOME");
    if (xdg && *xdg == '/') return (fs::path(xdg) / "quillet").string();
    const char* home = std::getenv("HOME");
    if (home && *home) return (fs::path(home) / ".cache" / "quillet").string();
    return {};
}

std::string DiskCache::PathFor(const CacheKey& key) const {
    const std::string hex = key.Hex();
    return (fs::path(folder_) / hex.substr(0, 2) / (hex.substr(2) + ".entry")).string();
}

bool DiskCache::Get(const CacheKey& key, std::vector<uint8_t>& value) const {
    if (folder_.empty()) return false;
    const std::string path = PathFor(key);
    std::vector<uint8_t> bytes;
    if (!ReadFileLimited(path, kMaxEntry + kHeader, bytes, nullptr)) return false;
    const bool sound = bytes.size() >= kHeader && std::memcmp(bytes.data(), kMagic, 4) == 0 &&
                       GetU64(bytes.data() + 4) == bytes.size() - kHeader;
    if (sound) {
        const XXH128_hash_t h = XXH3_128bits(bytes.data() + kHeader, bytes.size() - kHeader);
        if (GetU64(bytes.data() + 12) == h.high64 && GetU64(bytes.data() + 20) == h.low64) {
            // Moved in place rather than copied: an entry can be a long sound.
            bytes.erase(bytes.begin(), bytes.begin() + kHeader);
            value = std::move(bytes);
            // The modification time records the last use, for Trim.
            ::utimensat(AT_FDCWD, path.c_str(), nullptr, 0);
            return true;
        }
    }
    ::unlink(path.c_str());  // damaged: rebuilt by the caller
    return false;
}

bool DiskCache::Put(const CacheKey& key, const std::vector<uint8_t>& value) {
    if (folder_.empty() || value.size() > kMaxEntry) return false;
    const std::string path = PathFor(key);
    std::error_code ec;
    fs::create_directories(fs::path(path).parent_path(), ec);
    if (ec) return false;
    uint8_t header[kHeader];
    std::memcpy(header, kMagic, 4);
    PutU64(header + 4, value.size());
    const XXH128_hash_t h = XXH3_128bits(value.data(), value.size());
    PutU64(header + 12, h.high64);
    PutU64(header + 20, h.low64);
    OutputFile out;
    if (!out.Open(path, true)) return false;
    if (std::fwrite(header, 1, kHeader, out.File()) != kHeader ||
        std::fwrite(value.data(), 1, value.size(), out.File()) != value.size())
        out.SetFailed("short write");
    return out.Commit();
}

void DiskCache::Trim() const {
    if (folder_.empty()) return;
    struct Entry {
        fs::path path;
        uint64_t size;
        int64_t used;
    };
    std::vector<Entry> entries;
    uint64_t total = 0;
    std::error_code ec;
    for (auto it = fs::recursive_directory_iterator(folder_, ec); !ec && it != fs::recursive_directory_iterator();
         it.increment(ec)) {
        if (it->path().extension() != ".entry") continue;
        struct stat st {};
        if (::stat(it->path().c_str(), &st) != 0 || !S_ISREG(st.st_mode)) continue;
        entries.push_back({it->path(), static_cast<uint64_t>(st.st_size),
                           static_cast<int64_t>(st.st_mtim.tv_sec) * 1000000000 + st.st_mtim.tv_nsec});
        total += static_cast<uint64_t>(st.st_size);
    }
    if (total <= maxBytes_) return;
    std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) { return a.used < b.used; });
    for (const Entry& e : entries) {
        if (total <= maxBytes_) break;
        if (::unlink(e.path.c_str()) == 0) total -= e.size;
    }
}

}  // namespace quillet
