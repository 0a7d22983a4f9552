#include "platform/defaults.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <functional>
#include <iterator>
#include <limits>
#include <list>
#include <optional>
#include <string>
#include <utility>

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>

#include "sockets/FileDescriptor.h"
#include "support/AnotherUser.h"
#include "support/Environment.h"
#include "support/Files.h"
#include "support/OtherProcess.h"
#include "support/TemporaryFolder.h"
#include "support/Waiting.h"

namespace quiverly {
namespace {

namespace fs = std::filesystem;

// The settings of processes, each with an application of its own; this process itself has none.
class LinuxDefaultsTest : public testing::Test {
protected:
    LinuxDefaultsTest() { setVariable("XDG_CONFIG_HOME", home.path().c_str()); }

    // What an application does with its settings, until it ends.
    static std::function<void()> application(std::function<void()> actions) {
        return [actions = std::move(actions)] {
            int count = 1;
            char name[] = "test";
            char* arguments[] = {name, nullptr};
            const QCoreApplication application(count, arguments);
            actions();
        };
    }

    static void inAProcess(const std::function<void()>& actions) { const OtherProcess process(application(actions)); }

    // Of an ordinary user who owns the files.
    void inAProcessOfAnOrdinaryUser(const std::function<void()>& actions) const {
        another_user::give(home.path());
        another_user::act(application(actions));
    }

    // The lock of a process that stores. Processes that are started keep it too: release it by LOCK_UN.
    FileDescriptor lockAsAnotherProcess() const {
        FileDescriptor folder(::open(file.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        EXPECT_EQ(::flock(folder.get(), LOCK_EX | LOCK_NB), 0);
        return folder;
    }

    std::optional<std::string> packInFile() const {
        const auto pack = QJsonDocument::fromJson(QByteArray::fromStdString(bytesOf(file))).object()["bonko.pack"];
        return pack.isString() ? std::optional(pack.toString().toStdString()) : std::nullopt;
    }

    static unsigned modeOf(const fs::path& path) { return static_cast<unsigned>(fs::status(path).permissions()); }

    void store(const std::string& content) const { home.addFile("quiverly/settings.json", content); }

    static std::optional<double> number(const char* key) {
        const auto stored = defaults::object(key);
        const double* number = stored ? std::get_if<double>(&*stored) : nullptr;
        return number ? std::optional(*number) : std::nullopt;
    }

    static void writeHalo() { defaults::setText("bonko.pack", "halo"); }
    static void expectHalo() { EXPECT_EQ(defaults::text("bonko.pack"), "halo"); }
    static void expectNoPack() { EXPECT_EQ(defaults::text("bonko.pack"), std::nullopt); }

    const TemporaryFolder home;
    const fs::path file = home.path() / "quiverly" / "settings.json";
    const fs::path aside = home.path() / "quiverly" / "settings.json.unreadable";
};

TEST_F(LinuxDefaultsTest, AnEmptyStoreHoldsNothingAndIsNotWritten) {
    inAProcess([] {
        EXPECT_FALSE(defaults::text("bonko.pack"));
        EXPECT_FALSE(defaults::object("bonko.threshold"));
    });
    EXPECT_TRUE(fs::is_empty(home.path()));
}

TEST_F(LinuxDefaultsTest, AWriteIsReadAtOnce) {
    inAProcess([] {
        writeHalo();
        expectHalo();
        defaults::setNumber("bonko.threshold", 0.25);
        EXPECT_EQ(number("bonko.threshold"), 0.25);
        defaults::setText("bonko.threshold", "0.25");
        EXPECT_EQ(number("bonko.threshold"), std::nullopt);
        EXPECT_EQ(defaults::text("bonko.threshold"), "0.25");
    });
}

TEST_F(LinuxDefaultsTest, ASecondProcessReadsTextAsText) {
    const std::string texts[] = {"halo",         "", "0.2", "true", "null", "[1]", "\"quoted\" \\ \n", "Žluť 🐎",
                                 "@ByteArray(x)"};
    for (const std::string& text : texts) {
        inAProcess([&] { defaults::setText("key", text); });
        inAProcess([&] {
            EXPECT_EQ(defaults::text("key"), text);
            EXPECT_EQ(number("key"), std::nullopt);
        });
    }
}

TEST_F(LinuxDefaultsTest, ASecondProcessReadsTheVeryNumber) {
    using Limits = std::numeric_limits<double>;
    for (const double value : {0.12, 3.0, 0.0, -1.5, 0.1 + 0.2, 1e300, Limits::max(), Limits::denorm_min(), 1.0 / 3}) {
        inAProcess([&] { defaults::setNumber("key", value); });
        inAProcess([&] {
            EXPECT_EQ(number("key"), value);
            EXPECT_EQ(defaults::text("key"), std::nullopt);
        });
    }
}

TEST_F(LinuxDefaultsTest, AValueThatIsNeitherNumberNorTextIsAnotherObject) {
    store(R"({"yes": true, "none": null, "list": [0.2], "group": {"pack": "halo"}, "three": 3, "digits": "0.2"})");
    inAProcess([] {
        for (const char* key : {"yes", "none", "list", "group"}) {
            const auto stored = defaults::object(key);
            ASSERT_TRUE(stored) << key;
            EXPECT_TRUE(std::holds_alternative<defaults::OtherObject>(*stored)) << key;
            EXPECT_FALSE(defaults::text(key)) << key;
        }
        EXPECT_EQ(number("three"), 3.0);
        EXPECT_EQ(defaults::text("digits"), "0.2");
        EXPECT_EQ(number("digits"), std::nullopt);
    });
}

TEST_F(LinuxDefaultsTest, AWriteReachesTheDiskInTheNextTurnOfTheEventLoop) {
    inAProcess([] {
        writeHalo();
        QCoreApplication::processEvents();
        ::_exit(HasFailure() ? 1 : 0); // nothing tidies up
    });
    inAProcess(expectHalo);
}

TEST_F(LinuxDefaultsTest, TheLastWriteReachesTheDiskWhenTheApplicationEnds) {
    inAProcess([] {
        qAddPostRoutine([] { ::_exit(HasFailure() ? 1 : 0); }); // runs after the store's own, which was added later
        writeHalo();
    });
    inAProcess(expectHalo);
}

TEST_F(LinuxDefaultsTest, UnknownSettingsSurviveAWrite) {
    const std::string unknown = R"("a": true, "": null, "b/c": [1, "x", {"y": []}], "/d": {"e": 9007199254740993},)"
                                R"("bonko.future": 1e-7, "f\u0000g": "\u0000")";
    store("{" + unknown + "}");
    inAProcess(writeHalo);
    const auto expected =
        QJsonDocument::fromJson(QByteArray::fromStdString("{" + unknown + R"(,"bonko.pack":"halo"})"));
    EXPECT_EQ(QJsonDocument::fromJson(QByteArray::fromStdString(bytesOf(file))), expected) << bytesOf(file);
}

TEST_F(LinuxDefaultsTest, AnEmptyOrBlankFileIsAnEmptyStore) {
    for (const char* content : {"", " \n\t\r\n", "{}"}) {
        store(content);
        inAProcess([] {
            expectNoPack();
            writeHalo();
        });
        inAProcess(expectHalo);
        EXPECT_FALSE(fs::exists(aside));
    }
}

struct Unreadable {
    std::string name;
    std::string content;

    friend void PrintTo(const Unreadable& file, std::ostream* stream) { *stream << file.name; }
};

class UnreadableDefaultsTest : public LinuxDefaultsTest, public testing::WithParamInterface<Unreadable> {};

TEST_P(UnreadableDefaultsTest, IsAnEmptyStoreLeftAloneUntilItIsReplacedThenSetAside) {
    const std::string content = GetParam().content;
    store(content);
    inAProcess(expectNoPack);
    EXPECT_EQ(bytesOf(file), content);
    EXPECT_FALSE(fs::exists(aside));

    inAProcess(writeHalo);
    inAProcess(expectHalo);
    EXPECT_EQ(bytesOf(aside), content);
}

INSTANTIATE_TEST_SUITE_P(
    Files, UnreadableDefaultsTest,
    testing::Values(Unreadable{"Truncated", R"({"bonko.pack": "pain", "bonko.thr)"},
                    Unreadable{"OtherFormat", "[General]\nbonko.pack=pain\n"}, Unreadable{"List", "[]"},
                    Unreadable{"Number", "3"}, Unreadable{"Null", "null"}, Unreadable{"Text", R"("pain")"},
                    Unreadable{"NumberTooGreat", R"({"bonko.pack": "pain", "bonko.threshold": 1e999})"},
                    Unreadable{"Zeros", std::string(64, '\0')}, Unreadable{"Garbage", "\xff\xfe{}\x80"},
                    Unreadable{"Surplus", R"({"bonko.pack": "pain"} extra)"},
                    Unreadable{"Deep", std::string(5'000, '[')},
                    Unreadable{"Huge", R"({"bonko.pack": "pain"})" + std::string(2 << 20, ' ')}));

TEST_F(LinuxDefaultsTest, EveryUnreadableFileIsKept) {
    for (const char* content : {"first", "second", "third"}) {
        store(content);
        inAProcess(writeHalo);
    }
    EXPECT_EQ(bytesOf(aside), "first");
    EXPECT_EQ(bytesOf(aside.string() + ".2"), "second");
    EXPECT_EQ(bytesOf(aside.string() + ".3"), "third");
}

TEST_F(LinuxDefaultsTest, AFileThatMayNotBeWrittenStaysAndTheRunKeepsItsValues) {
    store(R"({"bonko.pack": "pain"})");
    fs::permissions(file, fs::perms::owner_read);
    inAProcessOfAnOrdinaryUser([] {
        EXPECT_EQ(defaults::text("bonko.pack"), "pain");
        writeHalo();
        QCoreApplication::processEvents();
        expectHalo();
    });
    EXPECT_EQ(bytesOf(file), R"({"bonko.pack": "pain"})");
}

TEST_F(LinuxDefaultsTest, AFileThatMayNotBeReadStaysAndTheRunKeepsItsValues) {
    store(R"({"bonko.pack": "pain"})");
    fs::permissions(file, fs::perms::none);
    inAProcessOfAnOrdinaryUser([] {
        expectNoPack();
        writeHalo();
        QCoreApplication::processEvents();
        expectHalo();
    });
    fs::permissions(file, fs::perms::owner_read);
    EXPECT_EQ(bytesOf(file), R"({"bonko.pack": "pain"})");
}

TEST_F(LinuxDefaultsTest, AFolderThatMayNotBeWrittenStaysAndTheRunKeepsItsValues) {
    for (const std::string content : {"{\"bonko.pack\": \"pain\"}", "no settings"}) {
        store(content);
        fs::permissions(file.parent_path(), fs::perms::owner_read | fs::perms::owner_exec);
        inAProcessOfAnOrdinaryUser([] {
            writeHalo();
            QCoreApplication::processEvents();
            expectHalo();
        });
        EXPECT_EQ(bytesOf(file), content);
        EXPECT_EQ(std::distance(fs::directory_iterator(file.parent_path()), {}), 1);
        fs::permissions(file.parent_path(), fs::perms::owner_all);
    }
}

TEST_F(LinuxDefaultsTest, WhatAFolderDidNotTakeIsStoredWithTheNextChangeOrAtTheEnd) {
    store("{}");
    fs::permissions(file.parent_path(), fs::perms::owner_read | fs::perms::owner_exec);
    for (const bool changesAgain : {true, false}) {
        inAProcessOfAnOrdinaryUser([&] {
            fs::permissions(file.parent_path(), fs::perms::owner_read | fs::perms::owner_exec);
            defaults::setText("bonko.pack", changesAgain ? "halo" : "pain");
            QCoreApplication::processEvents();
            fs::permissions(file.parent_path(), fs::perms::owner_all);
            if (!changesAgain) return;
            defaults::setNumber("bonko.threshold", 0.3);
            QCoreApplication::processEvents();
            EXPECT_EQ(packInFile(), "halo");
        });
        EXPECT_EQ(packInFile(), changesAgain ? "halo" : "pain");
    }
}

TEST_F(LinuxDefaultsTest, AFolderThatCannotBeMadeLeavesTheRunItsValues) {
    home.addFile("quiverly", "not a folder");
    inAProcess([] {
        expectNoPack();
        writeHalo();
        QCoreApplication::processEvents();
        expectHalo();
    });
    EXPECT_EQ(bytesOf(home.path() / "quiverly"), "not a folder");
}

TEST_F(LinuxDefaultsTest, OnAFullDiskNothingIsLostAndTheNextWriteWithRoomTakesAll) {
    for (const std::string content : {"{\"bonko.pack\": \"pain\"}", "no settings"}) {
        store(content);
        inAProcess([&] {
            std::signal(SIGXFSZ, SIG_IGN);
            rlimit full{};
            ::getrlimit(RLIMIT_FSIZE, &full);
            const rlimit room = full;
            full.rlim_cur = 0;
            ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &full), 0);
            writeHalo();
            QCoreApplication::processEvents();
            expectHalo();
            EXPECT_EQ(bytesOf(fs::exists(file) ? file : aside), content);

            ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &room), 0);
            defaults::setNumber("bonko.threshold", 0.3);
        });
        inAProcess([] {
            expectHalo();
            EXPECT_EQ(number("bonko.threshold"), 0.3);
        });
    }
    EXPECT_EQ(bytesOf(aside), "no settings");
}

TEST_F(LinuxDefaultsTest, SomethingElseInPlaceOfTheFileIsLeftAloneAndDelaysNothing) {
    const auto run = [] {
        expectNoPack();
        writeHalo();
        QCoreApplication::processEvents();
        expectHalo();
    };
    fs::create_directories(file);
    inAProcess(run);
    EXPECT_TRUE(fs::is_directory(file));

    fs::remove(file);
    ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
    inAProcess(run);
    EXPECT_TRUE(fs::is_fifo(file));
}

TEST_F(LinuxDefaultsTest, ALinkStaysALink) {
    home.addFolder("quiverly");
    for (const std::string content : {"{}", "no settings"}) {
        const fs::path target = home.addFile("dotfiles.json", content);
        fs::remove(file);
        fs::create_symlink(target, file);
        inAProcess(writeHalo);
        inAProcess(expectHalo);
        EXPECT_TRUE(fs::is_symlink(file));
        EXPECT_NE(bytesOf(target).find("halo"), std::string::npos);
    }
    EXPECT_EQ(bytesOf(home.path() / "dotfiles.json.unreadable"), "no settings");
}

TEST_F(LinuxDefaultsTest, TwoProcessesKeepEachOthersValues) {
    const fs::path loaded = home.path() / "loaded";
    const fs::path written = home.path() / "written";
    {
        const OtherProcess first(application([&] {
            expectNoPack();
            home.addFile("loaded");
            waitUntil([&] { return fs::exists(written); });
            defaults::setNumber("bonko.threshold", 0.3);
        }));
        waitUntil([&] { return fs::exists(loaded); });
        inAProcess(writeHalo);
        home.addFile("written");
    }
    inAProcess([] {
        expectHalo();
        EXPECT_EQ(number("bonko.threshold"), 0.3);
    });
}

TEST_F(LinuxDefaultsTest, ManyProcessesAtOnceLoseNothing) {
    store("{}");
    {
        std::list<OtherProcess> processes;
        for (int process = 0; process < 4; ++process) {
            processes.emplace_back(application([this, process] {
                for (int write = 0; write < 20; ++write) {
                    defaults::setNumber((std::to_string(process) + '.' + std::to_string(write)).c_str(), write);
                    QCoreApplication::processEvents();
                }
                const std::string last = '"' + std::to_string(process) + ".19\"";
                waitUntil([&] {
                    QCoreApplication::processEvents();
                    return bytesOf(file).find(last) != std::string::npos;
                });
            }));
        }
    }
    inAProcess([] {
        for (int process = 0; process < 4; ++process) {
            for (int write = 0; write < 20; ++write) {
                EXPECT_EQ(number((std::to_string(process) + '.' + std::to_string(write)).c_str()), write);
            }
        }
    });
}

TEST_F(LinuxDefaultsTest, AValueThatIsAlreadyStoredIsNotWrittenAgain) {
    store(R"({"bonko.pack": "halo", "bonko.threshold": 0.3})");
    const fs::path link = home.path() / "link";
    fs::create_hard_link(file, link);
    inAProcess([] {
        writeHalo();
        defaults::setNumber("bonko.threshold", 0.3);
    });
    EXPECT_TRUE(fs::equivalent(file, link)) << "the file was replaced";
    inAProcess([] { defaults::setNumber("bonko.threshold", 0.31); });
    EXPECT_FALSE(fs::equivalent(file, link));
}

TEST_F(LinuxDefaultsTest, WhileAnotherProcessStoresAChangeWaitsAndTheProcessDoesNot) {
    store(R"({"bonko.pack": "pain"})");
    const FileDescriptor lock = lockAsAnotherProcess();
    const OtherProcess process(application([&] {
        EXPECT_EQ(defaults::text("bonko.pack"), "pain");
        writeHalo();
        QCoreApplication::processEvents();
        expectHalo();
        EXPECT_EQ(packInFile(), "pain");
        home.addFile("asked");
        waitUntil([&] {
            QCoreApplication::processEvents();
            return packInFile() == "halo";
        });
    }));
    waitUntil([&] { return fs::exists(home.path() / "asked"); });
    EXPECT_EQ(::flock(lock.get(), LOCK_UN), 0);
}

TEST_F(LinuxDefaultsTest, AProcessThatNeverEndsStoringKeepsNoOtherFromEnding) {
    store(R"({"bonko.pack": "pain"})");
    const FileDescriptor lock = lockAsAnotherProcess();
    inAProcess(writeHalo);
    EXPECT_EQ(packInFile(), "pain");
}

TEST_F(LinuxDefaultsTest, ALockFileThatAnotherProgramLeftHoldsNothingUp) {
    store("{}");
    const fs::path lock = home.addFile("quiverly/settings.json.lock");
    const OtherProcess process(application(writeHalo));
    waitUntil([&] {
        fs::last_write_time(lock, fs::file_time_type::clock::now()); // never old enough to be broken
        return packInFile() == "halo";
    });
}

TEST_F(LinuxDefaultsTest, AProcessKilledWhileItStoresLeavesAllSettingsAndHoldsNothingUp) {
    store(R"({"bonko.pack": "halo", "count": 0})");
    for (int kill = 0; kill < 50; ++kill) {
        const std::string before = bytesOf(file);
        const pid_t process = ::fork();
        if (process == 0) {
            application([] {
                for (double count = *number("count");;) {
                    defaults::setNumber("count", ++count);
                    QCoreApplication::processEvents();
                }
            })();
        }
        waitUntil([&] { return bytesOf(file) != before; });
        ASSERT_EQ(::kill(process, SIGKILL), 0);
        ASSERT_EQ(::waitpid(process, nullptr, 0), process);
        const std::string left = bytesOf(file);
        inAProcess([] {
            expectHalo();
            EXPECT_GT(number("count").value_or(0), 0);
            defaults::setNumber("count", 0);
            QCoreApplication::processEvents();
        });
        EXPECT_NE(bytesOf(file), left) << "not stored at once";
        EXPECT_FALSE(fs::exists(aside));
    }
}

TEST_F(LinuxDefaultsTest, FolderAndFileAreClosedToOthers) {
    const mode_t former = ::umask(0);
    inAProcess(writeHalo);
    EXPECT_EQ(modeOf(file.parent_path()), 0700U);
    EXPECT_EQ(modeOf(file), 0600U);

    fs::permissions(file, fs::perms(0644));
    fs::permissions(file.parent_path(), fs::perms(0755));
    inAProcess([] { defaults::setText("bonko.pack", "pain"); });
    EXPECT_EQ(modeOf(file.parent_path()), 0700U);
    EXPECT_EQ(modeOf(file), 0600U);
    ::umask(former);
}

TEST_F(LinuxDefaultsTest, WithoutAConfigurationFolderTheUsersOwnIsTaken) {
    setVariable("XDG_CONFIG_HOME", nullptr);
    setVariable("HOME", home.path().c_str());
    inAProcess(writeHalo);
    EXPECT_TRUE(fs::exists(home.path() / ".config" / "quiverly" / "settings.json"));
}

} // namespace
} // namespace quiverly
