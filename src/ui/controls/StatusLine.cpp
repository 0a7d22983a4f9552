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
    void resizeWithTexts() { setFixedSize(scaled(16), scaled(16)); }

    QString meaning() const {
        if (!symbol) return "Working";
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

StatusLine::StatusLine() : icon(new Icon), text(new Label(FontRole::callout, Tone::primary)), beside(new QVBoxLayout) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    row->addWidget(icon, 0, Qt::AlignTop);
    row->addLayout(beside, 1);
    beside->addWidget(text);
    text->wrap();
    text->speakChanges();
    connect(&Theme::current(), &Theme::changed, this, &StatusLine::alignWithIcon);
    alignWithIcon();
}

// Centres the first line of the text on the icon.
void StatusLine::alignWithIcon() {
    const int slack = icon->height() - text->fontMetrics().height();
    beside->setContentsMargins(0, std::max(0, (slack + 1) / 2), 0, 0);
}

bool StatusLine::show(const Status& status) {
    const bool failed = status.warning && !status.ok;
    const bool warns = status.forceWarning || failed;
    const bool isNew = status.text != text->text();
    icon->show(symbolFor(status, warns));
    text->setText(status.text);
    text->setTone(warns ? Tone::orange : Tone::primary);
    text->setSelectable(failed && !status.forceWarning);
    return isNew;
}

} // namespace quiverly
