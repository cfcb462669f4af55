// hopsel-keys: reads the keyboards for one session of Hopsel, and passes their keys on.
//
// With `--session <descriptor>` it is a child of the program, for users who may read the devices themselves;
// without options it is started by the system's service manager when somebody connects.
//
// The other options are for tests.
#include "platform/linux/keys_helper/live/key_helper.h"
#include "platform/linux/keys_helper/live/reception.h"

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <optional>
#include <string_view>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <systemd/sd-daemon.h>
#include <utility>

namespace {

using namespace hopsel;

struct Options {
    std::optional<int> session;
    KeyHelper::Options helper;
    bool areUnderstood = true;
};

Options read(int count, char** words) {
    Options options;
    for (int index = 1; index < count; index += 2) {
        const std::string_view text = index + 1 < count ? words[index + 1] : "";
        int value = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        const bool isNumber = error == std::errc{} && end == text.data() + text.size() && value >= 0;
        const std::string_view name = isNumber ? words[index] : "";
        if (name == "--session")
            options.session = value;
        else if (name == "--answer-within-ms")
            options.helper.answer = std::chrono::milliseconds(value);
        else if (name == "--mirror-settles-in-ms")
            options.helper.mirrorSettling = std::chrono::milliseconds(value);
        else if (name == "--farewell-ms")
            options.helper.farewell = std::chrono::milliseconds(value);
        else if (name == "--serve-anyone")
            options.helper.isAnyoneServed = value != 0;
        else
            options.areUnderstood = false;
    }
    // Who is a child has the rights of its user, and may do with them as it likes; the service may not.
    options.helper.isService = !options.session;
    if (options.helper.isService && count > 1) options.areUnderstood = false;
    return options;
}

/// What was typed is in this memory for a moment: no dump of it, and no look into it by the user's other
/// programs.
void keepToOurselves() {
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
    prctl(PR_SET_DUMPABLE, 0);
}

} // namespace

int main(int argc, char** argv) {
    const Options options = read(argc, argv);
    if (!options.areUnderstood) {
        std::fputs("usage: hopsel-keys [--session <descriptor>]\n", stderr);
        return EXIT_FAILURE;
    }
    keepToOurselves();
    try {
        EventLoop loop;
        std::optional<KeyHelper> helper;
        std::optional<Reception> reception;
        const auto serve = [&](Descriptor session) {
            helper.emplace(loop, std::move(session), options.helper);
        };
        if (options.session) {
            serve(Descriptor(*options.session));
        } else if (sd_listen_fds(1) == 1) {
            reception.emplace(loop, Descriptor(SD_LISTEN_FDS_START), serve);
        } else {
            std::fputs("hopsel-keys: it is started by Hopsel, or by its socket\n", stderr);
            return EXIT_FAILURE;
        }
        sd_notify(0, "READY=1");
        loop.run();
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "hopsel-keys: %s\n", failure.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
