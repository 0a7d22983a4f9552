#include "platform/bundle.h"

#include <system_error>

#import <Foundation/Foundation.h>

#include "platform/macos/foundation_text.h"

namespace quiverly {

// The bundle lists no files for a folder that is missing, as it does for an empty one.
std::optional<std::vector<std::filesystem::path>> bundle::files(std::string_view extension,
                                                                const std::filesystem::path& subfolder) {
    std::error_code unreadable;
    const char* const resources = NSBundle.mainBundle.resourceURL.fileSystemRepresentation;
    if (resources == nullptr || !std::filesystem::is_directory(resources / subfolder, unreadable)) return std::nullopt;
    NSArray<NSURL*>* const urls =
        [NSBundle.mainBundle URLsForResourcesWithExtension:foundationText(extension)
                                              subdirectory:foundationText(subfolder.native())];
    std::vector<std::filesystem::path> found;
    for (NSURL* const url in urls) found.emplace_back(url.fileSystemRepresentation);
    return found;
}

std::optional<std::filesystem::path> bundle::resource(std::string_view name, std::string_view type) {
    NSURL* const url = [NSBundle.mainBundle URLForResource:foundationText(name) withExtension:foundationText(type)];
    if (url == nil) return std::nullopt;
    return url.fileSystemRepresentation;
}

bool bundle::precedes(std::string_view a, std::string_view b) {
    return [foundationText(a) localizedStandardCompare:foundationText(b)] == NSOrderedAscending;
}

} // namespace quiverly
