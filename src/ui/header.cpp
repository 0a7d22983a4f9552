#include "ui/header.h"

#include <QBoxLayout>
#include <QPainter>
#include <QWidget>

#include "ui/AppImages.h"
#include "ui/Theme.h"
#include "ui/controls/Label.h"
#include "ui/controls/Logo.h"

namespace quiverly {

namespace {

class Divider : public QWidget {
public:
    Divider() { setFixedHeight(1); }

private:
    void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), Theme::current().colors().divider); }
};

} // namespace

QLayout* windowHeader(const QString& title, QWidget* subtitle, QWidget* pill) {
    auto* titles = new QVBoxLayout;
    titles->setSpacing(2);
    titles->addWidget(new Label(FontRole::title, Tone::primary, title));
    titles->addWidget(subtitle);

    auto* row = new QHBoxLayout;
    row->setContentsMargins(20, 16, 20, 16);
    row->setSpacing(12);
    row->addWidget(new Logo(headerLogo(), {.size = 36, .radius = 8, .symbolHeight = 30}));
    row->addLayout(titles);
    row->addStretch();
    row->addWidget(pill);

    auto* header = new QVBoxLayout;
    header->setSpacing(0);
    header->addLayout(row);
    header->addWidget(new Divider);
    return header;
}

} // namespace quiverly
