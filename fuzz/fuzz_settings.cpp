// Fuzz target for the settings file parser: any text parses (damaged lines
// are skipped), and what it holds writes out and reads back to the same
// text. String escaping round-trips any bytes.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "settings/SettingsStore.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);

    quillet::SettingsStore store;
    store.parse(text);
    const std::string first = store.serialize();
    quillet::SettingsStore again;
    again.parse(first);
    if (again.size() != store.size() || again.serialize() != first) std::abort();

    const auto unescaped = quillet::unescapeSettingString(quillet::escapeSettingString(text));
    if (!unescaped || *unescaped != text) std::abort();
    return 0;
}
