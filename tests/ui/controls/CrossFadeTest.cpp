#include "ui/controls/CrossFade.h"

#include <gtest/gtest.h>

#include <QTest>
#include <QVariantAnimation>
#include <QWidget>

namespace quiverly {
namespace {

TEST(CrossFadeTest, WhatWasShownFadesAndIsGone) {
    QWidget widget;
    widget.resize(20, 20);
    widget.show();
    crossFade(widget);
    const auto* fade = widget.findChild<QVariantAnimation*>();
    ASSERT_NE(fade, nullptr);
    EXPECT_EQ(fade->duration(), 250);
    EXPECT_EQ(fade->easingCurve(), QEasingCurve(QEasingCurve::InOutQuad));
    EXPECT_TRUE(QTest::qWaitFor([&] { return widget.children().isEmpty(); }, 60'000));
}

TEST(CrossFadeTest, AHiddenWidgetHasNothingToFade) {
    QWidget widget;
    crossFade(widget);
    EXPECT_TRUE(widget.children().isEmpty());
}

TEST(CrossFadeTest, HidingEndsIt) {
    QWidget widget;
    widget.show();
    crossFade(widget);
    widget.hide();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(widget.children().isEmpty());
}

} // namespace
} // namespace quiverly
