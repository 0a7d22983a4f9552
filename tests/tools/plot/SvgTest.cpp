#include "tools/plot/svg.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace quiverly {
namespace {

int count(const std::string& text, std::string_view what) {
    int found = 0;
    for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++found;
    return found;
}

Plot rest(double seconds, double threshold = 0.12) {
    Plot plot;
    for (double at = 0; at <= seconds; at += 0.008) {
        plot.trace.add({.seconds = at, .magnitude = 1, .baseline = 1, .score = 0, .threshold = threshold});
    }
    return plot;
}

TEST(SvgTest, NothingIsDrawnOfARecordingWithoutSamples) {
    const std::string document = svg({});
    EXPECT_EQ(count(document, "no samples"), 2);
    EXPECT_EQ(count(document, R"(class="line magnitude" d="M56.0)"), 0);
    EXPECT_TRUE(document.ends_with("</svg>\n"));
}

TEST(SvgTest, ASlapIsMarkedAtItsTimeWithItsAmplitude) {
    Plot plot = rest(10);
    plot.slaps = {{.seconds = 5, .amplitude = 0.625}};
    const std::string document = svg(plot);
    EXPECT_EQ(count(document, "<title>slap at 5, 0.625 g</title>"), 1);
    EXPECT_EQ(count(document, R"(<text class="amplitude")"), 1);
    EXPECT_EQ(count(document, "10 s, 1 slap, 0 clips"), 2);
}

TEST(SvgTest, NamesOfClipsThatWouldOverlapAreLeftOut) {
    Plot plot = rest(10);
    plot.clips = {{.seconds = 1, .name = "sexy/1.mp3"},
                  {.seconds = 1.5, .name = "sexy/2.mp3"},
                  {.seconds = 5, .name = "sexy/3.mp3"}};
    const std::string document = svg(plot);
    EXPECT_EQ(count(document, "sexy/1.mp3"), 1);
    EXPECT_EQ(count(document, "sexy/2.mp3"), 0);
    EXPECT_EQ(count(document, "sexy/3.mp3"), 1);
}

TEST(SvgTest, ALongRecordingTakesRowsOfRoundLength) {
    EXPECT_EQ(count(svg(rest(60)), "<g "), 1);
    const std::string tenMinutes = svg(rest(600));
    EXPECT_EQ(count(tenMinutes, "<g "), 10);
    EXPECT_EQ(count(tenMinutes, ">3:30<"), 1);
    EXPECT_EQ(count(svg(rest(7200)), "<g "), 12);
}

TEST(SvgTest, SilenceBreaksTheLine) {
    Plot plot;
    for (const double at : {1.0, 1.008, 3.0, 3.008}) {
        plot.trace.add({.seconds = at, .magnitude = 1, .baseline = 1, .score = 0, .threshold = 0.12});
    }
    const std::string document = svg(plot);
    const auto from = document.find(R"(class="line baseline" d=")", document.find("<g "));
    const std::string line = document.substr(from, document.find("/>", from) - from);
    EXPECT_EQ(count(line, "M"), 2);
    EXPECT_EQ(count(line, "L"), 2);
}

TEST(SvgTest, AnAbsurdThresholdFlattensNothing) {
    Plot plot = rest(2, 1e308);
    plot.trace.add({.seconds = 2.5, .magnitude = 2, .baseline = 1, .score = 1, .threshold = -1e308});
    EXPECT_EQ(count(svg(plot), ">2</text>"), 3); // on all three axes
}

TEST(SvgTest, TextsAreEscaped) {
    Plot plot = rest(1);
    plot.title = "<a & \"b\"\n>";
    EXPECT_EQ(count(svg(plot), "&lt;a &amp; \"b\"\uFFFD>"), 2);
}

} // namespace
} // namespace quiverly
