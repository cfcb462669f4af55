// The program among services that are there and say nothing: it starts, switches, and ends.
#include "program_session.h"
#include "session/ibus_session.h"
#include "session/private_bus.h"

#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <optional>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>

namespace hopsel::test {
namespace {

namespace fs = std::filesystem;

/// Puts variables back as they were.
class Variables {
  public:
    ~Variables() {
        for (const auto& [name, value] : before_)
            value ? setenv(name.c_str(), value->c_str(), 1) : unsetenv(name.c_str());
    }
    void set(const std::string& name, const std::string& value) {
        const char* previous = std::getenv(name.c_str());
        before_.try_emplace(name, previous == nullptr ? std::nullopt : std::optional<std::string>(previous));
        setenv(name.c_str(), value.c_str(), 1);
    }

  private:
    std::map<std::string, std::optional<std::string>> before_;
};

class HungServices : public Session {
  protected:
    void expectThatItStartsSwitchesAndEnds() {
        const double start = monotonicSeconds();
        HopselProgram program(HOPSEL_EXECUTABLE, twoRules);
        EXPECT_TRUE(tapsUntilGroup(1)) << "it waits for nobody";
        RecordProperty("firstSwitchAfterMilliseconds", static_cast<int>((monotonicSeconds() - start) * 1000));
        EXPECT_TRUE(shiftSpaceSwitchesTo(0));
        program.process().kill(SIGTERM);
        EXPECT_TRUE(program.process().waitForExit(5s));
    }
    static std::unique_ptr<ChildProcess> start(const std::string& program, const std::string& package,
                                               const std::vector<std::string>& arguments = {}) {
        ChildProcess::Options options;
        options.program = program;
        options.package = package;
        options.arguments = arguments;
        options.output = ChildProcess::Output::capture;
        options.errors = ChildProcess::Output::discard;
        return std::make_unique<ChildProcess>(options);
    }
    static void waitForName(const std::string& name) {
        ChildProcess::Options options;
        options.program = "gdbus";
        options.package = "libglib2.0-bin";
        options.arguments = {"wait", "--session", "--timeout", "30", name};
        runProgram(options, 35s);
    }

    Variables variables;
};

TEST_F(HungServices, ABusThatNeverGreets) {
    const TemporaryFolder folder;
    const FileDescriptor silent(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    ASSERT_GE(silent.get(), 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string path = (folder.path() / "bus").string();
    path.copy(address.sun_path, sizeof(address.sun_path) - 1);
    ASSERT_EQ(bind(silent.get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    ASSERT_EQ(listen(silent.get(), 64), 0);
    variables.set("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + path);
    expectThatItStartsSwitchesAndEnds();
}

TEST_F(HungServices, ABusThatIsStopped) {
    PrivateBus bus;
    bus.process().kill(SIGSTOP);
    expectThatItStartsSwitchesAndEnds();
}

TEST_F(HungServices, AnAccessibilityServiceThatIsStopped) {
    const PrivateBus bus;
    const auto service = start("/usr/libexec/at-spi-bus-launcher", "at-spi2-core", {"--launch-immediately"});
    waitForName("org.a11y.Bus");
    service->kill(SIGSTOP);
    expectThatItStartsSwitchesAndEnds();
}

TEST_F(HungServices, AnInputMethodThatIsStopped) {
    IbusSession session;
    session.startDaemon();
    const Deadline deadline(30s);
    while (!start("ibus", "ibus", {"address"})->waitForLine("unix:", 5s)) ASSERT_FALSE(deadline.hasPassed());
    const fs::path folder = fs::path(std::getenv("XDG_CONFIG_HOME")) / "ibus/bus";
    variables.set("IBUS_ADDRESS_FILE", fs::directory_iterator(folder)->path().string());
    variables.set("QT_IM_MODULE", "ibus");
    session.daemon().kill(SIGSTOP);
    expectThatItStartsSwitchesAndEnds();
}

TEST_F(HungServices, APanelThatIsStoppedAtTheStartAndLater) {
    const PrivateBus bus;
    const auto panel = start(HOPSEL_NOTIFIER_PANEL, "hopsel's own test program");
    ASSERT_TRUE(panel->waitForLine("ready", patience));
    panel->kill(SIGSTOP);
    expectThatItStartsSwitchesAndEnds();
    panel->kill(SIGCONT);
    HopselProgram program(HOPSEL_EXECUTABLE, twoRules);
    ASSERT_TRUE(panel->waitForLine("item", patience));
    panel->kill(SIGSTOP);
    layouts.lockGroup(0);
    EXPECT_TRUE(tapsUntilGroup(1));
    EXPECT_TRUE(shiftSpaceSwitchesTo(0));
}

} // namespace
} // namespace hopsel::test
