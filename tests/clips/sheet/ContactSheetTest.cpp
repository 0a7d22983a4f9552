#include "clips/sheet/ContactSheet.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

#include <QGuiApplication>

#include "clips/ClipMaker.h"
#include "clips/synthesis/Oscillator.h"
#include "support/Files.h"
#include "support/TemporaryFolder.h"

namespace quiverly::clips {
namespace {

namespace fs = std::filesystem;

const fs::path committedClips = fs::path(QUIVERLY_RESOURCES) / "audio";
const fs::path clipsFolder = fs::path(QUIVERLY_RESOURCES).parent_path() / "clips";

class ContactSheetTest : public testing::Test {
protected:
    // Pictures are drawn without a display.
    static void SetUpTestSuite() {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        static char name[] = "clips-tests";
        static char* arguments[] = {name, nullptr};
        static int count = 1;
        application = std::make_unique<QGuiApplication>(count, arguments);
    }
    static void TearDownTestSuite() { application.reset(); }

    // A pack of clips that last half a second, made below the folder.
    PackRecipe tones(std::size_t count) {
        PackRecipe recipe{SoundPack::halo, {}};
        const auto tone = [](RandomNumbers&) -> Stereo { return {sine(0.5, 440), sine(0.5, 440)}; };
        for (std::size_t index = 0; index < count; ++index) {
            recipe.clips.push_back({"A tone", 1, tone});
            const auto made = makeClip(recipe, index, folder.path());
            if (!made) throw std::runtime_error(made.error());
        }
        return recipe;
    }

    const TemporaryFolder folder;

private:
    static inline std::unique_ptr<QGuiApplication> application;
};

TEST_F(ContactSheetTest, EveryThreeClipsTakeARow) {
    const QImage one = contactSheet(tones(1), folder.path()).value();
    const QImage three = contactSheet(tones(3), folder.path()).value();
    const QImage four = contactSheet(tones(4), folder.path()).value();
    EXPECT_EQ(three.size(), one.size());
    EXPECT_NE(three, one);
    EXPECT_EQ(four.width(), three.width());
    EXPECT_GT(four.height(), three.height());
}

TEST_F(ContactSheetTest, TitleAndPictureAreShown) {
    PackRecipe recipe = tones(1);
    const QImage sheet = contactSheet(recipe, folder.path()).value();
    recipe.clips[0].title = "Another tone";
    const QImage renamed = contactSheet(recipe, folder.path()).value();
    EXPECT_NE(renamed, sheet);
    const QPoint inThePicture(20, 50);
    EXPECT_EQ(sheet.pixelColor(inThePicture), QColor(242, 71, 158)); // of the waveform
}

TEST_F(ContactSheetTest, EveryPackGetsASheetAsLargeAsTheOneThatIsCommitted) {
    const fs::path sheets = folder.addFolder("sheets");
    ASSERT_TRUE(writeContactSheets(committedClips, sheets));
    for (const SoundPack pack : SoundPack::allCases) {
        const std::string name = std::string(pack.folder()) + ".png";
        const QImage made(QString::fromStdString((sheets / name).string()));
        EXPECT_FALSE(made.isNull()) << name;
        EXPECT_EQ(made.size(), QImage(QString::fromStdString((clipsFolder / "sheets" / name).string())).size()) << name;
    }
}

TEST_F(ContactSheetTest, TheMarkdownIsTheEndOfTheReadme) {
    const std::string markdown = writeContactSheets(committedClips, folder.addFolder("sheets")).value();
    EXPECT_TRUE(bytesOf(clipsFolder / "README.md").ends_with(markdown)) << markdown;
}

TEST_F(ContactSheetTest, AClipThatCannotBeReadIsNamed) {
    const PackRecipe recipe = tones(2);
    fs::remove(folder.path() / recipe.fileOf(1));
    const auto sheet = contactSheet(recipe, folder.path());
    ASSERT_FALSE(sheet);
    EXPECT_TRUE(sheet.error().starts_with((folder.path() / "halo/2.mp3").string())) << sheet.error();
}

TEST_F(ContactSheetTest, APictureThatCannotBeWrittenIsNamed) {
    const auto written = writeContactSheets(committedClips, folder.path() / "missing");
    ASSERT_FALSE(written);
    EXPECT_TRUE(written.error().starts_with((folder.path() / "missing/pain.png").string())) << written.error();
}

} // namespace
} // namespace quiverly::clips
