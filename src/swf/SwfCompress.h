// Compressed movies: "CWS", the version and the length copied unchanged (the
// length stays that of the uncompressed movie), then one zlib stream of bytes
// 8..end. Both directions stream through 64-byte buffers, so memory stays
// fixed whatever the file size.
#pragma once

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

bool CompressSwf(const std::string& sourcePath, const std::string& destPath, bool overwrite);
bool ExpandSwf(const std::string& sourcePath, const std::string& destPath, bool overwrite);
// As ExpandSwf, but gives up (false) once the expanded movie would exceed
// maxBytes; readers of untrusted movies use it against decompression bombs.
bool ExpandSwfLimited(const std::string& sourcePath, const std::string& destPath, bool overwrite,
                      unsigned long long maxBytes);
// The file opens and begins with "FWS" or "CWS".
bool IsSwfFile(const std::string& path);
// The file begins with "CWS" (false with error 5 when it cannot be opened).
bool IsCompressedSwf(const std::string& path);
// False for a directory; an existing file is deleted only with overwrite;
// then an empty file is created at path.
bool PrepareDestination(const std::string& path, bool overwrite);

}  // namespace quillet
