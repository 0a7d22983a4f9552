#include "platform/workspace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include <QString>
#include <QUrl>

#include "platform/shared/program_resources.h"
#include "support/Environment.h"
#include "support/FakeSystem.h"
#include "support/Files.h"
#include "support/OtherProcess.h"
#include "support/TemporaryFolder.h"

namespace quiverly {
namespace {

namespace fs = std::filesystem;

class WorkspaceTest : public testing::Test {
protected:
    WorkspaceTest() {
        setVariable("XDG_DATA_HOME", home.path().c_str());
        setVariable("XDG_RUNTIME_DIR", home.path().c_str()); // there is no simulated laptop
        setVariable("XDG_CACHE_HOME", (home.path() / "cache").c_str());
    }

    // Pages cannot be written from now on.
    void forbidWriting() const { setVariable("XDG_CACHE_HOME", "/dev/null"); }

    static std::string shownPage() {
        return QUrl(QString::fromStdString(workspace::sensorAccessPage().value_or(""))).toLocalFile().toStdString();
    }

    const TemporaryFolder home;
    const FakeSystem system;
};

TEST_F(WorkspaceTest, ThereIsASensorPageWhenTheProgramHasItsFile) {
    forbidWriting();
    const fs::path file = programResourceFolders().back() / "motion-sensor.html";
    EXPECT_EQ(shownPage(), fs::exists(file) ? file.string() : "");
}

TEST_F(WorkspaceTest, TheProgramHasTheFileOfTheSensorPageWhereItWasBuiltButNotElsewhere) {
    EXPECT_TRUE(fs::is_regular_file(programResourceFolders().back() / "motion-sensor.html"));
    const fs::path program = home.addFolder("bin") / "copy";
    fs::copy_file("/proc/self/exe", program);
    const OtherProcess copy([&] {
        ::execl(program.c_str(), program.c_str(), "--gtest_filter=*ThereIsASensorPageWhenTheProgramHasItsFile",
                nullptr);
    });
}

TEST_F(WorkspaceTest, TheSensorPageSaysWhatIsWrongOnThisMachine) {
    system.addAccelerometer(0, "st-accel-i2c");
    const std::string page = shownPage();
    EXPECT_EQ(page, (home.path() / "cache/quiverly/motion-sensor.html").string());
    EXPECT_THAT(bytesOf(page), testing::HasSubstr("This machine has a sensor that is too slow"));
    EXPECT_THAT(bytesOf(page), testing::HasSubstr("What to press next"));
}

TEST_F(WorkspaceTest, TheSensorPageIsWrittenAnewEachTime) {
    shownPage();
    system.addAccelerometer(0, "st-accel-i2c");
    EXPECT_THAT(bytesOf(shownPage()), testing::HasSubstr("is too slow"));
}

TEST_F(WorkspaceTest, WhereItCannotBeWrittenTheShippedSensorPageIsShownFromTheDocumentsThatBrowsersMayRead) {
    forbidWriting();
    const fs::path file = home.addFile("quiverly/motion-sensor.html");
    EXPECT_EQ(shownPage(), file.string());
    const fs::path copy = home.addFile("doc/quiverly/motion-sensor.html");
    EXPECT_EQ(shownPage(), copy.string());
}

TEST_F(WorkspaceTest, TheAddressOfTheSensorPageSurvivesAnyFolderName) {
    for (const std::string name : {"a b", "50%25", "#1?x=y&z", "Žluť", "semi;colon"}) {
        setVariable("XDG_CACHE_HOME", (home.path() / name).c_str());
        EXPECT_EQ(shownPage(), (home.path() / name / "quiverly/motion-sensor.html").string());
    }
}

} // namespace
} // namespace quiverly
