#include "app/app_delegate.h"

#include "core/diagnostics/diagnostics_recorder.h"
#include "core/rules/rule_store.h"
#include "model/texts/l10n.h"
#include "model/texts/system_words.h"
#include "ui/design/colors.h"
#include "ui/settings/runs_on_message.h"

#include <QCoreApplication>
#include <QPointer>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <utility>

namespace hopsel {

namespace {

constexpr double tapMax = 0.5;

/// What a user who started the program must see at once, wherever the log goes.
void say(const std::string& line) { std::fprintf(stderr, "hopsel: %s\n", line.c_str()); }

void sayAnotherRuns(const SingleInstance& instance) {
    const auto process = instance.otherProcess();
    say("another copy is running already" +
        (process ? " (process " + std::to_string(*process) + ")" : std::string()));
}

std::int64_t secondsSince1970() {
    return std::chrono::duration_cast<std::chrono::seconds>(
               std::chrono::system_clock::now().time_since_epoch())
        .count();
}

std::string appVersion() {
    const QString version = QCoreApplication::applicationVersion();
    return version.isEmpty() ? "dev" : version.toStdString();
}

std::string words(const StoreProblem& problem) {
    if (const auto* corrupt = std::get_if<store_problem::Corrupt>(&problem))
        return StoreError(store_error::Corrupt{corrupt->backupPath}).what();
    if (const auto* newer = std::get_if<store_problem::NewerVersion>(&problem))
        return StoreError(store_error::UnsupportedSchemaVersion{newer->version}).what();
    return std::get<store_problem::Unreadable>(problem).description;
}

} // namespace

AppDelegate::AppDelegate(std::unique_ptr<SingleInstance> singleInstance, PlatformFactory makePlatform,
                         Start start, std::chrono::milliseconds retryEvery)
    : singleInstance_(std::move(singleInstance)),
      makePlatform_(std::move(makePlatform)),
      start_(start),
      retryTimer_(retryEvery, [this] { return needsRetry(); }, [this] { retry(); }) {}

AppDelegate::Launch AppDelegate::didFinishLaunching() {
    if (!singleInstance_->acquire()) {
        const bool mayShow = start_ == Start::byHand;
        if (!mayShow || !singleInstance_->activateOther()) sayAnotherRuns(*singleInstance_);
        return Launch::alreadyRunning;
    }
    try {
        platform_ = makePlatform_();
    } catch (const std::runtime_error& error) {
        say(error.what());
        return Launch::impossible;
    }
    l10n::setSystemWords(platform_->words());
    buildModel();
    observePlatform();
    buildWindows();
    model_->start();
    // A user who was here before and lost the permission is asked at once; a new one by the introduction.
    if (model_->statusLine() == StatusLine::permissionMissing && model_->onboardingCompleted())
        settingsOpener_->requestInputMonitoring();
    retryTimer_.start();
    sayStoreProblem();
    sayWhyNotListening();
    showFirstWindow();
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

void AppDelegate::buildModel() {
    const DiagnosticsEnvironment environment = platform_->environment();
    EngineCoordinator::Parts engineParts = platform_->engineParts();
    engineParts.tapMax = tapMax;
    engineParts.clock = environment.uptime;
    engine_ = EngineCoordinator::create(std::move(engineParts));

    const std::shared_ptr<FileStorage> storage = platform_->storage();
    const std::filesystem::path file = configURL(*storage);
    storage->clearLeftovers(file);
    store_ = std::make_shared<RuleStore>(file, storage, secondsSince1970);
    settingsOpener_ = platform_->settingsOpener();
    directory_ = std::make_shared<LiveInputSourceDirectory>(platform_->inputSources());
    model_ = std::make_unique<AppModel>(AppModel::Parts{
        .store = store_,
        .engine = engine_,
        .directory = directory_,
        .loginItem = platform_->loginItem(),
        .settings = settingsOpener_,
        .preferences = platform_->preferences(),
        .appVersion = appVersion(),
        .systemShortcutConflict = platform_->systemShortcutConflict(),
        .diagnostics = std::make_shared<DiagnosticsRecorder>(),
        .runningApps = platform_->runningApps(),
        .reportDelivery = platform_->reportDelivery(),
        .secureInput = platform_->secureInput(),
        .environment = environment,
        .log = &platform_->log(),
    });
    settingsFile_ = std::make_unique<SettingsFileWatch>(file, storage, [model = QPointer(model_.get())] {
        if (model) model->settingsFileChanged();
    });
}

void AppDelegate::observePlatform() {
    const QPointer<AppModel> model(model_.get());
    SystemEventObserving& systemObserver = platform_->systemObserver();
    systemObserver.onEvent = [this, model](SystemEvent event) {
        platform_->recoverFrom(event);
        if (model) model->systemEvent(event);
    };
    systemObserver.onInputSourcesChanged = [model] {
        if (model) model->sourcesChanged();
    };
    systemObserver.start();
    FrontmostAppObserving& frontmostObserver = platform_->frontmostObserver();
    frontmostObserver.onChange = [model](const std::optional<std::string>& bundleID) {
        if (model) model->frontmostAppChanged(bundleID);
    };
    frontmostObserver.start();
    directory_->onSelectedChanged = [model] {
        if (model) model->currentSourceChanged();
    };
    directory_->startObserving();
    platform_->setOnLost([this] { singleInstance_->release(); });
}

// The controllers are cheap: a window is made when it is first shown.
void AppDelegate::buildWindows() {
    platform_->followAppearance(design::useAppearance);
    settingsController_ = std::make_unique<SettingsWindowController>(*model_, platform_->localKeys());
    onboardingController_ = std::make_unique<OnboardingWindowController>(*model_);
    settingsController_->onClosed = [this] {
        // Once the toolkit is done with closing.
        QMetaObject::invokeMethod(&context_, [this] { sayThatItRunsOn(); }, Qt::QueuedConnection);
    };
    model_->onRequestOnboarding = [this] { showOnboarding(); };
    statusController_ = std::make_unique<StatusItemController>(*model_, platform_->trayHost());
    indicator_ = std::make_unique<SwitchIndicator>(*model_);
    statusController_->onOpenSettings = [this] { showSettings(); };
    statusController_->onOpenBugReport = [this] { showSettings(SettingsPane::diagnostics); };
    statusController_->onQuit = [] { QCoreApplication::exit(); };
    statusController_->onHostChanged = [this](bool hasPanel) { takePanel(hasPanel); };
    platform_->setOnReopen([this] { reopen(); });
    openCommandDesk();
}

void AppDelegate::openCommandDesk() {
    commands_ = std::make_unique<CommandDesk>(*model_);
    commands_->onSettings = [this] { showSettings(); };
    // Once the answer has left.
    commands_->onQuit = [] {
        QMetaObject::invokeMethod(
            QCoreApplication::instance(), [] { QCoreApplication::exit(); }, Qt::QueuedConnection);
    };
    platform_->setOnCommand([this](const std::string& request, const Platform::Answer& answer) {
        commands_->ask(request, answer);
    });
}

void AppDelegate::showFirstWindow() {
    if (start_ == Start::inBackground) return;
    if (model_->storeProblem())
        showSettings(SettingsPane::rules);
    else if (!model_->onboardingCompleted())
        showOnboarding();
}

void AppDelegate::showSettings(std::optional<SettingsPane> pane) {
    platform_->comeToFront();
    settingsController_->show(pane);
}

void AppDelegate::showOnboarding() {
    platform_->comeToFront();
    onboardingController_->show();
    QObject::connect(onboardingController_->window(), &QObject::destroyed, &context_, [this] {
        // The first answer comes by itself.
        if (isPanelKnown_ && !statusController_->hasHost()) showSettings();
    });
}

// Started again: whoever has not been introduced yet, as the first start was the session's, is now.
void AppDelegate::reopen() {
    const bool isNew = !model_->onboardingCompleted() && onboardingController_->window() == nullptr;
    isNew && !model_->storeProblem() ? showOnboarding() : showSettings();
}

// Without a panel the Settings window is the program's only face. It is shown to who started the program, and
// not when a panel goes away later.
void AppDelegate::takePanel(bool hasPanel) {
    settingsController_->setMenu(hasPanel ? nullptr : statusController_->menu());
    model_->setHasPanel(hasPanel);
    const bool isFirstAnswer = !std::exchange(isPanelKnown_, true);
    if (isFirstAnswer && !hasPanel && start_ == Start::byHand && onboardingController_->window() == nullptr)
        showSettings();
}

void AppDelegate::sayThatItRunsOn() {
    if (statusController_->hasHost() || settingsController_->isVisible()) return;
    if (auto message = sayOnceThatTheProgramRunsOn(*model_, [] { QCoreApplication::exit(); }))
        runsOnMessage_ = std::move(message);
}

bool AppDelegate::needsRetry() const { return platform_->needsRetry() || model_->needsRetry(); }

// While there is no server, another copy may take over: the one that the next session starts may know the way
// to its server better than this one.
void AppDelegate::retry() {
    switch (platform_->retry()) {
    case Platform::Connection::lost: return;
    case Platform::Connection::regained:
        if (!singleInstance_->acquire()) {
            sayAnotherRuns(*singleInstance_);
            QCoreApplication::exit();
            return;
        }
        model_->sourcesChanged();
        break;
    case Platform::Connection::kept: break;
    }
    model_->retryPermissionIfNeeded();
    sayWhyNotListening();
}

void AppDelegate::sayStoreProblem() {
    const auto& problem = model_->storeProblem();
    if (!problem) return;
    const std::string path = store_->fileURL().string();
    const std::string description = words(*problem);
    const bool isNamed = description.find(path) != std::string::npos; // the system's own texts do
    say((isNamed ? "" : path + ": ") + description +
        ". No rule runs; the file is left as it is. Repair or move it: that counts at once.");
}

void AppDelegate::sayWhyNotListening() {
    const std::string failure = platform_->listeningFailure();
    if (failure != saidLast_ && !failure.empty() && model_->engineEnabled())
        say(failure + "; trying again every two seconds");
    saidLast_ = failure;
}

} // namespace hopsel
