#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "engine/Published.h"

namespace quiverly {
namespace {

class PublishedTest : public testing::Test {
protected:
    using Texts = std::vector<std::string>;

    ChangePublisher object;
    Texts events;
    Published<std::string> name{object, "old", [this] { events.push_back("effect on " + name.get()); }};
    Published<int> number{object, 1};
};

TEST_F(PublishedTest, ReadsLikeItsValue) {
    const int value = number;
    EXPECT_EQ(value, 1);
    EXPECT_EQ(number + 1, 2);
    EXPECT_EQ(name.get(), "old");
}

TEST_F(PublishedTest, ItsInitialValueIsNeitherAnnouncedNorDoesItRunTheEffect) {
    EXPECT_EQ(events, Texts{});
}

TEST_F(PublishedTest, AWriteIsAnnouncedWhileTheOldValueStandsThenStoredThenTakesEffect) {
    const auto ofName = name.willChange.subscribe([this] { events.push_back("name at " + name.get()); });
    const auto ofObject = object.subscribe([this] { events.push_back("object at " + name.get()); });
    name = "new";
    EXPECT_EQ(events, (Texts{"name at old", "object at old", "effect on new"}));
}

TEST_F(PublishedTest, EveryWriteIsAnnouncedAndTakesEffectAnEqualOneToo) {
    int ofName = 0;
    int ofObject = 0;
    const auto nameWatcher = name.willChange.subscribe([&] { ++ofName; });
    const auto objectWatcher = object.subscribe([&] { ++ofObject; });
    for (int count = 0; count < 3; ++count) name = "old";
    EXPECT_EQ(ofName, 3);
    EXPECT_EQ(ofObject, 3);
    EXPECT_EQ(events.size(), 3U);
}

TEST_F(PublishedTest, ThoseWhoObserveOnePropertyHearOfNoOther) {
    int ofName = 0;
    int ofNumber = 0;
    const auto nameWatcher = name.willChange.subscribe([&] { ++ofName; });
    const auto numberWatcher = number.willChange.subscribe([&] { ++ofNumber; });
    number = 2;
    number = 3;
    EXPECT_EQ(ofName, 0);
    EXPECT_EQ(ofNumber, 2);
    name = "new";
    EXPECT_EQ(ofName, 1);
    EXPECT_EQ(ofNumber, 2);
}

TEST_F(PublishedTest, AllObserversAreToldInTheOrderInWhichTheyCame) {
    const auto first = object.subscribe([this] { events.emplace_back("first"); });
    const auto second = object.subscribe([this] { events.emplace_back("second"); });
    number = 2;
    EXPECT_EQ(events, (Texts{"first", "second"}));
}

TEST_F(PublishedTest, ASubscriptionEndsWhenItDies) {
    auto subscription = object.subscribe([this] { events.emplace_back("told"); });
    number = 2;
    subscription.reset();
    number = 3;
    EXPECT_EQ(events, Texts{"told"});
}

TEST_F(PublishedTest, ASubscriptionMayOutliveItsPublisher) {
    ChangePublisher::Subscription subscription;
    {
        ChangePublisher shortLived;
        subscription = shortLived.subscribe([] {});
    }
    subscription.reset();
}

TEST_F(PublishedTest, AnObserverMayUnsubscribeAnotherDuringTheAnnouncement) {
    ChangePublisher::Subscription second;
    const auto first = object.subscribe([&] { second.reset(); });
    second = object.subscribe([this] { events.emplace_back("second"); });
    number = 2;
    EXPECT_EQ(events, Texts{});
}

TEST_F(PublishedTest, AnObserverMayUnsubscribeItselfDuringTheAnnouncement) {
    auto held = std::make_shared<int>(1);
    const std::weak_ptr<int> observerLives = held;
    ChangePublisher::Subscription subscription;
    subscription = object.subscribe([&, held = std::move(held)] {
        const auto& lives = observerLives; // what is read after the reset must not stand in the observer
        Texts& told = events;
        subscription.reset();
        EXPECT_FALSE(lives.expired());
        told.emplace_back("told");
    });
    number = 2;
    EXPECT_TRUE(observerLives.expired());
    number = 3;
    EXPECT_EQ(events, Texts{"told"});
}

TEST_F(PublishedTest, AnObserverThatComesDuringTheAnnouncementHearsTheNextOne) {
    ChangePublisher::Subscription late;
    const auto first = object.subscribe([&] {
        if (!late) late = object.subscribe([this] { events.emplace_back("late"); });
    });
    const auto second = object.subscribe([this] { events.emplace_back("second"); });
    number = 2;
    EXPECT_EQ(events, Texts{"second"});
    number = 3;
    EXPECT_EQ(events, (Texts{"second", "second", "late"}));
}

} // namespace
} // namespace quiverly
