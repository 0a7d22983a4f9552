#include "tools/import/UserPack.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "support/Files.h"
#include "support/TemporaryFolder.h"
#include "tools/import/sounds.h"

namespace quiverly {
namespace {

namespace fs = std::filesystem;

class UserPackTest : public testing::Test {
protected:
    const TemporaryFolder folder;
    const fs::path place = folder.path() / "audio" / "pain";
    // Longer names play later, as 10.mp3 does after 2.mp3.
    UserPack pack{place, [](std::string_view a, std::string_view b) {
                      return a.size() == b.size() ? a < b : a.size() < b.size();
                  }};

    fs::path sound(const std::string& name, double seconds) {
        return written(toneBetweenSilence(0, seconds, 0, 0.3F), folder.path() / name);
    }

    std::vector<std::string> names() const {
        std::vector<std::string> found;
        for (const fs::path& clip : pack.clips()) found.push_back(clip.filename().string());
        return found;
    }

    std::vector<std::string> besideThePack() const {
        std::vector<std::string> found;
        for (const auto& entry : fs::directory_iterator(place.parent_path())) {
            found.push_back(entry.path().filename().string());
        }
        return found;
    }

    double seconds(const std::string& name) const { return soundOf(place / name).seconds(); }
};

using Names = std::vector<std::string>;

TEST_F(UserPackTest, SoundsBecomeClipsInTheirOrder) {
    ASSERT_TRUE(pack.replace({sound("b.wav", 0.4), sound("a.wav", 0.8)}));
    EXPECT_EQ(names(), (Names{"1.mp3", "2.mp3"}));
    EXPECT_NEAR(seconds("1.mp3"), 0.4, 0.03);
    EXPECT_NEAR(seconds("2.mp3"), 0.8, 0.03);
    EXPECT_EQ(besideThePack(), Names{"pain"});
}

TEST_F(UserPackTest, TheSoundsThemselvesStayAsTheyAre) {
    const fs::path original = sound("a.wav", 0.4);
    const std::string before = bytesOf(original);
    ASSERT_TRUE(pack.replace({original}));
    EXPECT_TRUE(bytesOf(original) == before);
}

TEST_F(UserPackTest, ReplacingLeavesNothingOfTheOldClips) {
    ASSERT_TRUE(pack.replace({sound("a.wav", 0.4), sound("b.wav", 0.4)}));
    ASSERT_TRUE(pack.replace({sound("c.wav", 0.9)}));
    EXPECT_EQ(names(), Names{"1.mp3"});
    EXPECT_NEAR(seconds("1.mp3"), 0.9, 0.03);
    EXPECT_EQ(besideThePack(), Names{"pain"});
}

TEST_F(UserPackTest, WhatTheUserHasPutIntoTheFolderIsNotLost) {
    const fs::path original = sound("a.wav", 0.4);
    for (const char* const name : {"ouch.mp3", "1.wav", "1a.mp3", "notes.txt"}) {
        ASSERT_TRUE(pack.replace({original}));
        const fs::path own = folder.addFile(std::string("audio/pain/") + name, "mine");
        const std::string refusal =
            own.string() + ": This is not a clip of quiverly-import and would be lost. Move it elsewhere first.";
        EXPECT_EQ(pack.replace({original}).error(), refusal);
        EXPECT_EQ(pack.remove().error(), refusal);
        if (own.extension() != ".mp3") {
            EXPECT_EQ(pack.append({original}).error(), refusal);
        }
        EXPECT_EQ(bytesOf(own), "mine");
        fs::remove(own);
    }
    folder.addFile("audio/pain/.directory", "of a file manager");
    EXPECT_TRUE(pack.remove());
}

TEST_F(UserPackTest, AppendedSoundsFollowTheClipsThatAreThereInTheOrderInWhichThosePlay) {
    ASSERT_TRUE(pack.replace({sound("a.wav", 0.4)}));
    fs::rename(place / "1.mp3", place / "second.mp3");
    fs::copy_file(place / "second.mp3", place / "x.mp3");
    const std::string first = bytesOf(place / "x.mp3");
    ASSERT_TRUE(pack.append({sound("b.wav", 0.9)}));
    EXPECT_EQ(names(), (Names{"1.mp3", "2.mp3", "3.mp3"}));
    EXPECT_TRUE(bytesOf(place / "1.mp3") == first);
    EXPECT_NEAR(seconds("3.mp3"), 0.9, 0.03);
}

TEST_F(UserPackTest, AppendingToNothingMakesThePack) {
    ASSERT_TRUE(pack.append({sound("a.wav", 0.4)}));
    EXPECT_EQ(names(), Names{"1.mp3"});
}

TEST_F(UserPackTest, OneBadSoundLeavesTheOldClips) {
    ASSERT_TRUE(pack.replace({sound("a.wav", 0.4)}));
    const std::string before = bytesOf(place / "1.mp3");
    const fs::path bad = folder.addFile("bad.wav", "no sound");
    for (const auto& done : {pack.replace({sound("b.wav", 0.9), bad}), pack.append({sound("c.wav", 0.9), bad})}) {
        ASSERT_FALSE(done);
        EXPECT_TRUE(done.error().starts_with(bad.string() + ": ")) << done.error();
        EXPECT_EQ(names(), Names{"1.mp3"});
        EXPECT_TRUE(bytesOf(place / "1.mp3") == before);
        EXPECT_EQ(besideThePack(), Names{"pain"});
    }
}

TEST_F(UserPackTest, WhatAnInterruptedImportLeftIsNoPartOfThePackAndGoesWithTheNextImport) {
    ASSERT_TRUE(pack.replace({sound("a.wav", 0.4)}));
    folder.addFile("audio/.pain.import/7.mp3", "half a clip");
    EXPECT_EQ(names(), Names{"1.mp3"});
    ASSERT_TRUE(pack.append({sound("b.wav", 0.4)}));
    EXPECT_EQ(names(), (Names{"1.mp3", "2.mp3"}));
    EXPECT_EQ(besideThePack(), Names{"pain"});
}

TEST_F(UserPackTest, WhileAnotherImportRunsNothingChanges) {
    ASSERT_TRUE(pack.replace({sound("a.wav", 0.4)}));
    const int other = open(place.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    ASSERT_EQ(flock(other, LOCK_EX | LOCK_NB), 0);
    const std::string busy = place.parent_path().string() + ": Another import is running.";
    EXPECT_EQ(pack.replace({sound("b.wav", 0.9)}).error(), busy);
    EXPECT_EQ(pack.remove().error(), busy);
    close(other);
    EXPECT_NEAR(seconds("1.mp3"), 0.4, 0.03);
}

TEST_F(UserPackTest, ASoundThatLiesInThePackItselfIsRefused) {
    ASSERT_TRUE(pack.replace({sound("a.wav", 0.4)}));
    const auto done = pack.replace({place / ".." / "pain" / "1.mp3"});
    ASSERT_FALSE(done);
    EXPECT_TRUE(done.error().ends_with("It lies in the pack itself. Copy it elsewhere first.")) << done.error();
    EXPECT_EQ(names(), Names{"1.mp3"});
}

TEST_F(UserPackTest, OnlyVisibleMp3FilesAreClips) {
    folder.addFile("audio/pain/2.mp3");
    folder.addFile("audio/pain/10.mp3");
    folder.addFile("audio/pain/.hidden.mp3");
    folder.addFile("audio/pain/notes.txt");
    folder.addFolder("audio/pain/folder.mp3");
    EXPECT_EQ(names(), (Names{"2.mp3", "10.mp3"}));
}

TEST_F(UserPackTest, ARemovedPackIsGoneAndCannotBeRemovedAgain) {
    EXPECT_TRUE(names().empty());
    ASSERT_TRUE(pack.replace({sound("a.wav", 0.4)}));
    ASSERT_TRUE(pack.remove());
    EXPECT_FALSE(fs::exists(place));
    EXPECT_TRUE(besideThePack().empty());
    EXPECT_EQ(pack.remove().error(), place.string() + ": There is no pack of your own.");
}

TEST_F(UserPackTest, AFolderThatCannotBeMadeIsNamed) {
    folder.addFile("audio");
    const auto done = pack.replace({sound("a.wav", 0.4)});
    ASSERT_FALSE(done);
    EXPECT_TRUE(done.error().starts_with(place.parent_path().string() + ": ")) << done.error();
}

} // namespace
} // namespace quiverly
