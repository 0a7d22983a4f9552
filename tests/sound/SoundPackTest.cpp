#include <gtest/gtest.h>

#include <string_view>
#include <unordered_set>
#include <vector>

#include "sound/SoundPack.h"

namespace quiverly {
namespace {

TEST(SoundPackTest, AllCasesAreOfferedInThisOrder) {
    const std::vector<SoundPack> offered(SoundPack::allCases.begin(), SoundPack::allCases.end());
    EXPECT_EQ(offered, (std::vector<SoundPack>{SoundPack::pain, SoundPack::sexy, SoundPack::halo, SoundPack::lizard}));
}

TEST(SoundPackTest, EachRawValueYieldsItsCase) {
    EXPECT_EQ(SoundPack::fromRawValue("pain"), SoundPack::pain);
    EXPECT_EQ(SoundPack::fromRawValue("sexy"), SoundPack::sexy);
    EXPECT_EQ(SoundPack::fromRawValue("halo"), SoundPack::halo);
    EXPECT_EQ(SoundPack::fromRawValue("lizard"), SoundPack::lizard);
}

TEST(SoundPackTest, AnotherLetterCaseAnEmptyTextOrASpaceYieldsNoPack) {
    using namespace std::string_view_literals;
    for (const auto text : {"Pain"sv, "LIZARD"sv, ""sv, " sexy"sv, "sexy "sv, "hal"sv, "halos"sv, "pain\0"sv}) {
        EXPECT_EQ(SoundPack::fromRawValue(text), std::nullopt) << text;
    }
}

TEST(SoundPackTest, IdAndFolderAreTheRawValueAndTheRoundTripGivesTheSameCase) {
    for (const SoundPack pack : SoundPack::allCases) {
        EXPECT_STREQ(pack.id(), pack.rawValue());
        EXPECT_STREQ(pack.folder(), pack.rawValue());
        EXPECT_EQ(SoundPack::fromRawValue(pack.rawValue()), pack);
    }
}

TEST(SoundPackTest, TheTitleIsTheRawValueWithACapitalFirstLetter) {
    EXPECT_STREQ(SoundPack(SoundPack::pain).title(), "Pain");
    EXPECT_STREQ(SoundPack(SoundPack::sexy).title(), "Sexy");
    EXPECT_STREQ(SoundPack(SoundPack::halo).title(), "Halo");
    EXPECT_STREQ(SoundPack(SoundPack::lizard).title(), "Lizard");
}

TEST(SoundPackTest, OnlySexyAndLizardEscalate) {
    EXPECT_FALSE(SoundPack(SoundPack::pain).escalates());
    EXPECT_TRUE(SoundPack(SoundPack::sexy).escalates());
    EXPECT_FALSE(SoundPack(SoundPack::halo).escalates());
    EXPECT_TRUE(SoundPack(SoundPack::lizard).escalates());
}

TEST(SoundPackTest, EqualityAndHashGoByCase) {
    const std::unordered_set<SoundPack> packs(SoundPack::allCases.begin(), SoundPack::allCases.end());
    EXPECT_EQ(packs.size(), 4U);
    EXPECT_TRUE(packs.contains(SoundPack::halo));
    EXPECT_NE(SoundPack(SoundPack::halo), SoundPack(SoundPack::pain));
}

} // namespace
} // namespace quiverly
