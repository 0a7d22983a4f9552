#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <QStandardPaths>
#include <unicode/locid.h>

#include "platform/shared/program_resources.h"
#include "platform/shared/resource_folders.h"

namespace quiverly {

namespace {

std::filesystem::path userResourceFolder() {
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return std::filesystem::path(data.toStdString()) / "quiverly";
}

// Of the environment as it is, whether or not the program has adopted it.
std::string collationLocale() {
    for (const char* variable : {"LC_ALL", "LC_COLLATE", "LANG"}) {
        const char* value = std::getenv(variable); // NOLINT(concurrency-mt-unsafe): main thread, never set here
        if (value && *value) return value;
    }
    return "C";
}

} // namespace

std::vector<std::filesystem::path> resourceFolders() {
    std::vector<std::filesystem::path> folders = programResourceFolders();
    folders.insert(folders.begin(), userResourceFolder());
    return folders;
}

// The C locale, by whichever name, means the order of bytes, in which 10 comes before 2: no order a person wants.
std::string nameOrderLocale() {
    const icu::Locale locale = icu::Locale::createCanonical(collationLocale().c_str());
    const std::string_view language = locale.isBogus() ? "" : locale.getLanguage();
    if (language.empty() || language == "c" || language == "posix") return "en";
    return icu::Locale(locale.getLanguage(), locale.getCountry()).getName(); // without a variant, such as POSIX
}

} // namespace quiverly
