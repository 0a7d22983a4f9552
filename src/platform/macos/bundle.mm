#include "platform/bundle.h"

#import <Foundation/Foundation.h>

#include "platform/macos/foundation_text.h"

namespace quiverly {

std::optional<std::vector<std::filesystem::path>> bundle::files(std::string_view extension,
                                                                const std::filesystem::path& subfolder) {
    NSArray<NSURL*>* const urls =
        [NSBundle.mainBundle URLsForResourcesWithExtension:foundationText(extension)
                                              subdirectory:foundationText(subfolder.native())];
    if (urls == nil) return std::nullopt;
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
