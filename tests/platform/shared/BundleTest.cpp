#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "platform/bundle.h"
#include "platform/virtual/VirtualPlatform.h"
#include "support/AnotherUser.h"
#include "support/TemporaryFolder.h"

namespace quiverly {
namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

// Resources in two folders, of which the first that has what is asked for answers.
class BundleTest : public testing::Test {
protected:
    BundleTest() { platform.resources.folders = {own.path(), installed.path()}; }

    // The names of the clips in that folder, sorted by bytes; nothing when there is no such folder.
    static std::optional<Names> clips(const fs::path& subfolder) {
        const auto files = bundle::files("mp3", subfolder);
        if (!files) return std::nullopt;
        Names names;
        for (const auto& file : *files) names.push_back(file.filename());
        std::sort(names.begin(), names.end());
        return names;
    }

    VirtualPlatform platform;
    TemporaryFolder own;
    TemporaryFolder installed;
};

TEST_F(BundleTest, AMissingFolderHasNoList) {
    EXPECT_EQ(clips("audio/pain"), std::nullopt);
}

TEST_F(BundleTest, AMissingFolderFallsThroughToTheNextPlace) {
    installed.addFile("audio/pain/1.mp3");
    EXPECT_EQ(clips("audio/pain"), Names{"1.mp3"});
}

TEST_F(BundleTest, AnEmptyFolderIsTheEmptyListAndHidesTheNextPlace) {
    own.addFolder("audio/pain");
    installed.addFile("audio/pain/1.mp3");
    EXPECT_EQ(clips("audio/pain"), Names{});
}

TEST_F(BundleTest, TheFirstPlaceWinsAndNothingIsMerged) {
    own.addFile("audio/pain/own.mp3");
    installed.addFile("audio/pain/1.mp3");
    installed.addFile("audio/halo/1.mp3");
    EXPECT_EQ(clips("audio/pain"), Names{"own.mp3"});
    EXPECT_EQ(clips("audio/halo"), Names{"1.mp3"});
}

TEST_F(BundleTest, FilesAreNamedByTheirWholePath) {
    own.addFile("audio/pain/1.mp3");
    EXPECT_EQ(bundle::files("mp3", "audio/pain"), std::vector<fs::path>{own.path() / "audio/pain/1.mp3"});
}

TEST_F(BundleTest, OtherExtensionsAndOtherLetterCasesDoNotCount) {
    for (const char* name : {"a.mp3", "b.MP3", "c.Mp3", "d.wav", "e.mp3.bak", "fmp3", "g.mp33", "h"}) {
        own.addFile(fs::path("clips") / name);
    }
    EXPECT_EQ(clips("clips"), Names{"a.mp3"});
}

TEST_F(BundleTest, HiddenFilesDoNotCount) {
    own.addFile("clips/.hidden.mp3");
    own.addFile("clips/.mp3");
    EXPECT_EQ(clips("clips"), Names{});
}

TEST_F(BundleTest, FoldersNamedLikeClipsDoNotCountNorDoTheirContents) {
    own.addFile("clips/folder.mp3/inside.mp3");
    EXPECT_EQ(clips("clips"), Names{});
}

TEST_F(BundleTest, LinksAreFollowedAndDanglingOnesDoNotCount) {
    own.addFile("elsewhere/sound");
    own.addFolder("clips");
    fs::create_symlink("../elsewhere/sound", own.path() / "clips/link.mp3");
    fs::create_symlink("nowhere", own.path() / "clips/dangling.mp3");
    fs::create_symlink("loop.mp3", own.path() / "clips/loop.mp3");
    fs::create_directory_symlink("../elsewhere", own.path() / "clips/folder.mp3");
    EXPECT_EQ(clips("clips"), Names{"link.mp3"});
}

TEST_F(BundleTest, ALinkToAFolderIsThatFolder) {
    installed.addFile("audio/pain/1.mp3");
    fs::create_directory_symlink(installed.path() / "audio", own.path() / "audio");
    EXPECT_EQ(clips("audio/pain"), Names{"1.mp3"});
}

TEST_F(BundleTest, AFileInPlaceOfTheFolderIsNotAFolder) {
    own.addFile("audio/pain");
    EXPECT_EQ(clips("audio/pain"), std::nullopt);
}

TEST_F(BundleTest, ForeignNamesAreFoundWhateverTheyHold) {
    Names names{"-rf.mp3", "2 Füße.mp3", "10 O'Malley \"quoted\" $(x).mp3", "Ärger.mp3", "two\nlines.mp3"};
    for (const char* name : {"悲鳴.mp3", "🦎.mp3"}) names.emplace_back(name);
    names.push_back(std::string(250, 'z') + ".mp3");
    for (const std::string& name : names) own.addFile(fs::path("clips") / name);
    std::sort(names.begin(), names.end());
    EXPECT_EQ(clips("clips"), names);
}

TEST_F(BundleTest, FiveHundredClipsAreFoundAndHaveTheirNaturalOrder) {
    Names names;
    for (int number = 1; number <= 500; ++number) {
        names.push_back(std::to_string(number) + ".mp3");
        own.addFile(fs::path("clips") / names.back());
    }
    auto found = clips("clips").value();
    std::sort(found.begin(), found.end(), bundle::precedes);
    EXPECT_EQ(found, names);
}

TEST_F(BundleTest, NamesThatAreNotUtf8AreKeptByteForByte) {
    const std::string name = "\xFF\xFE.mp3";
    own.addFile(fs::path("clips") / name);
    EXPECT_EQ(clips("clips"), Names{name});
}

TEST_F(BundleTest, AFolderThatCannotBeReadIsTheEmptyList) {
    own.addFile("audio/pain/1.mp3");
    installed.addFile("audio/pain/2.mp3");
    another_user::give(own.path());
    another_user::give(installed.path());
    fs::permissions(own.path() / "audio/pain", fs::perms::none);
    another_user::act([] { EXPECT_EQ(clips("audio/pain"), Names{}); });
    fs::permissions(own.path() / "audio/pain", fs::perms::all);
    another_user::act([] { EXPECT_EQ(clips("audio/pain"), Names{"1.mp3"}); });
}

TEST_F(BundleTest, AFolderThatCannotBeEnteredFallsThrough) {
    own.addFile("audio/pain/1.mp3");
    installed.addFile("audio/pain/2.mp3");
    another_user::give(own.path());
    another_user::give(installed.path());
    fs::permissions(own.path(), fs::perms::none);
    another_user::act([] { EXPECT_EQ(clips("audio/pain"), Names{"2.mp3"}); });
    fs::permissions(own.path(), fs::perms::all);
}

TEST_F(BundleTest, AResourceIsFoundByNameAndTypeInTheFirstPlaceThatHasIt) {
    installed.addFile("logo.png");
    EXPECT_EQ(bundle::resource("logo", "png"), installed.path() / "logo.png");
    own.addFile("logo.png");
    EXPECT_EQ(bundle::resource("logo", "png"), own.path() / "logo.png");
    EXPECT_EQ(bundle::resource("logo", "svg"), std::nullopt);
    own.addFolder("icon.png");
    EXPECT_EQ(bundle::resource("icon", "png"), std::nullopt);
}

// Natural order

// Each name comes before every later one and after none.
void expectOrder(const Names& names) {
    for (std::size_t first = 0; first < names.size(); ++first) {
        for (std::size_t second = 0; second < names.size(); ++second) {
            EXPECT_EQ(bundle::precedes(names[first], names[second]), first < second)
                << names[first] << " before " << names[second];
        }
    }
}

TEST_F(BundleTest, RunsOfDigitsGoByTheirValue) {
    expectOrder({"1.mp3", "2.mp3", "10.mp3", "28.mp3", "100.mp3", "128.mp3"});
    expectOrder({"clip 2.mp3", "clip 10.mp3", "clip 10b.mp3", "clip 11.mp3"});
    expectOrder({"1-2.mp3", "1-10.mp3", "2-1.mp3"});
    expectOrder({"99999999999999999999.mp3", "100000000000000000000.mp3"});
}

TEST_F(BundleTest, LetterCaseDoesNotCount) {
    expectOrder({"a.mp3", "B.mp3", "c.mp3", "D.mp3"});
    expectOrder({"clip2.mp3", "CLIP10.mp3"});
}

TEST_F(BundleTest, DigitsComeBeforeLetters) {
    expectOrder({"9.mp3", "a.mp3"});
}

TEST_F(BundleTest, AccentsCountAfterLetters) {
    expectOrder({"resume.mp3", "résumé.mp3", "resumes.mp3"});
    expectOrder({"A.mp3", "ä.mp3", "b.mp3"});
}

TEST_F(BundleTest, TiesGoByBytes) {
    expectOrder({"A.mp3", "a.mp3"});
    expectOrder({"CLIP.mp3", "Clip.mp3", "clip.mp3"});
}

TEST_F(BundleTest, LeadingZerosAreTies) {
    expectOrder({"01.mp3", "1.mp3", "02.mp3", "2.mp3", "010.mp3", "10.mp3"});
}

TEST_F(BundleTest, TheSameNameDoesNotPrecedeItself) {
    expectOrder({"1.mp3"});
    expectOrder({""});
}

TEST_F(BundleTest, InvalidUtf8IsOrderedTooAndEqualGarbageGoesByBytes) {
    expectOrder({"a\xFE.mp3", "a\xFF.mp3"});
    expectOrder({"1\x80.mp3", "2\x80.mp3", "10\x80.mp3"});
}

TEST_F(BundleTest, AnyHeapOfNamesHasOneOrder) {
    Names names = {"10.mp3",   "9.mp3", "a.mp3",  "A.mp3", "ä.mp3",  "01.mp3", "1.mp3",  "b2.mp3", "B10.mp3",
                   "\xFF.mp3", " .mp3", "-1.mp3", "_.mp3", "1a.mp3", "1.mp",   "é1.mp3", "e2.mp3"};
    std::sort(names.begin(), names.end(), bundle::precedes);
    expectOrder(names);
}

} // namespace
} // namespace quiverly
