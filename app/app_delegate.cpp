#include "app/app_delegate.h"

#include "core/platform/input_source_switcher.h"
#include "core/platform/linux/main_loop.h"
#include "core/platform/linux/x11/x11_guest_key_sender.h"
#include "core/platform/linux/x11/x11_input_devices.h"
#include "core/platform/linux/x11/x11_listen_source.h"
#include "core/platform/linux/x11/x11_shortcut_source.h"
#include "core/platform/posix/posix_file_storage.h"

#include <QCoreApplication>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

namespace hopsel {

namespace {

using namespace std::chrono_literals;

constexpr auto retryInterval = 2000ms;
constexpr double tapMax = 0.5;

/// What a user who started the program must see at once, wherever the log goes.
void say(const std::string& line) { std::fprintf(stderr, "hopsel: %s\n", line.c_str()); }

void sayAnotherRuns(const SingleInstance& instance) {
    const auto process = instance.otherProcess();
    say("another copy is running already" +
        (process ? " (process " + std::to_string(*process) + ")" : std::string()));
}

/// Throws `std::runtime_error` if the session lacks what nothing can work without.
void requireSession() {
    X11Connection connection;
    x11_input_devices::requireXInput2(connection);
    x11_input_devices::requireXkb(connection);
}

std::int64_t secondsSince1970() {
    return std::chrono::duration_cast<std::chrono::seconds>(
               std::chrono::system_clock::now().time_since_epoch())
        .count();
}

} // namespace

AppDelegate::Launch AppDelegate::didFinishLaunching() {
    if (!singleInstance_.acquire()) {
        sayAnotherRuns(singleInstance_);
        return Launch::alreadyRunning;
    }
    try {
        requireSession();
        buildEngine();
    } catch (const std::runtime_error& error) {
        say(error.what());
        return Launch::impossible;
    }
    storage_ = std::make_shared<PosixFileStorage>(PosixFileStorage::xdgDataHome());
    store_ = std::make_unique<RuleStore>(configURL(*storage_), storage_, secondsSince1970);
    observePlatform();
    loadRules();
    engine_->apply(store_->config());
    engine_->start();
    sayWhyNotListening();
    startRetrying();
    return Launch::running;
}

void AppDelegate::willTerminate() {
    retryTimer_.stop();
    if (engine_) engine_->stop();
}

std::filesystem::path AppDelegate::configURL(const FileStorage& storage) {
    const char* path = std::getenv("HOPSEL_CONFIG");
    if (path != nullptr && *path != '\0') return path;
    return RuleStore::defaultFileURL(storage);
}

void AppDelegate::buildEngine() {
    hook_ = std::make_shared<X11KeyHook>(uptimeSeconds);
    hook_->onHandled = runScheduled;
    listenSource_ = std::make_shared<X11ListenSource>(hook_);
    sources_ = std::make_shared<XkbInputSources>();
    engine_ = EngineCoordinator::create({
        .source = listenSource_,
        .shortcutSource = std::make_shared<X11ShortcutSource>(hook_, log_),
        .service = std::make_shared<LiveInputSourceService>(sources_, uptimeSeconds, runFor),
        .secureInput = std::make_shared<NoSecureInput>(),
        .guestKeySender = std::make_shared<X11GuestKeySender>(hook_, uptimeSeconds),
        .tapMax = tapMax,
        .clock = uptimeSeconds,
        .schedule = schedule,
    });
}

void AppDelegate::loadRules() {
    try {
        store_->load();
    } catch (const std::exception& error) {
        say(store_->fileURL().string() + ": " + error.what() +
            ". No rule runs; the file is left as it is. Repair or move it and start again.");
    }
}

void AppDelegate::observePlatform() {
    const std::weak_ptr<EngineCoordinator> engine = engine_;
    sources_->onSourcesChanged = [engine] {
        if (const auto alive = engine.lock()) alive->refreshSources();
    };
    sources_->onLost = [this] { singleInstance_.release(); };
}

void AppDelegate::startRetrying() {
    QObject::connect(&retryTimer_, &QTimer::timeout, &retryTimer_, [this] { retryPermissionIfNeeded(); });
    retryTimer_.start(retryInterval);
}

void AppDelegate::retryPermissionIfNeeded() {
    if (sources_->isLost() && !reconnectSources()) return;
    if (std::holds_alternative<engine_state::Degraded>(engine_->state())) engine_->start();
    sayWhyNotListening();
    engine_->retryShortcutIfNeeded();
}

// While there is no server, another copy may take over: the one that the next session starts may know the way
// to its server better than this one.
bool AppDelegate::reconnectSources() {
    if (!sources_->reconnect()) return false;
    if (!singleInstance_.acquire()) {
        sayAnotherRuns(singleInstance_);
        QCoreApplication::quit();
        return false;
    }
    engine_->refreshSources();
    return true;
}

void AppDelegate::sayWhyNotListening() {
    const std::string& failure = listenSource_->failure();
    if (failure != saidLast_ && !failure.empty()) say(failure + "; trying again every two seconds");
    saidLast_ = failure;
}

} // namespace hopsel
