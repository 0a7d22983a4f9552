#include "ui/controls/CrossFade.h"

#include <QPainter>
#include <QVariantAnimation>
#include <QWidget>

#include "ui/Theme.h"

namespace quiverly {

namespace {

constexpr int duration = 250; // milliseconds

// What the widget looked like, over the widget. Deletes itself when it has faded, or when the widget is hidden.
class FadingPicture : public QWidget {
public:
    explicit FadingPicture(QWidget& widget)
        : QWidget(&widget), picture(widget.grab()), fade(new QVariantAnimation(this)) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setGeometry(widget.rect());
        fade->setStartValue(1.0);
        fade->setEndValue(0.0);
        fade->setDuration(duration);
        fade->setEasingCurve(QEasingCurve::InOutQuad);
        connect(fade, &QVariantAnimation::valueChanged, this, qOverload<>(&QWidget::update));
        connect(fade, &QVariantAnimation::finished, this, &QWidget::deleteLater);
        fade->start();
        show();
    }

private:
    void hideEvent(QHideEvent*) override {
        fade->stop();
        deleteLater();
    }

    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setOpacity(fade->currentValue().toDouble());
        painter.drawPixmap(0, 0, picture);
    }

    QPixmap picture;
    QVariantAnimation* fade;
};

} // namespace

void crossFade(QWidget& widget) {
    if (widget.isVisible() && !Theme::current().reducesMotion()) new FadingPicture(widget);
}

} // namespace quiverly
