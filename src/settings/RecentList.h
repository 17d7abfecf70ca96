// A most-recent-first list of files (recent projects, recent images).
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace quillet {

class SettingsStore;

class RecentList {
public:
    static constexpr size_t kDefaultCapacity = 5;
    // A capacity read from the settings file is limited to this.
    static constexpr size_t kMaxCapacity = 100;

    explicit RecentList(std::string name, size_t capacity = kDefaultCapacity);

    const std::string& name() const { return name_; }
    size_t capacity() const { return capacity_; }
    // Drops the oldest entries beyond the new capacity.
    void setCapacity(size_t capacity);
    const std::vector<std::string>& entries() const { return entries_; }
    size_t size() const { return entries_.size(); }

    // Puts the file first. One already in the list (compared ignoring case)
    // moves to the front instead of appearing twice; the oldest entry falls
    // off when the list is full. Empty paths are ignored.
    void add(const std::string& path);
    bool remove(const std::string& path);  // ignoring case
    void clear() { entries_.clear(); }

    // Reads "<name>_max" (the capacity; 0 reads nothing more) and then
    // "<name>_1", "<name>_2", ... up to the capacity, stopping at the first
    // missing one. Entries whose file no longer exists are dropped.
    using ExistsCheck = std::function<bool(const std::string&)>;
    void load(const SettingsStore& store, const ExistsCheck& exists = {});
    // Writes "<name>_max", then the entries from the most recent as number 1,
    // and removes numbers beyond the last entry.
    void save(SettingsStore& store) const;

    bool operator==(const RecentList&) const = default;

private:
    std::string name_;
    size_t capacity_;
    std::vector<std::string> entries_;  // most recent first
};

}  // namespace quillet
