#include "ui/controls/StepList.h"

#include <QVBoxLayout>

#include "ui/controls/Connector.h"
#include "ui/controls/StepRow.h"

namespace quiverly {

StepList::StepList() : column(new QVBoxLayout(this)) {
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
}

void StepList::add(const QString& title, QWidget* content) {
    if (!rows.empty()) {
        connectors.push_back(new Connector);
        column->addWidget(connectors.back());
    }
    rows.push_back(new StepRow(static_cast<int>(rows.size()) + 1, title, content));
    column->addWidget(rows.back());
}

void StepList::show(int step, bool active, bool complete) {
    const auto index = static_cast<std::size_t>(step - 1);
    rows[index]->show(active, complete);
    if (index < connectors.size()) connectors[index]->show(complete);
}

} // namespace quiverly
