// Reading whole files from outside with their size checked first, so a huge
// or endless file (a device, a pipe) never gets memory spent on it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace quillet {

// Reads the regular file at `path` when it holds at most maxBytes. False with
// `error` ("the file was not found", "the file is too large (N bytes; the
// limit is M)", ...) otherwise.
bool ReadFileLimited(const std::string& path, uint64_t maxBytes, std::vector<uint8_t>& out, std::string* error);

}  // namespace quillet
