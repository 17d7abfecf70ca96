#include "settings/RecentList.h"

#include <algorithm>
#include <filesystem>

#include "settings/SettingsStore.h"

namespace quillet {

namespace {

bool sameIgnoringCase(const std::string& a, const std::string& b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i) {
        char x = a[i], y = b[i];
        if (x >= 'A' && x <= 'Z') x = static_cast<char>(x - 'A' + 'a');
        if (y >= 'A' && y <= 'Z') y = static_cast<char>(y - 'A' + 'a');
        if (x != y) return false;
    }
    return true;
}

// Longest entry kept: the system's path limit.
constexpr size_t kMaxEntry = 4096;

}  // namespace

RecentList::RecentList(std::string name, size_t capacity) : name_(std::move(name)), capacity_(capacity) {}

void RecentList::setCapacity(size_t capacity) {
    capacity_ = std::min(capacity, kMaxCapacity);
    if (entries_.size() > capacity_) entries_.resize(capacity_);
}

void RecentList::add(const std::string& path) {
    if (path.empty() || capacity_ == 0) return;
    remove(path);
    entries_.insert(entries_.begin(), path);
    if (entries_.size() > capacity_) entries_.resize(capacity_);
}

bool RecentList::remove(const std::string& path) {
    auto it = std::find_if(entries_.begin(), entries_.end(),
                           [&](const std::string& e) { return sameIgnoringCase(e, path); });
    if (it == entries_.end()) return false;
    entries_.erase(it);
    return true;
}

void RecentList::load(const SettingsStore& store, const ExistsCheck& exists) {
    entries_.clear();
    if (auto max = store.dword(name_ + "_max")) capacity_ = std::min<size_t>(*max, kMaxCapacity);
    if (capacity_ == 0) return;

    std::vector<std::string> read;
    for (size_t i = 1; i <= capacity_; ++i) {
        auto entry = store.string(name_ + "_" + std::to_string(i));
        if (!entry) break;
        read.push_back(*entry);
    }
    // Adding from the oldest keeps number 1 in front; a duplicate keeps the
    // more recent of its places.
    for (auto it = read.rbegin(); it != read.rend(); ++it) {
        if (it->size() > kMaxEntry) continue;
        bool present = exists ? exists(*it) : [&] {
            std::error_code ec;
            return std::filesystem::exists(*it, ec);
        }();
        if (present) add(*it);
    }
}

void RecentList::save(SettingsStore& store) const {
    store.setDword(name_ + "_max", static_cast<uint32_t>(capacity_));
    size_t i = 0;
    for (; i < entries_.size() && i < capacity_; ++i) store.setString(name_ + "_" + std::to_string(i + 1), entries_[i]);
    // Entries left from a longer list would come back on the next load.
    for (; i < kMaxCapacity; ++i) store.Remove(name_ + "_" + std::to_string(i + 1));
}

}  // namespace quillet
