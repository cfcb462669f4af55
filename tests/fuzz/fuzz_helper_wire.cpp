// Either side of the key helper's socket may send any bytes. They are one message or none, and a message has
// one form only; of what a session declares no more is taken than the policy allows.
#include "core/keys/shortcut_policy.h"
#include "platform/linux/keys_helper/protocol/helper_wire.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace hopsel;

namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

bool isSame(const helper_wire::Packet& written, helper_wire::Bytes read) {
    return written == helper_wire::Packet(read.begin(), read.end());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const helper_wire::Bytes packet(data, size);
    const auto fromSession = helper_wire::decodeToHelper(packet);
    const auto fromHelper = helper_wire::decodeToSession(packet);
    require(!fromSession || !fromHelper);
    require(!(fromSession || fromHelper) || size <= helper_wire::maxPacket);
    if (fromHelper) require(isSame(helper_wire::encode(*fromHelper), packet));
    if (!fromSession) return 0;
    require(isSame(helper_wire::encode(*fromSession), packet));
    if (const auto* declare = std::get_if<to_helper::Declare>(&*fromSession)) {
        const KeyDeclaration permitted = declare->declaration.permitted();
        require(permitted.permitted() == permitted);
        for (const ShortcutKey& key : permitted.combinations) require(shortcut_policy::isAllowed(key));
    }
    return 0;
}
