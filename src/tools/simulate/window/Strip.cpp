#include "tools/simulate/window/Strip.h"

#include <algorithm>
#include <cmath>

#include <QAccessible>
#include <QPainter>
#include <QPainterPath>

#include "ui/Fonts.h"
#include "ui/Theme.h"
#include "ui/controls/accessibility.h"
#include "ui/controls/painting.h"

namespace quiverly {

namespace {

constexpr double noise = 0.008;          // g; the score of a laptop at rest stays below
constexpr double longestGap = 0.1;       // seconds between two readings that are drawn as one line
constexpr double amplitudeDistance = 48; // pixels between two amplitudes that do not overlap

// The least of 0.1, 0.15, 0.2, 0.3, 0.5, 1 … that is not below the value.
double roundUp(double value) {
    for (double magnitude = 0.1;; magnitude *= 10) {
        for (const double factor : {1.0, 1.5, 2.0, 3.0, 5.0}) {
            if (factor * magnitude >= value) return factor * magnitude;
        }
    }
}

// A line through many points, without those that make no difference to the eye.
class Line {
public:
    // A point that is not joined begins anew.
    void extend(const QPointF& point, bool joined) {
        if (!joined) {
            finish();
            content.moveTo(point);
            corner = point;
        } else if (std::abs(point.y() - corner.y()) > unseen) {
            finish();
            content.lineTo(point);
            corner = point;
        }
        last = point;
    }

    const QPainterPath& path() {
        finish();
        return content;
    }

private:
    static constexpr double unseen = 0.3; // pixels

    void finish() {
        if (last != corner) content.lineTo(last);
    }

    QPainterPath content;
    QPointF corner, last; // the last point that was drawn, and the last of all
};

} // namespace

// As in the plots of recordings.
struct Strip::Colors {
    QColor page, text, grid, cooldown;
    QColor magnitude, baseline, score, threshold, slap, amplitude;
};

Strip::Colors Strip::colorsNow() {
    const Theme& theme = Theme::current();
    if (theme.hasHighContrast()) {
        const Theme::Colors& colors = theme.colors();
        QColor grid = colors.divider;
        grid.setAlphaF(0.5F);
        return {.page = colors.window,
                .text = colors.primary,
                .grid = grid,
                .cooldown = theme.isDark() ? QColor(255, 255, 255, 60) : QColor(0, 0, 0, 45),
                .magnitude = colors.primary,
                .baseline = theme.isDark() ? QColor(0x8c, 0xca, 0xff) : QColor(0x00, 0x3f, 0x80),
                .score = colors.primary,
                .threshold = colors.orange,
                .slap = theme.isDark() ? QColor(0xff, 0xaa, 0xd6) : colors.accent,
                .amplitude = theme.isDark() ? QColor(0xff, 0xaa, 0xd6) : colors.accent};
    }
    if (theme.isDark()) {
        return {.page = QColor(0x23, 0x23, 0x23),
                .text = QColor(0xb2, 0xb2, 0xb2),
                .grid = QColor(0x3b, 0x3b, 0x3b),
                .cooldown = QColor(255, 255, 255, 23),
                .magnitude = QColor(0xdc, 0xdc, 0xdc),
                .baseline = QColor(0x5a, 0xb0, 0xf0),
                .score = QColor(0xa0, 0xa0, 0xa0),
                .threshold = QColor(0xff, 0x9f, 0x0a),
                .slap = QColor(0xf2, 0x47, 0x9e),
                .amplitude = QColor(0xff, 0xaa, 0xd6)};
    }
    return {.page = QColor(0xff, 0xff, 0xff),
            .text = QColor(0x5d, 0x5d, 0x5d),
            .grid = QColor(0xe4, 0xe4, 0xe4),
            .cooldown = QColor(0, 0, 0, 18),
            .magnitude = QColor(0x35, 0x35, 0x35),
            .baseline = QColor(0x0a, 0x6f, 0xb8),
            .score = QColor(0x6b, 0x6b, 0x6b),
            .threshold = QColor(0xb0, 0x4e, 0x00),
            .slap = QColor(0xf2, 0x47, 0x9e),
            .amplitude = QColor(0xbe, 0x18, 0x70)};
}

struct Strip::Layout {
    Colors colors;
    QRectF magnitudes, scores;
    Axis time, magnitude, score;
};

Strip::Strip() {
    describeAs(*this, QAccessible::Graphic, "What Quiverly’s detector makes of the last 8 seconds");
    describeSlaps();
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setFont(fontFor(FontRole::caption));
    connect(&Theme::current(), &Theme::changed, this, [this] {
        setFont(fontFor(FontRole::caption));
        updateGeometry();
        update();
    });
}

QString Strip::amplitudeText(double amplitude) {
    return QString::asprintf("%.3fg", amplitude);
}

QSize Strip::sizeHint() const {
    return {scaled(500), scaled(190)};
}

QSize Strip::minimumSizeHint() const {
    return {scaled(300), scaled(190)};
}

void Strip::addReading(const Reading& reading, bool isCoolingDown) {
    now = reading.seconds;
    threshold = reading.threshold;
    points.push_back({.reading = reading, .isCoolingDown = isCoolingDown});
    while (points.front().reading.seconds < now - length) points.pop_front();
    const auto gone = std::erase_if(slaps, [this](const Plot::Slap& slap) { return slap.seconds < now - length; });
    if (gone > 0) describeSlaps();
    const bool wasMoving = now - lastMotion <= length + 2 * longestGap; // once more when all is out of sight
    if (reading.score > noise) lastMotion = now;
    if (wasMoving || reading.score > noise) update();
}

void Strip::addSlap(const Plot::Slap& slap) {
    slaps.push_back(slap);
    describeSlaps();
    update();
}

void Strip::setThreshold(double next) {
    threshold = next;
    update();
}

void Strip::describeSlaps() {
    QStringList amplitudes;
    for (const Plot::Slap& slap : slaps) amplitudes << amplitudeText(slap.amplitude);
    setAccessibleDescription(amplitudes.isEmpty() ? "No slap" : "Slaps: " + amplitudes.join(", "));
}

double Strip::greatest(double (*of)(const Reading& reading)) const {
    double most = 0.0;
    for (const Point& point : points) most = std::max(most, of(point.reading));
    return most;
}

void Strip::paintEvent(QPaintEvent*) {
    const double left = scaled(36.0);
    const double right = width() - scaled(12.0);
    const double line = fontMetrics().height();
    const double top = line + scaled(9.0);
    const double bottom = height() - line - scaled(8.0);
    const double between = line + scaled(10.0);
    const double middle = top + 0.5 * (bottom - top - between);
    const QRectF magnitudes(QPointF(left, top), QPointF(right, middle));
    const QRectF scores(QPointF(left, middle + between), QPointF(right, bottom));

    const double swing =
        roundUp(1.05 * greatest([](const Reading& reading) { return std::abs(reading.magnitude - 1.0); }));
    const double most =
        std::max(greatest([](const Reading& reading) { return reading.score; }), std::min(threshold, 1.0));
    const Layout layout{.colors = colorsNow(),
                        .magnitudes = magnitudes,
                        .scores = scores,
                        .time = Axis(now - length, now, left, right),
                        .magnitude = Axis(1.0 - swing, 1.0 + swing, magnitudes.bottom(), magnitudes.top()),
                        .score = Axis(0.0, roundUp(1.25 * most), scores.bottom(), scores.top())};
    QPainter painter(this);
    fillRounded(painter, rect(), scaled(6.0), layout.colors.page);
    if (Theme::current().hasHighContrast()) {
        outlineRounded(painter, rect(), scaled(6.0), layout.colors.text, Theme::current().colors().edgeWidth);
    }
    drawCooldown(painter, layout);
    drawTimes(painter, layout);
    drawLevels(painter, layout.magnitude, layout);
    drawLevels(painter, layout.score, layout);
    painter.setPen(layout.colors.text);
    const double above = line + scaled(2.0);
    painter.drawText(QRectF(left, top - above, right - left, line), Qt::AlignLeft | Qt::TextDontClip, "magnitude, g");
    painter.drawText(QRectF(left, scores.top() - above, right - left, line), Qt::AlignLeft | Qt::TextDontClip,
                     "score, g");
    painter.setPen(layout.colors.baseline);
    painter.drawText(QRectF(left, top - above, right - left, line), Qt::AlignRight | Qt::TextDontClip, "baseline");
    painter.setPen(layout.colors.threshold);
    painter.drawText(QRectF(left, scores.top() - above, right - left, line), Qt::AlignRight | Qt::TextDontClip,
                     "threshold " + QString::fromStdString(shortest(threshold)));
    drawLines(painter, layout);
    drawSlaps(painter, layout);
}

void Strip::drawTimes(QPainter& painter, const Layout& layout) const {
    for (int age = 0; age <= static_cast<int>(length); age += 2) {
        const double x = layout.time(now - age);
        painter.setPen(layout.colors.grid);
        for (const QRectF& area : {layout.magnitudes, layout.scores}) {
            painter.drawLine(QPointF(x, area.top()), QPointF(x, area.bottom()));
        }
        painter.setPen(layout.colors.text);
        QRectF label(x - scaled(30.0), layout.scores.bottom() + scaled(4.0), scaled(60.0), fontMetrics().height());
        if (label.right() > width() - 2) label.moveRight(width() - scaled(6.0));
        const bool isLast = age == 0;
        painter.drawText(label, isLast ? Qt::AlignRight : Qt::AlignHCenter,
                         isLast ? QString("now") : QString("−%1 s").arg(age));
    }
}

void Strip::drawLevels(QPainter& painter, const Axis& axis, const Layout& layout) const {
    for (const double value : axis.roundValues(scaled(22.0))) {
        const double y = axis(value);
        painter.setPen(layout.colors.grid);
        painter.drawLine(QPointF(layout.scores.left(), y), QPointF(layout.scores.right(), y));
        painter.setPen(layout.colors.text);
        const QRectF label(0, y - fontMetrics().height() / 2.0, layout.scores.left() - scaled(5.0),
                           fontMetrics().height());
        painter.drawText(label, Qt::AlignRight | Qt::AlignVCenter, QString::fromStdString(shortest(value)));
    }
}

void Strip::drawCooldown(QPainter& painter, const Layout& layout) const {
    Spans spans;
    for (const Point& point : points) spans.observe(point.reading.seconds, point.isCoolingDown);
    for (const auto& [from, to] : spans.all()) {
        for (const QRectF& area : {layout.magnitudes, layout.scores}) {
            painter.fillRect(QRectF(QPointF(layout.time(from), area.top()), QPointF(layout.time(to), area.bottom())),
                             layout.colors.cooldown);
        }
    }
}

void Strip::drawLines(QPainter& painter, const Layout& layout) const {
    Line magnitudes, baselines, scores;
    double before = now - 2 * length;
    for (const auto& [reading, isCoolingDown] : points) {
        const double x = layout.time(reading.seconds);
        const bool joined = reading.seconds - before <= longestGap;
        magnitudes.extend({x, layout.magnitude(reading.magnitude)}, joined);
        baselines.extend({x, layout.magnitude(reading.baseline)}, joined);
        scores.extend({x, layout.score(reading.score)}, joined);
        before = reading.seconds;
    }
    const double lineWidth = scaled(1.2);
    const auto draw = [&](Line& line, const QColor& color) {
        painter.strokePath(line.path(), QPen(color, lineWidth, Qt::SolidLine, Qt::FlatCap, Qt::BevelJoin));
    };
    draw(magnitudes, layout.colors.magnitude);
    draw(baselines, layout.colors.baseline);
    draw(scores, layout.colors.score);
    QPen dashes(layout.colors.threshold, lineWidth);
    dashes.setDashPattern({5, 4});
    painter.setPen(dashes);
    const double y = layout.score(threshold);
    painter.drawLine(QPointF(layout.scores.left(), y), QPointF(layout.scores.right(), y));
}

void Strip::drawSlaps(QPainter& painter, const Layout& layout) const {
    QFont bold = font();
    bold.setWeight(QFont::DemiBold);
    painter.setFont(bold);
    double free = 0.0;
    for (const Plot::Slap& slap : slaps) {
        const double x = layout.time(slap.seconds);
        const double y = layout.score(slap.amplitude);
        QColor moment = layout.colors.slap;
        moment.setAlphaF(0.5F);
        painter.setPen(QPen(moment, scaled(1.2)));
        for (const QRectF& area : {layout.magnitudes, layout.scores}) {
            painter.drawLine(QPointF(x, area.top()), QPointF(x, area.bottom()));
        }
        painter.setPen(Qt::NoPen);
        painter.setBrush(layout.colors.slap);
        painter.drawEllipse(QPointF(x, y), scaled(4.0), scaled(4.0));
        if (x < free) continue;
        free = x + scaled(amplitudeDistance);
        painter.setPen(layout.colors.amplitude);
        const QString text = amplitudeText(slap.amplitude);
        const double textWidth = painter.fontMetrics().horizontalAdvance(text);
        const bool isNearTheEnd = x + scaled(7.0) + textWidth > width();
        painter.drawText(QPointF(isNearTheEnd ? x - scaled(7.0) - textWidth : x + scaled(7.0), y + scaled(4.0)), text);
    }
}

} // namespace quiverly
