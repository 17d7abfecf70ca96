// The process's private temporary folder: made with mkdtemp under TMPDIR
// (or /tmp) the first time something needs it, removed with everything in
// it when the process ends. Work that needs no temporary file never makes
// it, so an unusable TMPDIR only fails the work that does.
#pragma once

#include <string>

namespace quillet {

// The folder, made on first use; empty (with `error` set) when it cannot be made.
std::string PrivateTempFolder(std::string* error = nullptr);
// A path inside it for `name`; empty when the folder cannot be made.
std::string PrivateTempFile(const std::string& name, std::string* error = nullptr);

}  // namespace quillet
