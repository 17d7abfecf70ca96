// Reads existing movies (plain "FWS" or compressed "CWS") into a header and a
// list of tag objects; tags we do not interpret are kept as raw tags that
// write back their bytes unchanged. Used to copy template movies into a show
// (with ids moved by OffsetIds) and by `quillet info`.
//
// Malformed input (truncated data, wrong lengths, absurd counts, unknown
// signatures) is refused with a reason; nothing is read outside the data.
//
//   SwfReader r;
//   if (!r.ReadFile(path)) { print(r.Error()); }
//   for (auto& tag : r.Tags()) ...
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "swf/SwfCompress.h"
#include "swf/SwfTag.h"
#include "swf/SwfTagLocation.h"
#include "swf/SwfWriter.h"

namespace quillet {

class SwfReader {
public:
    // Largest uncompressed movie accepted: a compressed movie's length field is
    // checked against it before anything is inflated, a plain file's size
    // before it is read.
    static constexpr uint64_t kMaxMovieBytes = kSwfMaxMovieBytes;

    // Reads a file; a compressed one is first expanded through ExpandSwf into
    // "_xxswfxx__.bin" in the process's private temporary folder (and removed
    // again), never past its length field.
    bool ReadFile(const std::string& path);
    // Reads a movie held in memory (either signature; a compressed one is
    // expanded in memory, up to its length field).
    bool ReadMemory(const uint8_t* data, size_t size);

    const std::string& Error() const { return error_; }
    const SwfHeader& Header() const { return header_; }
    std::vector<std::unique_ptr<SwfTag>>& Tags() { return tags_; }
    const std::vector<std::unique_ptr<SwfTag>>& Tags() const { return tags_; }
    const std::vector<SwfTagLocation>& Locations() const { return locations_; }
    // Hands the tags over (the reader is left without them).
    std::vector<std::unique_ptr<SwfTag>> TakeTags();

private:
    bool ReadMemoryPlain(const std::vector<uint8_t>& movie, bool compressed);
    bool Fail(const std::string& reason);

    SwfHeader header_;
    std::vector<std::unique_ptr<SwfTag>> tags_;
    std::vector<SwfTagLocation> locations_;
    std::string error_;
};

// Parses a sequence of tags (a movie body or a sprite's timeline) from `in`
// until an End tag or the end of the data. Appends to `tags` (and `locations`
// when given, offsets relative to `baseOffset`). False with the reason in
// `in` on malformed data.
bool ReadSwfTags(SwfInput& in, std::vector<std::unique_ptr<SwfTag>>& tags,
                 std::vector<SwfTagLocation>* locations = nullptr, uint64_t baseOffset = 0);

}  // namespace quillet
