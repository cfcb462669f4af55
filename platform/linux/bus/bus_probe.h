// Asks, before the toolkit is made, whether what the toolkit would wait for answers.
//
// The toolkit waits inside its start, and in the main thread, for the session bus, for the accessibility
// service on it and for its input method: half a minute each if they hang. Blocks for a moment at most.
// Stateless.
#pragma once

#include <QString>
#include <chrono>

namespace hopsel::bus_probe {

struct Service {
    const char* name;
    const char* path;
    const char* interface;
    const char* property;
};

enum class Answer {
    none,    ///< nobody greets there
    silence, ///< the bus greets, but the service does not answer
    all,     ///< also where there is no such service
};

/// Of the bus at this address, and of a service on it that has this property, if one is named.
Answer ask(const QString& address, std::chrono::milliseconds patience, const Service* service = nullptr);

} // namespace hopsel::bus_probe
