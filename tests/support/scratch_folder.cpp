#include "support/scratch_folder.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace vantrel::testing {

ScratchFolder::ScratchFolder() {
    const char* tmp = std::getenv("TMPDIR");
    std::string pattern = std::string(tmp && *tmp ? tmp : "/tmp") + "/vantrel-test-XXXXXX";
    if (!::mkdtemp(pattern.data())) throw std::runtime_error("cannot create a scratch folder");
    path_ = pattern;
}

ScratchFolder::~ScratchFolder() {
    std::error_code ec;
    std::filesystem::remove_all(path_, ec);
}

std::vector<std::string> FolderContent(const std::string& dir) {
    std::vector<std::string> names;
    std::error_code ec;
    for (const auto& e : std::filesystem::directory_iterator(dir, ec))
        names.push_back(e.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace vantrel::testing
