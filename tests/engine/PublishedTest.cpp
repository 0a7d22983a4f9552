#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "engine/Published.h"

namespace quiverly {
namespace {

class PublishedTest : public testing::Test {
protected:
    using Texts = std::vector<std::string>;

    ChangePublisher publisher;
    Texts events;
    Published<std::string> name{publisher, "old", [this] { events.push_back("effect on " + name.get()); }};
    Published<int> number{publisher, 1};
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
    const auto subscription =
        publisher.subscribe([this](const void*) { events.push_back("announced at " + name.get()); });
    name = "new";
    EXPECT_EQ(events, (Texts{"announced at old", "effect on new"}));
}

TEST_F(PublishedTest, EveryWriteIsAnnouncedAndTakesEffectAnEqualOneToo) {
    int announcements = 0;
    const auto subscription = publisher.subscribe([&](const void*) { ++announcements; });
    for (int count = 0; count < 3; ++count) name = "old";
    EXPECT_EQ(announcements, 3);
    EXPECT_EQ(events.size(), 3U);
}

TEST_F(PublishedTest, TheAnnouncementTellsThePropertyByItsAddress) {
    std::vector<const void*> properties;
    const auto subscription = publisher.subscribe([&](const void* property) { properties.push_back(property); });
    number = 2;
    name = "new";
    EXPECT_EQ(properties, (std::vector<const void*>{&number, &name}));
}

TEST_F(PublishedTest, AllObserversAreToldInTheOrderInWhichTheyCame) {
    const auto first = publisher.subscribe([this](const void*) { events.emplace_back("first"); });
    const auto second = publisher.subscribe([this](const void*) { events.emplace_back("second"); });
    number = 2;
    EXPECT_EQ(events, (Texts{"first", "second"}));
}

TEST_F(PublishedTest, ASubscriptionEndsWhenItDies) {
    auto subscription = publisher.subscribe([this](const void*) { events.emplace_back("told"); });
    number = 2;
    subscription.reset();
    number = 3;
    EXPECT_EQ(events, Texts{"told"});
}

TEST_F(PublishedTest, ASubscriptionMayOutliveItsPublisher) {
    ChangePublisher::Subscription subscription;
    {
        ChangePublisher shortLived;
        subscription = shortLived.subscribe([](const void*) {});
    }
    subscription.reset();
}

TEST_F(PublishedTest, AnObserverMayUnsubscribeAnotherDuringTheAnnouncement) {
    ChangePublisher::Subscription second;
    const auto first = publisher.subscribe([&](const void*) { second.reset(); });
    second = publisher.subscribe([this](const void*) { events.emplace_back("second"); });
    number = 2;
    EXPECT_EQ(events, Texts{});
}

TEST_F(PublishedTest, AnObserverMayUnsubscribeItselfDuringTheAnnouncement) {
    ChangePublisher::Subscription subscription;
    subscription = publisher.subscribe([&, mark = std::string(100, 'm')](const void*) {
        subscription.reset();
        events.push_back(mark);
    });
    number = 2;
    number = 3;
    EXPECT_EQ(events, Texts{std::string(100, 'm')});
}

TEST_F(PublishedTest, AnObserverThatComesDuringTheAnnouncementHearsTheNextOne) {
    ChangePublisher::Subscription late;
    const auto first = publisher.subscribe([&](const void*) {
        if (!late) late = publisher.subscribe([this](const void*) { events.emplace_back("late"); });
    });
    number = 2;
    EXPECT_EQ(events, Texts{});
    number = 3;
    EXPECT_EQ(events, Texts{"late"});
}

} // namespace
} // namespace quiverly
