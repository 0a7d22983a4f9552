#include "ui/controls/StepList.h"

#include <QPainter>
#include <QVBoxLayout>

#include "ui/Fonts.h"
#include "ui/Theme.h"
#include "ui/controls/StepRow.h"

namespace quiverly {

// The bar between the badges of two steps; lit when the upper one is complete.
class StepList::Connector : public QWidget {
public:
    Connector() {
        resizeWithTexts();
        connect(&Theme::current(), &Theme::changed, this, &Connector::resizeWithTexts);
    }

    void show(bool isComplete) {
        if (isComplete == complete) return;
        complete = isComplete;
        update();
    }

private:
    void resizeWithTexts() { setFixedHeight(scaled(barHeight) + 2 * scaled(padding)); }

    void paintEvent(QPaintEvent*) override {
        QColor color = complete ? Theme::primaryPink : Theme::current().color(Tone::secondary);
        color.setAlphaF(complete ? 0.7F : 0.25F);
        QPainter(this).fillRect(scaled(barInset), scaled(padding), scaled(barWidth), scaled(barHeight), color);
    }

    // Lengths of the design, in pixels.
    static constexpr int barInset = 13; // under the centre of the badge
    static constexpr int barWidth = 2;
    static constexpr int barHeight = 22;
    static constexpr int padding = 6; // above and below

    bool complete = false;
};

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
