// Compressed movies: "CWS", the version and the length copied unchanged (the
// length stays that of the uncompressed movie), then one zlib stream of bytes
// 8..end. Both directions stream through 64-byte buffers, so memory stays
// fixed whatever the file size.
//
// The destination is written through an OutputFile: it is checked before any
// byte is written, filled under a private name beside it and renamed into
// place when complete, so a failure (damaged data, a full disk, a file-size
// limit) leaves an existing destination untouched and creates none.
#pragma once

#include <cstdint>
#include <string>

namespace quillet {

// Why the last compression or expansion failed.
enum SwfError : int {
    kSwfErrorNone = 0,
    kSwfErrorNotMovie = 2,        // compress: source missing or not "FWS"/"CWS"
    kSwfErrorNotCompressed = 3,   // expand: source does not begin with "CWS"
    kSwfErrorCannotRead = 5,      // the source cannot be opened for reading
    kSwfErrorDestination = 7,     // the destination cannot be created
};
int SwfLastError();
void SetSwfLastError(int code);
// A short English text for a code ("the source is not a movie").
const char* SwfErrorText(int code);

// Largest uncompressed movie expanded or read (512 MiB; exports of big shows
// reach about 200 MB). A compressed movie declaring more is refused before
// anything is inflated.
constexpr uint64_t kSwfMaxMovieBytes = uint64_t(512) << 20;

// On failure `error` (when given) names the file at fault and the problem:
// "out.swf: the file exists already", "in.swf: already compressed (it begins
// with CWS)", "out.swf: cannot write: File too large".
bool CompressSwf(const std::string& sourcePath, const std::string& destPath, bool overwrite,
                 std::string* error = nullptr);
// Refuses a movie whose length field exceeds kSwfMaxMovieBytes, and one whose
// data inflate past its length field.
bool ExpandSwf(const std::string& sourcePath, const std::string& destPath, bool overwrite,
               std::string* error = nullptr);
// As ExpandSwf with another limit in place of kSwfMaxMovieBytes.
bool ExpandSwfLimited(const std::string& sourcePath, const std::string& destPath, bool overwrite,
                      uint64_t maxBytes, std::string* error = nullptr);
// The file opens and begins with "FWS" or "CWS".
bool IsSwfFile(const std::string& path);
// The file begins with "CWS" (false with error 5 when it cannot be opened).
bool IsCompressedSwf(const std::string& path);

}  // namespace quillet
