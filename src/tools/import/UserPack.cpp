#include "tools/import/UserPack.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <system_error>
#include <utility>

#include "tools/import/ImportedSound.h"

namespace quiverly {

namespace {

namespace fs = std::filesystem;

using Outcome = tl::expected<void, std::string>;

tl::unexpected<std::string> failure(const fs::path& file, const std::error_code& error) {
    return tl::unexpected(file.string() + ": " + error.message());
}

tl::unexpected<std::string> failure(const fs::path& file, int number) {
    return failure(file, std::error_code(number, std::generic_category()));
}

// Lets one process at a time change the packs of a folder.
class Lock {
public:
    explicit Lock(const fs::path& folder) : descriptor(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
        if (descriptor < 0 || flock(descriptor, LOCK_EX | LOCK_NB) != 0) error = errno;
    }
    ~Lock() {
        if (descriptor >= 0) close(descriptor);
    }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

    Outcome outcome(const fs::path& folder) const {
        if (error == 0) return {};
        if (error == EWOULDBLOCK) return tl::unexpected(folder.string() + ": Another import is running.");
        return failure(folder, error);
    }

private:
    int descriptor;
    int error = 0;
};

// Puts the made folder into its place in one step; what was there before is then where it was made.
Outcome exchange(const fs::path& made, const fs::path& place) {
    std::error_code unreadable;
    if (fs::symlink_status(place, unreadable).type() == fs::file_type::not_found) {
        return std::rename(made.c_str(), place.c_str()) == 0 ? Outcome{} : failure(place, errno);
    }
    if (renameat2(AT_FDCWD, made.c_str(), AT_FDCWD, place.c_str(), RENAME_EXCHANGE) == 0) return {};
    if (errno == EINVAL || errno == ENOSYS) {
        return tl::unexpected(place.string() +
                              ": This file system cannot exchange two folders. Remove the pack first.");
    }
    return failure(place, errno);
}

// A link costs no space, but not every file system has them.
std::error_code linkOrCopy(const fs::path& from, const fs::path& to) {
    std::error_code error;
    fs::create_hard_link(from, to, error);
    if (error) fs::copy_file(from, to, error);
    return error;
}

// Whether it has the name of a clip that was made here: a number.
bool isMadeHere(const fs::path& file) {
    return file.extension() == ".mp3" && file.stem().string().find_first_not_of("0123456789") == std::string::npos;
}

} // namespace

UserPack::UserPack(fs::path folder, Order precedes)
    : place(std::move(folder)),
      stage(place.parent_path() / ('.' + place.filename().string() + ".import")),
      precedes(std::move(precedes)) {}

std::vector<fs::path> UserPack::clips() const {
    std::vector<fs::path> found;
    std::error_code unreadable;
    for (fs::directory_iterator entry(place, unreadable), end; entry != end; entry.increment(unreadable)) {
        const std::string name = entry->path().filename().string();
        std::error_code unknown;
        if (!name.starts_with('.') && name.ends_with(".mp3") && entry->is_regular_file(unknown)) {
            found.push_back(entry->path());
        }
    }
    std::ranges::sort(found, [this](const fs::path& a, const fs::path& b) {
        return precedes(a.filename().string(), b.filename().string());
    });
    return found;
}

// What is neither kept nor made here would be lost.
Outcome UserPack::checkForOthers(const std::vector<fs::path>& kept) const {
    std::error_code unreadable;
    for (fs::directory_iterator entry(place, unreadable), end; entry != end; entry.increment(unreadable)) {
        const fs::path& file = entry->path();
        const bool isHidden = file.filename().string().starts_with('.');
        if (isHidden || isMadeHere(file) || std::ranges::find(kept, file) != kept.end()) continue;
        return tl::unexpected(file.string() + ": This is not a clip of quiverly-import and would be lost. Move it "
                                              "elsewhere first.");
    }
    return {};
}

Outcome UserPack::replace(const std::vector<fs::path>& sounds) {
    return change({}, sounds);
}

Outcome UserPack::append(const std::vector<fs::path>& sounds) {
    return change(clips(), sounds);
}

Outcome UserPack::change(const std::vector<fs::path>& kept, const std::vector<fs::path>& sounds) {
    std::error_code error;
    for (const fs::path& sound : sounds) {
        const fs::path folder = fs::weakly_canonical(sound, error).parent_path();
        if (!error && folder == fs::weakly_canonical(place, error)) {
            return tl::unexpected(sound.string() + ": It lies in the pack itself. Copy it elsewhere first.");
        }
    }
    fs::create_directories(place.parent_path(), error);
    if (error) return failure(place.parent_path(), error);
    const Lock lock(place.parent_path());
    if (auto locked = lock.outcome(place.parent_path()); !locked) return locked;

    if (auto checked = checkForOthers(kept); !checked) return checked;
    fs::remove_all(stage, error); // of an import that was interrupted
    if (!error) fs::create_directory(stage, error);
    if (error) return failure(stage, error);
    const auto make = [&]() -> Outcome {
        std::size_t number = 0;
        const auto next = [&] { return stage / (std::to_string(++number) + ".mp3"); };
        for (const fs::path& clip : kept) {
            if (const std::error_code failed = linkOrCopy(clip, next())) return failure(clip, failed);
        }
        for (const fs::path& sound : sounds) {
            if (auto imported = importSound(sound, next()); !imported) return imported;
        }
        return exchange(stage, place);
    };
    Outcome made = make();
    fs::remove_all(stage, error);
    return made;
}

Outcome UserPack::remove() {
    std::error_code error;
    if (fs::symlink_status(place, error).type() == fs::file_type::not_found) {
        return tl::unexpected(place.string() + ": There is no pack of your own.");
    }
    const Lock lock(place.parent_path());
    if (auto locked = lock.outcome(place.parent_path()); !locked) return locked;
    if (auto checked = checkForOthers({}); !checked) return checked;
    fs::remove_all(stage, error);
    if (std::rename(place.c_str(), stage.c_str()) != 0) return failure(place, errno);
    fs::remove_all(stage, error);
    return error ? Outcome(failure(stage, error)) : Outcome{};
}

} // namespace quiverly
