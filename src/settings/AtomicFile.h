// Replacing a file so that a failure part way never destroys what was there:
// the bytes go to a temporary file in the same folder, are flushed to the
// disk, and only then renamed over the target.
#pragma once

#include <string>
#include <string_view>

namespace quillet {

// Writes `bytes` to `path` atomically. The new file keeps the permissions of
// the file it replaces (a new file gets 0666 less the umask). On failure the
// old file is untouched, the temporary file is removed, and `error` (when
// given) says what went wrong.
bool WriteFileAtomically(const std::string& path, std::string_view bytes, std::string* error = nullptr);

}  // namespace quillet
