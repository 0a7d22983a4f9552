#include "ui/controls/SegmentedPicker.h"

#include <algorithm>

#include <QHBoxLayout>
#include <QRadioButton>
#include <QScopedValueRollback>

#include "ui/Fonts.h"
#include "ui/Theme.h"
#include "ui/controls/FocusRing.h"
#include "ui/controls/accessibility.h"
#include "ui/controls/painting.h"

namespace quiverly {

namespace {

// Lengths of the design, in pixels.
constexpr double radius = 6;
constexpr int trackInset = 2;      // between the edge of the track and the selected segment
constexpr int verticalPadding = 4; // above and below the title
constexpr int leastHeight = 24;

class Segment : public QRadioButton {
public:
    explicit Segment(const QString& title) : QRadioButton(title) {
        describeAs(*this, QAccessible::RadioButton);
        setAttribute(Qt::WA_LayoutUsesWidgetRect);
        setAttribute(Qt::WA_Hover);
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        setFocusPolicy(Qt::ClickFocus); // Tab reaches the selected one only
        setFont(fontFor(FontRole::body));
        connect(&Theme::current(), &Theme::changed, this, [this] { setFont(fontFor(FontRole::body)); });
    }

    QSize sizeHint() const override {
        const int width = fontMetrics().horizontalAdvance(text()) + 2 * (trackInset + scaled(8));
        return {width, std::max(leastHeight, fontMetrics().height() + 2 * scaled(verticalPadding))};
    }
    QSize minimumSizeHint() const override { return sizeHint(); }

private:
    bool hitButton(const QPoint& position) const override { return rect().contains(position); }

    // Of the face that shows which segment is selected, or would be.
    double opacity() const {
        if (isChecked()) return isEnabled() ? 1.0 : 0.5;
        if (isDown()) return 0.6;
        return underMouse() && isEnabled() ? 0.35 : 0.0;
    }

    void paintEvent(QPaintEvent*) override {
        const Theme::Colors& colors = Theme::current().colors();
        const QRectF face = QRectF(rect()).adjusted(trackInset, trackInset, -trackInset, -trackInset);
        QPainter painter(this);
        QColor fill = isChecked() && isDown() ? colors.selection.darker(106) : colors.selection;
        fill.setAlphaF(static_cast<float>(opacity()));
        fillRounded(painter, face, scaled(radius) - trackInset, fill);
        if (isChecked() && isEnabled()) {
            const double outside = colors.edgeWidth / 2;
            outlineRounded(painter, face.adjusted(-outside, -outside, outside, outside),
                           scaled(radius) - trackInset + outside, colors.selectionEdge, colors.edgeWidth);
        }
        QFont titleFont = font();
        if (isChecked()) titleFont.setWeight(QFont::Medium);
        painter.setFont(titleFont);
        painter.setPen(isEnabled() ? colors.primary : colors.tertiary);
        painter.drawText(rect(), Qt::AlignCenter, text());
    }
};

} // namespace

SegmentedPicker::SegmentedPicker(const QString& name, const QStringList& titles) : ring(new FocusRing(*this)) {
    describeAs(*this, QAccessible::Grouping, name);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    for (const QString& title : titles) {
        auto* segment = new Segment(title);
        const int index = static_cast<int>(segments.size());
        connect(segment, &QRadioButton::toggled, this, [this, index](bool on) { didToggle(index, on); });
        row->addWidget(segment, 1);
        segments.push_back(segment);
    }
}

void SegmentedPicker::didToggle(int index, bool on) {
    QRadioButton* segment = segments[static_cast<std::size_t>(index)];
    segment->setFocusPolicy(on ? Qt::StrongFocus : Qt::ClickFocus);
    if (!on) return;
    setFocusProxy(segment);
    if (!selecting && onChoice) onChoice(index);
}

void SegmentedPicker::select(int index) {
    const QScopedValueRollback quiet(selecting, true);
    segments[static_cast<std::size_t>(index)]->setChecked(true);
}

void SegmentedPicker::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    ring->surround(rect(), scaled(radius));
}

void SegmentedPicker::paintEvent(QPaintEvent*) {
    const Theme::Colors& colors = Theme::current().colors();
    QPainter painter(this);
    fillRounded(painter, rect(), scaled(radius), colors.track);
    if (Theme::current().hasHighContrast())
        outlineRounded(painter, rect(), scaled(radius), colors.trackEdge, colors.edgeWidth);
}

} // namespace quiverly
