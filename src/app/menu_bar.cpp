#include "app/menu_bar.h"

#include "ui/BonkoApp.h"

namespace quiverly {

namespace {

// The toolkit calls the command key Ctrl.
void addCommand(QMenu& menu, const QString& name, Qt::Key key, const std::function<void()>& command) {
    QAction* action = menu.addAction(name);
    action->setShortcut(Qt::CTRL | key);
    action->setMenuRole(QAction::NoRole); // it stays in this menu
    QObject::connect(action, &QAction::triggered, command);
}

} // namespace

void fillMenuBar(QMenuBar& bar, BonkoApp& app) {
    addCommand(*bar.addMenu("File"), "Close", Qt::Key_W, [&app] { app.close(); });
    addCommand(*bar.addMenu("Window"), "Minimize", Qt::Key_M, [&app] { app.minimize(); });
}

} // namespace quiverly
