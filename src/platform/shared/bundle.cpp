#include "platform/bundle.h"

#include <memory>
#include <string>
#include <system_error>

#include <unicode/coll.h>
#include <unicode/locid.h>

#include "platform/shared/resource_folders.h"

namespace quiverly::bundle {

namespace {

namespace fs = std::filesystem;

bool isVisibleFile(const fs::directory_entry& entry, const std::string& suffix) {
    std::error_code unreadable;
    const std::string name = entry.path().filename().string();
    return !name.starts_with('.') && name.ends_with(suffix) && entry.is_regular_file(unreadable);
}

std::vector<fs::path> filesOf(const fs::path& folder, const std::string& suffix) {
    std::vector<fs::path> found;
    std::error_code unreadable;
    for (fs::directory_iterator entry(folder, unreadable), end; entry != end; entry.increment(unreadable)) {
        if (isVisibleFile(*entry, suffix)) found.push_back(entry->path());
    }
    return found;
}

// None when the library has not the data for any.
std::unique_ptr<icu::Collator> makeCollator() {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Locale locale(nameOrderLocale().c_str());
    // Without it ICU takes its default from the environment, and ICU 76 crashes when that names a malformed locale.
    icu::Locale::setDefault(locale, status);
    std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(locale, status));
    if (collator) {
        collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status);
        collator->setStrength(icu::Collator::SECONDARY); // accents count, case does not
    }
    if (U_FAILURE(status)) collator.reset();
    return collator;
}

} // namespace

std::optional<std::vector<fs::path>> files(std::string_view extension, const fs::path& subfolder) {
    for (const fs::path& root : resourceFolders()) {
        std::error_code unreadable;
        if (fs::is_directory(root / subfolder, unreadable)) {
            return filesOf(root / subfolder, '.' + std::string(extension));
        }
    }
    return std::nullopt;
}

std::optional<fs::path> resource(std::string_view name, std::string_view type) {
    const std::string file = std::string(name) + '.' + std::string(type);
    for (const fs::path& root : resourceFolders()) {
        std::error_code unreadable;
        if (fs::is_regular_file(root / file, unreadable)) return root / file;
    }
    return std::nullopt;
}

bool precedes(std::string_view a, std::string_view b) {
    static const std::unique_ptr<icu::Collator> collator = makeCollator();
    if (!collator) return a < b;
    const auto piece = [](std::string_view name) {
        return icu::StringPiece(name.data(), static_cast<std::int32_t>(name.size()));
    };
    UErrorCode status = U_ZERO_ERROR;
    const UCollationResult result = collator->compareUTF8(piece(a), piece(b), status);
    return result == UCOL_EQUAL ? a < b : result == UCOL_LESS;
}

} // namespace quiverly::bundle
