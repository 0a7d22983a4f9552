#pragma once

#include <functional>

#include <QWidget>

namespace quiverly {

// What fills the window. Tells when it appears and disappears: when it is shown or taken away, not when the window is
// merely minimised or covered. Hide a view before deleting it, or it does not disappear.
class View : public QWidget {
public:
    using QWidget::QWidget;

    std::function<void()> onAppear;
    std::function<void()> onDisappear;

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
};

} // namespace quiverly
