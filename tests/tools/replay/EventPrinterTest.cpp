#include "tools/replay/EventPrinter.h"

#include <gtest/gtest.h>

#include <string>

namespace quiverly {
namespace {

class EventPrinterTest : public ::testing::Test {
protected:
    std::string text;
    EventPrinter events{text};
};

TEST_F(EventPrinterTest, EveryEventIsOneObjectALine) {
    using Kind = BonkoEngine::Phase::Kind;
    events.setTime(12.5);
    events.sample(0.25, -1.0, 1e-9);
    events.slap(3, 0.1);
    events.clip("sexy/28.mp3", 0.57F);
    events.checkSlap(0.35);
    events.phase({Kind::idle});
    events.phase({Kind::listening});
    events.phase({Kind::error, "Privacy → \"no\""});
    events.settingsPage("https://example.org/?a&b");
    events.end({.reports = 4, .samples = 3, .slaps = 2, .clips = 1});
    EXPECT_EQ(text, R"({"t":12.5,"event":"sample","x":0.25,"y":-1,"z":1e-09}
{"t":12.5,"event":"slap","count":3,"amplitude":0.1}
{"t":12.5,"event":"clip","file":"sexy/28.mp3","volume":0.57}
{"t":12.5,"event":"check-slap","amplitude":0.35}
{"t":12.5,"event":"phase","phase":"idle"}
{"t":12.5,"event":"phase","phase":"listening"}
{"t":12.5,"event":"phase","phase":"error","message":"Privacy → \"no\""}
{"t":12.5,"event":"settings-page","url":"https://example.org/?a&b"}
{"event":"end","reports":4,"samples":3,"slaps":2,"clips":1}
)");
}

TEST_F(EventPrinterTest, AClipIsNamedByItsFolderAndItsName) {
    events.clip("lizard/b\xFF\"\n.mp3", 1.0F);
    EXPECT_EQ(text, "{\"t\":0,\"event\":\"clip\",\"file\":\"lizard/b\xEF\xBF\xBD\\\"\\n.mp3\",\"volume\":1}\n");
}

} // namespace
} // namespace quiverly
