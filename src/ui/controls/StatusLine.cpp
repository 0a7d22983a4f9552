#include "ui/controls/StatusLine.h"

#include <algorithm>
#include <optional>

#include <QHBoxLayout>
#include <QPainter>

#include "ui/controls/Spinner.h"
#include "ui/controls/Symbol.h"
#include "ui/controls/accessibility.h"

namespace quiverly {

// A symbol, or the spinner if there is none.
class StatusLine::Icon : public QWidget {
public:
    Icon() : spinner(new Spinner) {
        auto* box = new QHBoxLayout(this);
        box->setContentsMargins(0, 0, 0, 0);
        box->addWidget(spinner);
        connect(&Theme::current(), &Theme::changed, this, &Icon::resizeWithTexts);
        describeAs(*this, QAccessible::Graphic, meaning());
        resizeWithTexts();
    }

    void show(std::optional<Symbol> next) {
        spinner->setVisible(!next);
        if (next == symbol) return;
        symbol = next;
        describeAs(*this, QAccessible::Graphic, meaning());
        update();
    }

private:
    void resizeWithTexts() {
        const int size = qRound(16 * fontScale());
        setFixedSize(size, size);
    }

    QString meaning() const {
        if (!symbol) return {}; // the spinner has a name of its own
        switch (*symbol) {
        case Symbol::hand:
            return "Slap now";
        case Symbol::warning:
            return "Warning";
        default:
            return "Done";
        }
    }

    void paintEvent(QPaintEvent*) override {
        if (!symbol) return;
        QPainter painter(this);
        const bool warns = *symbol == Symbol::warning;
        drawSymbol(painter, rect(), *symbol, warns ? Theme::current().colors().warning : Theme::primaryPink);
    }

    Spinner* spinner;
    std::optional<Symbol> symbol;
};

namespace {

std::optional<Symbol> symbolFor(const StatusLine::Status& status, bool warns) {
    if (status.hand) return Symbol::hand;
    if (warns) return Symbol::warning;
    if (status.ok) return Symbol::checkCircle;
    return std::nullopt;
}

} // namespace

StatusLine::StatusLine() : icon(new Icon), text(new Label(FontRole::callout, Tone::primary)) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    row->addWidget(icon, 0, Qt::AlignTop);
    row->addWidget(text, 1);
    text->wrap();
    connect(&Theme::current(), &Theme::changed, this, &StatusLine::alignWithIcon);
    alignWithIcon();
}

// Centres the first line of the text on the icon.
void StatusLine::alignWithIcon() {
    const int slack = icon->height() - text->fontMetrics().height();
    text->setContentsMargins(0, std::max(0, (slack + 1) / 2), 0, 0);
}

void StatusLine::show(const Status& status) {
    const bool warns = status.forceWarning || (status.warning && !status.ok);
    icon->show(symbolFor(status, warns));
    text->setText(status.text);
    text->setTone(warns ? Tone::orange : Tone::primary);
}

} // namespace quiverly
