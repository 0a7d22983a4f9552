#include "ui/controls/SegmentedPicker.h"

#include <algorithm>

#include <QHBoxLayout>
#include <QRadioButton>
#include <QScopedValueRollback>

#include "ui/Fonts.h"
#include "ui/Theme.h"
#include "ui/controls/accessibility.h"
#include "ui/controls/painting.h"

namespace quiverly {

namespace {

constexpr int radius = 6;          // pixels
constexpr int trackInset = 2;      // pixels between the track's edge and the selected segment
constexpr int verticalPadding = 4; // pixels above and below the title
constexpr int leastHeight = 24;    // pixels

class Segment : public QRadioButton {
public:
    explicit Segment(const QString& title) : QRadioButton(title) {
        setAttribute(Qt::WA_LayoutUsesWidgetRect);
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        setFocusPolicy(Qt::ClickFocus); // Tab reaches the selected one only
        setFont(fontFor(FontRole::body));
        connect(&Theme::current(), &Theme::changed, this, [this] { setFont(fontFor(FontRole::body)); });
    }

    QSize sizeHint() const override {
        const int width = fontMetrics().horizontalAdvance(text()) + 2 * (trackInset + 8);
        return {width, std::max(leastHeight, fontMetrics().height() + 2 * verticalPadding)};
    }
    QSize minimumSizeHint() const override { return sizeHint(); }

private:
    bool hitButton(const QPoint& position) const override { return rect().contains(position); }

    void paintEvent(QPaintEvent*) override {
        const Theme& theme = Theme::current();
        QPainter painter(this);
        const QRectF face = QRectF(rect()).adjusted(trackInset, trackInset, -trackInset, -trackInset);
        if (isChecked() && isEnabled()) {
            fillRounded(painter, face.adjusted(-0.5, -0.5, 0.5, 0.5), radius - 1.5, theme.colors().selectionEdge);
        }
        if (isChecked()) {
            QColor fill = theme.colors().selection;
            if (!isEnabled()) fill.setAlphaF(0.5F);
            fillRounded(painter, face, radius - 2, fill);
        }
        if (focusIsVisible(*this)) drawFocusRing(painter, face, radius - 2, theme.colors().focus);
        QFont titleFont = font();
        if (isChecked()) titleFont.setWeight(QFont::Medium);
        painter.setFont(titleFont);
        painter.setPen(isEnabled() ? theme.colors().primary : theme.colors().tertiary);
        painter.drawText(rect(), Qt::AlignCenter, text());
    }
};

} // namespace

SegmentedPicker::SegmentedPicker(const QString& name, const QStringList& titles) {
    describeAs(*this, QAccessible::Grouping, name);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    for (const QString& title : titles) {
        auto* segment = new Segment(title);
        const int index = static_cast<int>(segments.size());
        connect(segment, &QRadioButton::toggled, this, [this, index](bool on) {
            segments[static_cast<std::size_t>(index)]->setFocusPolicy(on ? Qt::StrongFocus : Qt::ClickFocus);
            if (on && !selecting && onChoice) onChoice(index);
        });
        row->addWidget(segment, 1);
        segments.push_back(segment);
    }
}

void SegmentedPicker::select(int index) {
    const QScopedValueRollback quiet(selecting, true);
    segments[static_cast<std::size_t>(index)]->setChecked(true);
}

void SegmentedPicker::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    fillRounded(painter, rect(), radius, Theme::current().colors().track);
}

} // namespace quiverly
