#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <tl/expected.hpp>

namespace quiverly {

// The user's own clips of one pack: a folder of MP3s beside those of the other packs, which replaces the clips that
// came with the program. Changes are made beside the folder, which then is exchanged in one step, so that a change that
// fails or is interrupted leaves the old clips. A change that would lose a file with another name than those of the
// clips made here fails; hidden files do not count. Reasons for failures are sentences for the user.
class UserPack {
public:
    // The order in which clips play, by file name.
    using Order = std::function<bool(std::string_view, std::string_view)>;

    UserPack(std::filesystem::path folder, Order precedes);

    const std::filesystem::path& folder() const { return place; }

    // In the order in which they play; empty when the user has none.
    std::vector<std::filesystem::path> clips() const;

    // The sounds, in their order, as 1.mp3, 2.mp3 and so on, in the place of the clips that are there or after them.
    // The sounds themselves stay untouched; none may lie in the folder.
    tl::expected<void, std::string> replace(const std::vector<std::filesystem::path>& sounds);
    tl::expected<void, std::string> append(const std::vector<std::filesystem::path>& sounds);

    // Removes the folder.
    tl::expected<void, std::string> remove();

private:
    tl::expected<void, std::string> checkForOthers(const std::vector<std::filesystem::path>& kept) const;
    tl::expected<void, std::string> change(const std::vector<std::filesystem::path>& kept,
                                           const std::vector<std::filesystem::path>& sounds);

    std::filesystem::path place;
    std::filesystem::path stage; // a hidden folder beside it, where clips are made
    Order precedes;
};

} // namespace quiverly
