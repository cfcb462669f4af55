#include "ui/onboarding/onboarding_window_controller.h"

#include "core/base/product.h"
#include "ui/design/accessible_roles.h"
#include "ui/design/window_placement.h"
#include "ui/onboarding/onboarding_view.h"

#include <QVBoxLayout>
#include <functional>
#include <utility>

namespace hopsel {

namespace {

QString title() {
    return QString::fromUtf8(product::name.data(), static_cast<qsizetype>(product::name.size()));
}

} // namespace

class OnboardingWindow final : public QWidget {
  public:
    explicit OnboardingWindow(AppModel& app) : model_(app) {
        setWindowTitle(title());
        design::setAccessibleRole(this, QAccessible::Dialog);
        setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                       Qt::WindowCloseButtonHint);
        setAttribute(Qt::WA_QuitOnClose, false); // the program lives on without windows
        auto* layout = new QVBoxLayout(this);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSizeConstraint(QLayout::SetFixedSize);
        view_ = new OnboardingView(model_, app, [this] { close(); });
        layout->addWidget(view_);
    }
    ~OnboardingWindow() override { delete view_; } // before the model that it reads
    OnboardingWindow(const OnboardingWindow&) = delete;
    OnboardingWindow& operator=(const OnboardingWindow&) = delete;

    std::function<void()> onWillClose;

  protected:
    void closeEvent(QCloseEvent* event) override {
        QWidget::closeEvent(event);
        if (const auto willClose = std::exchange(onWillClose, nullptr)) willClose();
    }

  private:
    OnboardingModel model_;
    OnboardingView* view_;
};

OnboardingWindowController::~OnboardingWindowController() { delete window_.data(); }

QWidget* OnboardingWindowController::window() const { return window_; }

void OnboardingWindowController::show() {
    if (window_) {
        window_->onWillClose = nullptr;
        window_->close();
        window_->deleteLater();
    }
    window_ = new OnboardingWindow(app_);
    window_->onWillClose = [this] { windowWillClose(); };
    window_->layout()->activate(); // its size, to be centred by
    window_->setGeometry(design::placed(window_->size(), design::roomOn(design::screenInUse())));
    window_->show();
    window_->raise();
    window_->activateWindow();
}

void OnboardingWindowController::windowWillClose() {
    window_->deleteLater();
    window_.clear();
    app_.markOnboardingCompleted();
}

} // namespace hopsel
