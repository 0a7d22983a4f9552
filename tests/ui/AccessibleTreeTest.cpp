#include <gtest/gtest.h>

#include <QPushButton>
#include <QRadioButton>

#include "support/Screen.h"
#include "support/Stage.h"
#include "ui/BonkoApp.h"
#include "ui/ContentView.h"
#include "ui/OnboardingView.h"

namespace quiverly {
namespace {

// What assistive tools find in the application's window.
class AccessibleTreeTest : public testing::Test {
protected:
    AccessibleTreeTest() {
        app.show();
        stage.settle();
    }

    static QStringList namesIn(QAccessibleInterface& parent) {
        QStringList names;
        for (int index = 0; index < parent.childCount(); ++index) {
            QAccessibleInterface& child = *parent.child(index);
            EXPECT_EQ(child.parent(), &parent);
            EXPECT_EQ(parent.indexOfChild(&child), index);
            EXPECT_FALSE(child.state().invisible);
            names << child.text(QAccessible::Name) << namesIn(child);
        }
        return names;
    }

    QStringList names() {
        stage.settle();
        return namesIn(describe(applicationWindow()));
    }

    void click(const QString& button) {
        QTest::mouseClick(&find<QPushButton>(applicationWindow(), button), Qt::LeftButton);
        stage.settle();
    }

    void passOnboarding() {
        stage.rest();
        stage.pass(2.0);
        stage.slap(0.5);
        click("Continue");
    }

    Stage stage;
    BonkoApp app;
};

TEST_F(AccessibleTreeTest, TheCheckHasItsVisiblePartsAndNothingElse) {
    const QStringList welcome{"Quiverly", "Welcome to Quiverly",
                              "Slap your MacBook. It has feelings, and it will tell you."};
    const QString volume = "Turn volume down if you’re in public — the test slap plays a sexy sound.";
    EXPECT_EQ(names(), welcome + QStringList({"Step 1", "Hardware check", "Working", "Looking for accelerometer…",
                                              "Warning", volume}));
    stage.rest();
    stage.pass(2.0);
    EXPECT_EQ(names(),
              welcome + QStringList({"Step 1", "Hardware check", "Done", "Accelerometer detected", "Warning", volume,
                                     "Slap now", "Slap your MacBook to test — you’ll hear a sexy clip!"}));
    stage.slap(0.5);
    EXPECT_EQ(names(),
              welcome + QStringList({"Step 1, done", "Hardware check", "Done", "Accelerometer OK — you’re good to go!",
                                     "Done", "Motion check passed", "Continue"}));
}

TEST_F(AccessibleTreeTest, TheMainViewHasItsVisiblePartsAndNothingElse) {
    passOnboarding();
    EXPECT_EQ(names(), QStringList({"Quiverly", "Quiverly", "Slap → yell.", "Idle", "MODE", "Mode", "Pain", "Sexy",
                                    "Halo", "Lizard", "Sensitivity", "0.12", "Sensitivity",
                                    "Lower detects lighter taps", "Start listening",
                                    "Press Start, then slap your MacBook.", "Slaps this session: 1  ·  last 0.500g"}));
}

TEST_F(AccessibleTreeTest, APartIsFoundWhereItIs) {
    passOnboarding();
    QAccessibleInterface& window = describe(applicationWindow());
    QAccessibleInterface& button = describe(find<QPushButton>(applicationWindow(), "Start listening"));
    const QPoint centre = button.rect().center();
    EXPECT_EQ(window.childAt(centre.x(), centre.y()), &button);
    EXPECT_EQ(window.childAt(window.rect().left() + 1, window.rect().bottom() - 1), nullptr);
}

TEST_F(AccessibleTreeTest, AButtonIsPressedByItsAction) {
    passOnboarding();
    QAccessibleInterface& button = describe(find<QPushButton>(applicationWindow(), "Start listening"));
    EXPECT_EQ(button.role(), QAccessible::Button);
    EXPECT_EQ(button.actionInterface()->actionNames().first(), QAccessibleActionInterface::pressAction());
    button.actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    stage.settle();
    EXPECT_TRUE(showsText(applicationWindow(), "Listening"));
}

TEST_F(AccessibleTreeTest, OnlyWhatHasTheFocusIsFocused) {
    passOnboarding();
    applicationWindow().activateWindow();
    QWidget& segment = find<QRadioButton>(applicationWindow(), "Sexy");
    segment.setFocus();
    EXPECT_TRUE(describe(segment).state().focused);
    EXPECT_FALSE(describe(*segment.parentWidget()).state().focused);
}

} // namespace
} // namespace quiverly
