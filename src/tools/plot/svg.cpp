#include "tools/plot/svg.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

#include "tools/plot/Axis.h"

namespace quiverly {

namespace {

// The page, in pixels. A long recording takes several rows, one below the other.
constexpr double width = 1200;
constexpr double left = 56;
constexpr double right = 24;
constexpr double heading = 72;
constexpr double rowHeight = 324;

// Places in a row.
constexpr double magnitudeTop = 16;
constexpr double magnitudeBottom = 156;
constexpr double scoreTop = 184;
constexpr double scoreBottom = 264;
constexpr double clipNames = 284;
constexpr double timeLabels = 304;

constexpr double mostRows = 12;
constexpr double longestGap = 0.1;  // seconds between two readings that are drawn as one line
constexpr double mostThreshold = 2; // times the highest score, so that a high threshold does not flatten the scores

constexpr std::string_view style = R"(
    svg { color-scheme: light dark; font: 12px system-ui, sans-serif }
    .page { fill: #ffffff } text { fill: #5d5d5d } .title { font-size: 17px; font-weight: 600; fill: #232323 }
    .end { text-anchor: end } .middle { text-anchor: middle }
    .grid { stroke: #e4e4e4 } .cooldown { fill: #000000; fill-opacity: .07 } .settling { fill: #0a6fb8; fill-opacity: .12 }
    .line { fill: none; stroke-width: 1.2; stroke-linejoin: round }
    .magnitude { stroke: #353535 } .baseline { stroke: #0a6fb8 } .score { stroke: #6b6b6b }
    .threshold { stroke: #b04e00; stroke-dasharray: 5 4 }
    .slap { fill: #f2479e } .moment { stroke: #f2479e; stroke-opacity: .5 }
    .amplitude { fill: #be1870; font-weight: 600 }
    @media (prefers-color-scheme: dark) {
      .page { fill: #232323 } text { fill: #b2b2b2 } .title { fill: #e0e0e0 }
      .grid { stroke: #3b3b3b } .cooldown { fill: #ffffff; fill-opacity: .09 } .settling { fill: #5ab0f0; fill-opacity: .16 }
      .magnitude { stroke: #dcdcdc } .baseline { stroke: #5ab0f0 } .score { stroke: #a0a0a0 }
      .threshold { stroke: #ff9f0a } .amplitude { fill: #ffaad6 }
    }
)";

std::string place(double pixels) {
    return fixed(pixels, 1);
}

std::string escaped(std::string_view text) {
    std::string xml;
    for (const char character : text) {
        if (character == '&') {
            xml += "&amp;";
        } else if (character == '<') {
            xml += "&lt;";
        } else if (static_cast<unsigned char>(character) < 0x20) {
            xml += "\uFFFD"; // no document may hold it
        } else {
            xml += character;
        }
    }
    return xml;
}

// Seconds, or minutes and seconds where a recording is long.
std::string clockText(double seconds, bool inMinutes) {
    if (!inMinutes) return shortest(seconds);
    const double minutes = std::floor(seconds / 60);
    const std::string rest = shortest(seconds - minutes * 60);
    const bool oneDigit = rest.size() == 1 || rest[1] == '.';
    return shortest(minutes) + (oneDigit ? ":0" : ":") + rest;
}

// How long a row is: a whole short recording, or a round time of which a few rows are enough.
double rowLength(double duration) {
    for (const double seconds : {60, 120, 300, 600, 1800, 3600}) {
        if (duration <= seconds * mostRows) return std::min(duration, seconds);
    }
    return duration / mostRows;
}

// Keeps texts that stand side by side from overlapping.
class Space {
public:
    explicit Space(double distance) : distance(distance) {}

    bool isFreeAt(double x) {
        if (x < next) return false;
        next = x + distance;
        return true;
    }

private:
    double distance;
    double next = 0;
};

// Shapes and texts as elements of a document. Their kinds are classes of the style.
class Canvas {
public:
    void add(std::string_view element) { content.append(element) += '\n'; }

    void rectangle(std::string_view kind, double x, double y, double wide, double high) {
        add("<rect class=\"" + std::string(kind) + "\" x=\"" + place(x) + "\" y=\"" + place(y) + "\" width=\"" +
            place(wide) + "\" height=\"" + place(high) + "\"/>");
    }

    void path(std::string_view kind, const std::string& steps) {
        if (!steps.empty()) add("<path class=\"" + std::string(kind) + "\" d=\"" + steps + "\"/>");
    }

    void line(std::string_view kind, double x1, double y1, double x2, double y2) {
        path(kind, 'M' + place(x1) + ' ' + place(y1) + 'L' + place(x2) + ' ' + place(y2));
    }

    void dot(std::string_view kind, double x, double y, const std::string& tip) {
        add("<circle class=\"" + std::string(kind) + "\" r=\"4\" cx=\"" + place(x) + "\" cy=\"" + place(y) +
            "\"><title>" + escaped(tip) + "</title></circle>");
    }

    // Beside x: behind it, or before it where the page ends.
    void writeBeside(const std::string& kind, double x, double y, double distance, std::string_view what) {
        const bool isNearTheEnd = x > width - right - 80;
        write(isNearTheEnd ? kind + " end" : kind, isNearTheEnd ? x - distance : x + distance, y, what);
    }

    void write(std::string_view kind, double x, double y, std::string_view what) {
        add("<text class=\"" + std::string(kind) + "\" x=\"" + place(x) + "\" y=\"" + place(y) + "\">" + escaped(what) +
            "</text>");
    }

    std::string content;
};

class Drawing {
public:
    explicit Drawing(const Plot& plot)
        : plot(plot),
          bins(plot.trace.bins()),
          begin(bins.empty() ? 0 : std::floor(bins.front().last.seconds)),
          end(bins.empty() ? 1 : std::max(bins.back().last.seconds, begin + 0.1)),
          length(rowLength(end - begin)),
          magnitude(magnitudeAxis()),
          score(scoreAxis()) {}

    std::string document() {
        const double rows = std::ceil((end - begin) / length);
        const double height = heading + rows * rowHeight;
        canvas.add(R"(<svg xmlns="http://www.w3.org/2000/svg" role="img" width=")" + place(width) + R"(" height=")" +
                   place(height) + R"(" viewBox="0 0 )" + place(width) + ' ' + place(height) + "\">");
        canvas.add("<title>" + escaped(plot.title) + ": " + summary() + "</title>");
        canvas.add("<style>" + std::string(style) + "</style>");
        canvas.rectangle("page", 0, 0, width, height);
        canvas.write("title", left, 32, plot.title);
        canvas.write("", left, 54, summary());
        drawLegend();
        for (double row = 0; row < rows; ++row) drawRow(begin + row * length, heading + row * rowHeight);
        canvas.add("</svg>");
        return std::move(canvas.content);
    }

private:
    Axis magnitudeAxis() const {
        double least = 0.9;
        double most = 1.1;
        for (const Trace::Bin& bin : bins) {
            least = std::min(least, bin.lowest);
            most = std::max(most, bin.highest);
        }
        const double margin = 0.05 * (most - least);
        return {least - margin, most + margin, magnitudeBottom, magnitudeTop};
    }

    Axis scoreAxis() const {
        double most = 0.05;
        double threshold = 0;
        for (const Trace::Bin& bin : bins) {
            most = std::max(most, bin.highestScore);
            threshold = std::max(threshold, bin.last.threshold);
        }
        return {0, 1.25 * std::max(most, std::min(threshold, mostThreshold * most)), scoreBottom, scoreTop};
    }

    std::string summary() const {
        const auto counted = [](std::size_t count, const std::string& what) {
            return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
        };
        if (bins.empty()) return "no samples";
        return shortest(end - begin) + " s, " + counted(plot.slaps.size(), "slap") + ", " +
               counted(plot.clips.size(), "clip");
    }

    void drawLegend() {
        double x = width - right;
        const auto entry = [&](std::string_view name) {
            x -= 7 * static_cast<double>(name.size()) + 34;
            canvas.write("", x + 22, 36, name);
            return x;
        };
        for (const char* const kind : {"settling", "cooldown"}) canvas.rectangle(kind, entry(kind), 25, 16, 14);
        canvas.dot("slap", entry("slap") + 12, 32, "a slap");
        for (const std::string kind : {"threshold", "score", "baseline", "magnitude"}) {
            const double from = entry(kind);
            canvas.line("line " + kind, from, 32, from + 16, 32);
        }
    }

    void drawRow(double from, double top) {
        const Axis time(from, from + length, left, width - right);
        canvas.add("<g transform=\"translate(0 " + place(top) + ")\">");
        drawShades(time);
        drawGrid(time);
        drawSlaps(time);
        drawReadings(time);
        drawClips(time);
        canvas.add("</g>");
    }

    void drawShades(const Axis& time) {
        const auto shade = [&](std::string_view kind, const Spans& spans) {
            for (const auto& [from, to] : spans.all()) {
                if (!time.overlaps(from, to)) continue;
                const double x = time(from);
                canvas.rectangle(kind, x, magnitudeTop, std::max(time(to) - x, 0.5), scoreBottom - magnitudeTop);
            }
        };
        shade("cooldown", plot.cooldowns);
        shade("settling", plot.settling);
    }

    void drawGrid(const Axis& time) {
        const auto level = [this](double y, const std::string& value) {
            canvas.line("grid", left, y, width - right, y);
            canvas.write("end", left - 8, y + 4, value);
        };
        for (const double value : magnitude.roundValues(30)) level(magnitude(value), shortest(value));
        for (const double value : score.roundValues(30)) level(score(value), shortest(value));
        canvas.write("", left, magnitudeTop - 6, "magnitude, g");
        canvas.write("", left, scoreTop - 6, "score, g: how far it jumps from the baseline or the sample before");
        for (const double seconds : time.roundTimes(72)) {
            const double x = time(seconds);
            canvas.line("grid", x, magnitudeTop, x, magnitudeBottom);
            canvas.line("grid", x, scoreTop, x, scoreBottom);
            canvas.write("middle", x, timeLabels, clockText(seconds, inMinutes()));
        }
        canvas.write("end", left - 8, timeLabels, inMinutes() ? "min" : "s");
    }

    void drawReadings(const Axis& time) {
        std::string magnitudes, baselines, scores, thresholds;
        const double longest = std::max(longestGap, 2 * plot.trace.binLength());
        double before = begin - 2 * longest;
        for (const Trace::Bin& bin : bins) {
            const Reading& reading = bin.last;
            if (!time.contains(reading.seconds)) continue;
            const bool joined = reading.seconds - before <= longest;
            const std::string to = (joined ? 'L' : 'M') + place(time(reading.seconds)) + ' ';
            magnitudes += to + place(magnitude(bin.lowest));
            if (bin.highest > bin.lowest) magnitudes += 'V' + place(magnitude(bin.highest));
            baselines += to + place(magnitude(reading.baseline));
            scores += to + place(score(bin.highestScore));
            thresholds += to + place(score(reading.threshold));
            before = reading.seconds;
        }
        canvas.path("line magnitude", magnitudes);
        canvas.path("line baseline", baselines);
        canvas.path("line score", scores);
        canvas.path("line threshold", thresholds);
    }

    void drawSlaps(const Axis& time) {
        Space amplitudes(36);
        for (const auto& [seconds, amplitude] : plot.slaps) {
            if (!time.contains(seconds)) continue;
            const double x = time(seconds);
            const double y = score(amplitude);
            canvas.line("moment", x, magnitudeTop, x, magnitudeBottom);
            canvas.line("moment", x, scoreTop, x, clipNames - 14);
            canvas.dot("slap", x, y, "slap at " + clockText(seconds, inMinutes()) + ", " + shortest(amplitude) + " g");
            if (amplitudes.isFreeAt(x)) canvas.writeBeside("amplitude", x, y - 2, 7, fixed(amplitude, 2));
        }
    }

    void drawClips(const Axis& time) {
        Space names(100);
        for (const auto& [seconds, name] : plot.clips) {
            if (!time.contains(seconds)) continue;
            const double x = time(seconds);
            if (names.isFreeAt(x)) canvas.writeBeside("clip", x, clipNames, 0, name);
        }
    }

    bool inMinutes() const { return end >= 120; }

    const Plot& plot;
    const std::vector<Trace::Bin>& bins;
    const double begin, end; // seconds
    const double length;     // of a row, in seconds
    const Axis magnitude, score;
    Canvas canvas;
};

} // namespace

std::string svg(const Plot& plot) {
    return Drawing(plot).document();
}

} // namespace quiverly
