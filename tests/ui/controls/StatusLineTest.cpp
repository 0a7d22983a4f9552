#include "ui/controls/StatusLine.h"

#include <gtest/gtest.h>

#include "platform/virtual/VirtualPlatform.h"
#include "support/Screen.h"

namespace quiverly {
namespace {

struct LineCase {
    StatusLine::Status status;
    const char* icon;
    bool orange;
};

class StatusLineTest : public testing::TestWithParam<LineCase> {};

TEST_P(StatusLineTest, TheFirstIconThatAppliesWins) {
    const LineCase& line = GetParam();
    const VirtualPlatform platform;
    StatusLine view;
    static_cast<QWidget&>(view).show();
    view.show(line.status);
    ASSERT_TRUE(showsPicture(view, line.icon)) << line.icon;
    const Theme::Colors& colors = Theme::current().colors();
    const QImage icon = picture(view, line.icon).grab().toImage();
    const QString meaning = line.icon;
    EXPECT_EQ(hasColor(icon, Theme::primaryPink), meaning == "Done" || meaning == "Slap now") << line.icon;
    EXPECT_EQ(hasColor(icon, colors.warning), meaning == "Warning") << line.icon;
    EXPECT_EQ(colorOf(text(view, "text")), line.orange ? colors.orange : colors.primary);
    EXPECT_EQ(text(view, "text").font().pixelSize(), 12);
}

INSTANTIATE_TEST_SUITE_P(
    Icons, StatusLineTest,
    testing::Values(LineCase{{.text = "text"}, "Working", false}, LineCase{{.ok = true, .text = "text"}, "Done", false},
                    LineCase{{.text = "text", .warning = true}, "Warning", true},
                    LineCase{{.ok = true, .text = "text", .warning = true}, "Done", false},
                    LineCase{{.ok = true, .text = "text", .forceWarning = true}, "Warning", true},
                    LineCase{{.text = "text", .hand = true}, "Slap now", false},
                    LineCase{{.ok = true, .text = "text", .forceWarning = true, .hand = true}, "Slap now", true}));

} // namespace
} // namespace quiverly
