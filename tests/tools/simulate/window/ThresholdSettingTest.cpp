#include "tools/simulate/window/ThresholdSetting.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include <QTest>

#include "support/TemporaryFolder.h"

namespace quiverly {
namespace {

class ThresholdSettingTest : public testing::Test {
protected:
    QString name() const { return QString::fromStdString(file.string()); }

    // Replaces the file as a whole, as the application does.
    void store(const std::string& content) const {
        std::filesystem::create_directories(file.parent_path());
        const auto fresh = file.string() + ".new";
        std::ofstream(fresh) << content;
        std::filesystem::rename(fresh, file);
    }

    const TemporaryFolder folder;
    const std::filesystem::path file = folder.path() / "quiverly" / "settings.json";
};

TEST_F(ThresholdSettingTest, WithoutSettingsItIsTheDefault) {
    EXPECT_EQ(ThresholdSetting(name()).value(), 0.12);
    for (const char* content : {"", "{}", "[]", "nonsense", R"({"bonko.threshold": "0.3"})"}) {
        store(content);
        EXPECT_EQ(ThresholdSetting(name()).value(), 0.12) << content;
    }
}

TEST_F(ThresholdSettingTest, ItIsWhatTheSettingsHold) {
    store(R"({"bonko.threshold": 0.31})");
    EXPECT_EQ(ThresholdSetting(name()).value(), 0.31);
}

TEST_F(ThresholdSettingTest, ItFollowsTheFileFromBeforeItIsThere) {
    ThresholdSetting setting(name());
    double told = 0;
    setting.onChange = [&](double threshold) { told = threshold; };
    for (const double threshold : {0.2, 0.25, 0.3}) {
        store(R"({"bonko.threshold": )" + std::to_string(threshold) + "}");
        EXPECT_TRUE(QTest::qWaitFor([&] { return told == threshold; }, 60'000)) << threshold;
        EXPECT_EQ(setting.value(), threshold);
    }
}

} // namespace
} // namespace quiverly
