#include "ui/controls/Spinner.h"

#include <gtest/gtest.h>

#include <QAbstractEventDispatcher>
#include <QTest>

namespace quiverly {
namespace {

QList<QAbstractEventDispatcher::TimerInfo> timersOf(QObject& object) {
    return QAbstractEventDispatcher::instance()->registeredTimers(&object);
}

TEST(SpinnerTest, TurnsEightToTenTimesASecondWhileItIsSeen) {
    Spinner spinner;
    EXPECT_TRUE(timersOf(spinner).isEmpty());
    spinner.show();
    ASSERT_EQ(timersOf(spinner).size(), 1);
    EXPECT_GE(timersOf(spinner)[0].interval, 100);
    EXPECT_LE(timersOf(spinner)[0].interval, 125);
    spinner.hide();
    EXPECT_TRUE(timersOf(spinner).isEmpty());
}

TEST(SpinnerTest, RestsInAMinimisedWindow) {
    Spinner spinner;
    spinner.show();
    QHideEvent minimised;
    QSpontaneKeyEvent::setSpontaneous(&minimised);
    qApp->notify(&spinner, &minimised);
    EXPECT_TRUE(timersOf(spinner).isEmpty());
    QShowEvent restored;
    QSpontaneKeyEvent::setSpontaneous(&restored);
    qApp->notify(&spinner, &restored);
    EXPECT_EQ(timersOf(spinner).size(), 1);
}

TEST(SpinnerTest, EachStepLooksDifferent) {
    Spinner spinner;
    spinner.show();
    const QImage before = spinner.grab().toImage();
    QTimerEvent tick(timersOf(spinner)[0].timerId);
    QApplication::sendEvent(&spinner, &tick);
    EXPECT_NE(spinner.grab().toImage(), before);
}

} // namespace
} // namespace quiverly
