#include "desktop_session.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace hopsel::test {

namespace {

using namespace std::chrono_literals;

constexpr auto finger = 60ms; // a quick tap of a person

double linear(int channel) {
    const double value = channel / 255.0;
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double luminance(QRgb color) {
    return 0.2126 * linear(qRed(color)) + 0.7152 * linear(qGreen(color)) + 0.0722 * linear(qBlue(color));
}

} // namespace

DesktopSession::DesktopSession(const std::string& name) {
    ChildProcess::Options options;
    options.program = HOPSEL_START_DESKTOP;
    options.arguments = {name};
    options.output = ChildProcess::Output::capture;
    desktop_ = std::make_unique<ChildProcess>(options);
    const Deadline deadline(startPatience);
    for (std::string line; line != "ready";) {
        const auto next = desktop_->waitForLine("", std::chrono::milliseconds(deadline.millisecondsLeft()));
        if (!next) throw std::runtime_error(name + " did not start; ./test desktops installs what it needs");
        line = *next;
        const auto equals = line.find('=');
        if (equals != std::string::npos)
            setenv(line.substr(0, equals).c_str(), line.substr(equals + 1).c_str(), 1);
    }
    screenshots_ = std::make_unique<XScreenshots>();
    keyboard_ = std::make_unique<XKeyboard>();
    layouts_ = std::make_unique<XLayouts>();
    window_ = std::make_unique<XTestWindow>();
}

void DesktopSession::startProgram(std::string_view settings) {
    ChildProcess::Options options;
    options.program = HOPSEL_EXECUTABLE;
    options.environment = {{"HOPSEL_CONFIG", folder_.write("config.json", settings).string()},
                           {"ASAN_OPTIONS", "detect_leaks=0"}}; // those of other people's themes
    program_ = std::make_unique<ChildProcess>(options);
    const Deadline deadline(patience);
    while (!layouts_->waitForGroup(1, 500ms)) {
        if (deadline.hasPassed()) throw std::runtime_error("the program does not switch");
        // Not the other trigger: until the program listens, a launcher has it.
        keyboard_->press(key::leftShift);
        keyboard_->tap(key::space);
        keyboard_->release(key::leftShift);
    }
    layouts_->lockGroup(0);
    window_->focus();
    window_->records();
    window_->clear();
}

void DesktopSession::tap() {
    keyboard_->press(key::rightSuper);
    waitReadable(-1, Deadline(finger));
    keyboard_->release(key::rightSuper);
}

bool DesktopSession::tapReaches(int group) {
    tap();
    return layouts_->waitForGroup(group, 10s);
}

QImage DesktopSession::screen() {
    const std::filesystem::path file = folder_.path() / "screen.png";
    screenshots_->save(file);
    return QImage(QString::fromStdString(file.string()));
}

QImage DesktopSession::screenThat(const std::function<bool(const QImage& screen)>& isWanted,
                                  std::chrono::milliseconds timeout) {
    const Deadline deadline(timeout);
    QImage seen = screen();
    while (!isWanted(seen) && !deadline.hasPassed()) seen = screen();
    return seen;
}

QRect difference(const QImage& before, const QImage& after) {
    QRect changed;
    for (int y = 0; y < before.height(); ++y)
        for (int x = 0; x < before.width(); ++x)
            if (before.pixel(x, y) != after.pixel(x, y)) changed |= QRect(x, y, 1, 1);
    return changed;
}

double contrastOfNew(const QImage& before, const QImage& after) {
    const QRect changed = difference(before, after);
    double darkest = 1, lightest = 0;
    for (int y = changed.top(); y <= changed.bottom(); ++y)
        for (int x = changed.left(); x <= changed.right(); ++x) {
            const double here = luminance(after.pixel(x, y));
            darkest = std::min(darkest, here);
            lightest = std::max(lightest, here);
        }
    return changed.isEmpty() ? 0 : (lightest + 0.05) / (darkest + 0.05);
}

} // namespace hopsel::test
