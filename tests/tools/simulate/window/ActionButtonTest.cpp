#include "tools/simulate/window/ActionButton.h"

#include <gtest/gtest.h>

#include <QTest>

#include "support/Screen.h"
#include "ui/Theme.h"

namespace quiverly {
namespace {

TEST(ActionButtonTest, EnterAndSpacePressIt) {
    ActionButton button("Walk");
    button.show();
    int clicks = 0;
    QObject::connect(&button, &QPushButton::clicked, [&] { ++clicks; });
    QTest::keyClick(&button, Qt::Key_Return);
    QTest::keyClick(&button, Qt::Key_Space);
    EXPECT_EQ(clicks, 2);
}

TEST(ActionButtonTest, IsFilledWithTheAccentWhileItIsOn) {
    ActionButton button("Walk");
    button.setCheckable(true);
    button.resize(120, 28);
    const QPoint besideTheText(12, 5);
    expectNear(colorAt(button, besideTheText), Theme::current().colors().selection);
    button.setChecked(true);
    expectNear(colorAt(button, besideTheText), Theme::current().colors().accent);
    EXPECT_TRUE(describe(button).state().checked);
}

} // namespace
} // namespace quiverly
