#include "support/scratch_folder.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace vantrel::testing {

std::vector<std::string> FolderContent(const std::string& dir) {
    return test::FolderEntries(dir);
}

} // namespace vantrel::testing
