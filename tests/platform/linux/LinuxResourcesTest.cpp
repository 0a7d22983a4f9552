#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <unicode/locid.h>
#include <unicode/uclean.h>
#include <unicode/udata.h>

#include "platform/bundle.h"
#include "platform/shared/program_resources.h"
#include "platform/shared/resource_folders.h"
#include "support/Environment.h"
#include "support/OtherProcess.h"
#include "support/TemporaryFolder.h"

namespace quiverly {
namespace {

namespace fs = std::filesystem;

class LinuxResourcesTest : public testing::Test {
protected:
    LinuxResourcesTest() {
        setVariable("XDG_DATA_HOME", home.path().c_str());
        for (const char* variable : {"LC_ALL", "LC_COLLATE", "LC_MESSAGES", "LANG"}) setVariable(variable, nullptr);
    }

    const TemporaryFolder home;
};

TEST_F(LinuxResourcesTest, TheUsersFolderComesBeforeThoseOfTheProgram) {
    auto expected = programResourceFolders();
    ASSERT_EQ(expected.size(), 2U);
    expected.insert(expected.begin(), home.path() / "quiverly");
    EXPECT_EQ(resourceFolders(), expected);
}

TEST_F(LinuxResourcesTest, WithoutADataFolderTheUsersOwnIsTaken) {
    setVariable("HOME", home.path().c_str());
    for (const char* none : {"", static_cast<const char*>(nullptr)}) {
        setVariable("XDG_DATA_HOME", none);
        EXPECT_EQ(resourceFolders().front(), home.path() / ".local" / "share" / "quiverly");
    }
}

TEST_F(LinuxResourcesTest, AUsersPackReplacesTheWholePackOfTheProgram) {
    const auto before = bundle::files("mp3", "audio/pain");
    ASSERT_TRUE(before);
    EXPECT_GE(before->size(), 3U);
    home.addFile("quiverly/audio/pain/own.mp3");
    EXPECT_EQ(bundle::files("mp3", "audio/pain"), std::vector{home.path() / "quiverly/audio/pain/own.mp3"});
    EXPECT_GE(bundle::files("mp3", "audio/sexy")->size(), 3U); // the other packs stay
}

TEST_F(LinuxResourcesTest, APackMayLieBesideTheAudioFolder) {
    home.addFile("quiverly/own/1.mp3");
    EXPECT_EQ(bundle::files("mp3", "audio/own"), std::nullopt);
    EXPECT_EQ(bundle::files("mp3", "own"), std::vector{home.path() / "quiverly/own/1.mp3"});
}

TEST_F(LinuxResourcesTest, NamesAreOrderedInTheUsersLocale) {
    EXPECT_EQ(nameOrderLocale(), "en");
    setVariable("LANG", "de_DE.UTF-8");
    EXPECT_EQ(nameOrderLocale(), "de_DE");
    setVariable("LC_COLLATE", "sv_SE.UTF-8@euro");
    EXPECT_EQ(nameOrderLocale(), "sv_SE");
    setVariable("LC_ALL", "");
    EXPECT_EQ(nameOrderLocale(), "sv_SE");
    setVariable("LC_ALL", "cs_CZ");
    EXPECT_EQ(nameOrderLocale(), "cs_CZ");
}

TEST_F(LinuxResourcesTest, TheLocaleOfByteOrderIsReplacedByEnglish) {
    for (const char* locale : {"C", "POSIX", "C.UTF-8", "C.utf8", "no such locale", "@"}) {
        setVariable("LC_ALL", locale);
        EXPECT_EQ(nameOrderLocale(), "en") << locale;
    }
    setVariable("LC_ALL", "en_US_POSIX.UTF-8");
    EXPECT_EQ(nameOrderLocale(), "en_US");
}

TEST_F(LinuxResourcesTest, TenComesAfterTwoInEveryLocale) {
    for (const char* locale :
         {"", "C", "POSIX", "C.UTF-8", "en_US_POSIX", "de_DE.UTF-8", "tlh", "no such locale", "@", "\xff\xfe"}) {
        setVariable("LC_ALL", locale);
        const OtherProcess process([&] {
            EXPECT_TRUE(bundle::precedes("2.mp3", "10.mp3")) << locale;
            EXPECT_FALSE(bundle::precedes("10.mp3", "2.mp3")) << locale;
            EXPECT_TRUE(bundle::precedes("a.mp3", "B.mp3")) << locale;
        });
    }
}

// ICU must not read it from the environment itself.
TEST_F(LinuxResourcesTest, AMalformedLocaleIsNotPassedToTheLibrary) {
    for (const std::string& locale : {std::string("no such locale"), std::string(200, 'a'), std::string("en@a=b;c")}) {
        for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) setVariable(variable, locale.c_str());
        const OtherProcess process([&] {
            EXPECT_TRUE(bundle::precedes("2.mp3", "10.mp3")) << locale;
            EXPECT_STREQ(icu::Locale::getDefault().getName(), "en") << locale;
        });
    }
}

// ICU prefers a file of that folder to its own data, and this one holds no rules.
TEST_F(LinuxResourcesTest, WithoutDataToOrderByNamesAreInTheOrderOfBytes) {
    const struct {
        std::uint16_t size;
        std::uint8_t magic[2];
        UDataInfo info;
    } head = {.size = sizeof head,
              .magic = {0xda, 0x27},
              .info = {.size = sizeof head.info,
                       .reservedWord = 0,
                       .isBigEndian = U_IS_BIG_ENDIAN,
                       .charsetFamily = U_CHARSET_FAMILY,
                       .sizeofUChar = U_SIZEOF_UCHAR,
                       .reservedByte = 0,
                       .dataFormat = {'U', 'C', 'o', 'l'},
                       .formatVersion = {5},
                       .dataVersion = {}}};
    const std::string nothing(64, '\0');
    home.addFile(fs::path(U_ICUDATA_NAME) / "coll" / "ucadata.icu",
                 std::string(reinterpret_cast<const char*>(&head), sizeof head) + nothing);
    setVariable("ICU_DATA", home.path().c_str());
    const OtherProcess process([] {
        u_cleanup(); // it may have looked for its data before
        EXPECT_TRUE(bundle::precedes("10.mp3", "2.mp3"));
        EXPECT_FALSE(bundle::precedes("2.mp3", "10.mp3"));
    });
    setVariable("ICU_DATA", nullptr);
}

TEST_F(LinuxResourcesTest, SwedesPutTheirLettersLast) {
    setVariable("LC_ALL", "sv_SE.UTF-8");
    const OtherProcess swedish([] { EXPECT_TRUE(bundle::precedes("z", "ä")); });
    setVariable("LC_ALL", "de_DE.UTF-8");
    const OtherProcess german([] { EXPECT_TRUE(bundle::precedes("ä", "z")); });
}

} // namespace
} // namespace quiverly
