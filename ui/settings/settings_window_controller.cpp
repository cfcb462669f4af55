#include "ui/settings/settings_window_controller.h"

#include "core/base/product.h"
#include "ui/design/accessible_roles.h"
#include "ui/design/text.h"
#include "ui/design/window_placement.h"
#include "ui/settings/settings_view.h"

#include <QCloseEvent>
#include <QShortcut>
#include <QVBoxLayout>

namespace hopsel {

namespace {

constexpr QSize contentSize{780, 520};
constexpr QSize smallestSize{620, 400};

/// Tells when it was closed, after it has disappeared.
class SettingsWindow final : public QWidget {
  public:
    std::function<void()> onClosed;

  protected:
    void closeEvent(QCloseEvent* event) override {
        event->accept();
        hide();
        onClosed();
    }
};

/// A size that grows with the text.
QSize grown(QSize size) { return {design::scaled(size.width()), design::scaled(size.height())}; }

} // namespace

SettingsWindowController::SettingsWindowController(AppModel& model, std::shared_ptr<LocalKeyMonitoring> keys)
    : model_(model), keys_(keys ? std::move(keys) : std::make_shared<NoLocalKeyMonitoring>()) {}

SettingsWindowController::~SettingsWindowController() = default;

void SettingsWindowController::show(std::optional<SettingsPane> pane) {
    if (pane) navigation_.setPane(*pane);
    if (!window_) makeWindow();
    // Before the window appears: what it showed last must not come back for a moment and record.
    view_->showPane();
    window_->setWindowState(window_->windowState() & ~Qt::WindowMinimized);
    window_->show();
    window_->raise();
    window_->activateWindow();
    if (navigation_.pane() == SettingsPane::diagnostics) model_.setDiagnosticsVisible(true);
}

void SettingsWindowController::setMenu(QMenu* menu) {
    menu_ = menu;
    if (view_ != nullptr) view_->setMenu(menu);
}

void SettingsWindowController::makeWindow() {
    auto window = std::make_unique<SettingsWindow>();
    const std::string_view name = product::name;
    window->setWindowTitle(QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())));
    design::setAccessibleRole(window.get(), QAccessible::Window);
    auto* layout = new QVBoxLayout(window.get());
    layout->setContentsMargins(0, 0, 0, 0);
    view_ = new SettingsView(model_, navigation_, keys_);
    view_->setMenu(menu_);
    layout->addWidget(view_);

    const QRect room = design::roomOn(design::screenInUse());
    window->setMinimumSize(grown(smallestSize).boundedTo(room.size()));
    window->setGeometry(design::placed(grown(contentSize), room));

    auto* closing = new QShortcut(QKeySequence::Close, window.get());
    QObject::connect(closing, &QShortcut::activated, window.get(), &QWidget::close);
    window->onClosed = [this] { windowWillClose(); };
    window_ = std::move(window);
}

void SettingsWindowController::windowWillClose() {
    model_.cancelCapture();
    if (model_.diagnostics().isRecording()) model_.diagnostics().stopRecording();
    if (onClosed) onClosed();
}

} // namespace hopsel
