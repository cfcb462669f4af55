#include "session/screen_reader.h"

#include "session/waiting.h"

#include <atspi/atspi.h>
#include <stdexcept>
#include <thread>

namespace hopsel::session {

namespace {

using namespace std::chrono_literals;

// A tree that changes while it is read answers nonsense; nothing here is deeper or wider.
constexpr int deepest = 40;
constexpr int widest = 500;
constexpr auto glance = 30ms;

template <class T>
class Owned {
  public:
    explicit Owned(T* object) : object_(object) {}
    ~Owned() {
        if (object_ != nullptr) g_object_unref(object_);
    }
    Owned(const Owned&) = delete;
    Owned& operator=(const Owned&) = delete;
    T* get() const { return object_; }
    explicit operator bool() const { return object_ != nullptr; }

  private:
    T* object_;
};

std::string taken(gchar* text) {
    std::string copy = text != nullptr ? text : "";
    g_free(text);
    return copy;
}

bool has(AtspiAccessible* accessible, AtspiStateType state) {
    const Owned<AtspiStateSet> states(atspi_accessible_get_state_set(accessible));
    return states && atspi_state_set_contains(states.get(), state) != 0;
}

SeenWidget describe(AtspiAccessible* accessible) {
    SeenWidget seen;
    seen.name = taken(atspi_accessible_get_name(accessible, nullptr));
    seen.role = taken(atspi_accessible_get_role_name(accessible, nullptr));
    seen.description = taken(atspi_accessible_get_description(accessible, nullptr));
    if (const Owned<AtspiText> typed(atspi_accessible_get_text_iface(accessible)); typed)
        seen.text = taken(atspi_text_get_text(typed.get(), 0, -1, nullptr));
    seen.isFocused = has(accessible, ATSPI_STATE_FOCUSED);
    seen.isFocusable = has(accessible, ATSPI_STATE_FOCUSABLE);
    seen.isChecked = has(accessible, ATSPI_STATE_CHECKED);
    seen.isSelected = has(accessible, ATSPI_STATE_SELECTED);
    seen.isEnabled = has(accessible, ATSPI_STATE_ENABLED);
    const Owned<AtspiComponent> component(atspi_accessible_get_component_iface(accessible));
    if (component) {
        AtspiRect* rect = atspi_component_get_extents(component.get(), ATSPI_COORD_TYPE_SCREEN, nullptr);
        if (rect != nullptr) {
            seen.x = rect->x;
            seen.y = rect->y;
            seen.width = rect->width;
            seen.height = rect->height;
            g_free(rect);
        }
    }
    return seen;
}

void collect(AtspiAccessible* accessible, int depth, std::vector<SeenWidget>& seen) {
    if (depth > deepest) return;
    if (depth > 0) {
        if (!has(accessible, ATSPI_STATE_SHOWING)) return;
        seen.push_back(describe(accessible));
        seen.back().isWindow = depth == 1;
    }
    const int count = std::min(atspi_accessible_get_child_count(accessible, nullptr), widest);
    for (int i = 0; i < count; ++i) {
        const Owned<AtspiAccessible> child(atspi_accessible_get_child_at_index(accessible, i, nullptr));
        if (child) collect(child.get(), depth + 1, seen);
    }
}

} // namespace

AccessibilityBus::AccessibilityBus() {
    ChildProcess::Options options;
    options.program = "/usr/libexec/at-spi-bus-launcher";
    options.arguments = {"--launch-immediately", "--a11y=1"};
    options.package = "at-spi2-core";
    options.errors = ChildProcess::Output::discard;
    launcher_ = std::make_unique<ChildProcess>(options);

    ChildProcess::Options ask;
    ask.program = "gdbus";
    ask.package = "libglib2.0-bin";
    ask.arguments = {"wait", "--session", "--timeout", "20", "org.a11y.Bus"};
    runProgram(ask, 25s);
}

ScreenReader::ScreenReader(std::string application) : application_(std::move(application)) {
    if (atspi_init() > 1) throw std::runtime_error("no accessibility bus");
}

ScreenReader::~ScreenReader() { atspi_exit(); }

std::vector<SeenWidget> ScreenReader::look() const {
    std::vector<SeenWidget> seen;
    const Owned<AtspiAccessible> desktop(atspi_get_desktop(0));
    atspi_accessible_set_cache_mask(desktop.get(), ATSPI_CACHE_NONE);
    const int count = atspi_accessible_get_child_count(desktop.get(), nullptr);
    for (int i = 0; i < count; ++i) {
        const Owned<AtspiAccessible> program(atspi_accessible_get_child_at_index(desktop.get(), i, nullptr));
        if (program && taken(atspi_accessible_get_name(program.get(), nullptr)) == application_)
            collect(program.get(), 0, seen);
    }
    return seen;
}

std::optional<SeenWidget> ScreenReader::find(const std::string& name, const std::string& role) const {
    for (SeenWidget& widget : look())
        if (widget.name == name && (role.empty() || widget.role == role)) return std::move(widget);
    return std::nullopt;
}

bool ScreenReader::waitUntil(const std::function<bool()>& condition,
                             std::chrono::milliseconds timeout) const {
    const Deadline deadline(timeout);
    while (!condition()) {
        if (deadline.hasPassed()) return false;
        std::this_thread::sleep_for(glance); // the library has nothing to wait for in the tree's place
    }
    return true;
}

} // namespace hopsel::session
