// The settings file may hold any bytes. They are read or refused, never worse; what is read is written in one
// way and reads back the same, and the version is the one that was found before.
#include "core/rules/config_json.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace hopsel::config_json;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto version = probeSchemaVersion(text);
    hopsel::Config config;
    try {
        config = decode(text);
    } catch (const DecodingError&) {
        return 0;
    }
    if (version != config.schemaVersion) std::abort();
    const std::string written = encode(config);
    if (decode(written) != config || encode(decode(written)) != written) std::abort();
    return 0;
}
