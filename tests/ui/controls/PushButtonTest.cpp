#include "ui/controls/PushButton.h"

#include <gtest/gtest.h>

#include <QTest>

namespace quiverly {
namespace {

TEST(PushButtonTest, AnEnterKeyHeldDownPressesOnce) {
    PushButton button("Continue");
    button.show();
    int clicks = 0;
    QObject::connect(&button, &PushButton::clicked, [&] { ++clicks; });
    QTest::keyPress(&button, Qt::Key_Return);
    QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Return, {}, "\r", true);
    QApplication::sendEvent(&button, &repeated);
    EXPECT_EQ(clicks, 1);
}

} // namespace
} // namespace quiverly
