#pragma once

#include <filesystem>
#include <vector>

namespace quiverly {

// The folders in which the resources that came with the running program may be, wherever it was installed or built:
// ../share/quiverly and ../resources as seen from the folder of the program's own file, links resolved. Neither has to
// exist. Empty when the system does not say where the program is.
std::vector<std::filesystem::path> programResourceFolders();

} // namespace quiverly
