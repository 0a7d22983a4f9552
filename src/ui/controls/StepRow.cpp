#include "ui/controls/StepRow.h"

#include <QHBoxLayout>

#include "ui/controls/Label.h"
#include "ui/controls/Symbol.h"
#include "ui/controls/accessibility.h"
#include "ui/controls/painting.h"

namespace quiverly {

class StepRow::Badge : public QWidget {
public:
    explicit Badge(int number) : number(number) {
        describe();
        resizeWithTexts();
        connect(&Theme::current(), &Theme::changed, this, &Badge::resizeWithTexts);
    }

    void show(bool isActive, bool isComplete) {
        if (isActive == active && isComplete == complete) return;
        active = isActive;
        complete = isComplete;
        describe();
        update();
    }

private:
    void resizeWithTexts() { setFixedSize(scaled(28), scaled(28)); }

    void describe() {
        const QString name = complete && !active ? "Step %1, done" : "Step %1";
        describeAs(*this, QAccessible::Graphic, name.arg(number));
    }

    void paintEvent(QPaintEvent*) override {
        const bool lit = active || complete;
        const QColor secondary = Theme::current().color(Tone::secondary);
        QColor grey = secondary;
        grey.setAlphaF(0.25F);
        QPainter painter(this);
        fillRounded(painter, rect(), width() / 2.0, lit ? Theme::current().colors().accent : grey);
        if (complete && !active) {
            const double check = scaled(12.0);
            const double inset = (width() - check) / 2;
            drawSymbol(painter, QRectF(inset, inset, check, check), Symbol::check, Qt::white);
            return;
        }
        painter.setFont(fontFor(FontRole::badge));
        painter.setPen(lit ? QColor(Qt::white) : secondary);
        painter.drawText(rect(), Qt::AlignCenter, QString::number(number));
    }

    int number;
    bool active = false;
    bool complete = false;
};

StepRow::StepRow(int number, const QString& titleText, QWidget* content)
    : number(number),
      badge(new Badge(number)),
      title(new Label(FontRole::headline, Tone::primary, titleText)),
      content(content) {
    title->wrap();
    auto* column = new QVBoxLayout;
    column->setSpacing(4);
    column->addWidget(title);
    column->addWidget(content);

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(14);
    row->addWidget(badge, 0, Qt::AlignTop);
    row->addLayout(column, 1);
}

void StepRow::show(bool active, bool complete) {
    badge->show(active, complete);
    title->setTone(active || complete ? Tone::primary : Tone::secondary);
    content->setVisible(active || (complete && number == 1));
}

} // namespace quiverly
