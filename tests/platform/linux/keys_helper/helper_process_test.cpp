// The real helper on a socket, without a device: how it greets, what it refuses, how it ends.
#include "platform/linux/keys_helper/helper_process.h"
#include "platform/linux/keys_helper/live/device_facts.h"
#include "session/temporary_folder.h"

#include <csignal>
#include <gtest/gtest.h>

namespace hopsel {
namespace {

/// Who runs the tests need not be the one who sits at the computer.
const std::vector<std::string> servesAnyone{"--serve-anyone", "1"};

TEST(HelperProcess, GreetsAndEndsWithItsSession) {
    HelperProcess helper{servesAnyone};
    helper.send(to_helper::Hello{});
    EXPECT_TRUE(helper.until("held:0").starts_with("welcome:1"));
    helper.send(to_helper::Declare{{.combinations = {{0, {}}}}}); // types text: taken as no wish to filter
    helper.sendBytes(helper_wire::Packet{99});
    EXPECT_NE(helper.until("closed").find(":off,refused:1"), std::string::npos);
    helper.closeSocket();
    EXPECT_EQ(helper.waitForExit(), 0);
}

TEST(HelperProcess, EndsOrderlyWhenItIsTold) {
    HelperProcess helper{servesAnyone};
    helper.send(to_helper::Hello{});
    helper.until("held:0");
    helper.kill(SIGTERM);
    EXPECT_EQ(helper.waitForExit(), 0);
}

TEST(HelperProcess, EndsWithASessionThatDoesNotSpeakItsLanguage) {
    const auto isRefused = [](const std::vector<helper_wire::Packet>& packets) {
        HelperProcess helper{servesAnyone};
        for (const auto& packet : packets) helper.sendBytes(packet);
        const std::string said = helper.until("closed");
        EXPECT_EQ(helper.waitForExit(), 0);
        return said.ends_with("closed") ? said.substr(0, said.find(' ')) : said;
    };
    const auto hello = helper_wire::encode(to_helper::Hello{});
    EXPECT_EQ(isRefused({helper_wire::encode(to_helper::Hello{2})}), "welcome:1") << "so that it can say why";
    EXPECT_EQ(isRefused({helper_wire::encode(to_helper::Declare{})}), "closed") << "unasked";
    EXPECT_EQ(isRefused({{9, 9, 9}}), "closed");
    EXPECT_EQ(isRefused({hello, hello}), "welcome:1");
    EXPECT_EQ(isRefused({hello, helper_wire::Packet(5'000, 2)}), "welcome:1");
}

TEST(HelperService, LetsNobodyInWhomTheSystemDoesNotNameInFront) {
    session::TemporaryFolder folder;
    HelperService service((folder.path() / "keys.sock").string());
    HelperPeer first((folder.path() / "keys.sock").string());
    service.start();
    EXPECT_EQ(first.until("closed"), "inactive closed");
    HelperPeer second((folder.path() / "keys.sock").string());
    EXPECT_EQ(second.until("closed"), "inactive closed") << "it goes on answering";
}

TEST(DeviceFacts, TellAKeyboardByItsLetters) {
    using device_facts::hasLetters;
    EXPECT_TRUE(hasLetters("402000000 3803078f800d001 feffffdfffefffff fffffffffffffffe"));
    EXPECT_TRUE(hasLetters("fffffffe"));
    EXPECT_FALSE(hasLetters("10000000000000 0")); // a power button
    EXPECT_FALSE(hasLetters("fffffffffffffffe 70000 0 0 0 0"));
    for (const char* text : {"", "x", "0x", "ffffffffffffffffff", "fffffffe "})
        EXPECT_FALSE(hasLetters(text)) << text;
}

} // namespace
} // namespace hopsel
