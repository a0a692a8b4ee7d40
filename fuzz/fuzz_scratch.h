// The one folder a fuzz target may write into: made under $TMPDIR (or /tmp)
// when first asked for and removed with everything in it when the run ends.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

namespace vantrel::fuzz {

class ScratchFolder {
  public:
    static const std::filesystem::path& Path() {
        static ScratchFolder folder;
        return folder.path_;
    }
    // Empties the folder between inputs.
    static void Clear() {
        std::error_code ec;
        for (const auto& e : std::filesystem::directory_iterator(Path(), ec))
            std::filesystem::remove_all(e.path(), ec);
    }

  private:
    ScratchFolder() {
        const char* tmp = std::getenv("TMPDIR");
        std::string pattern = std::string(tmp && *tmp ? tmp : "/tmp") + "/vantrel-fuzz-XXXXXX";
        if (!::mkdtemp(pattern.data())) std::abort();
        path_ = pattern;
    }
    ~ScratchFolder() {
        std::error_code ec;
        std::filesystem::remove_all(path_, ec);
    }
    std::filesystem::path path_;
};

// Every path below `root`, to check that nothing was written elsewhere or
// through a link.
inline bool OnlyPlainEntriesBelow(const std::filesystem::path& root) {
    std::error_code ec;
    for (auto it = std::filesystem::recursive_directory_iterator(root, ec);
         it != std::filesystem::recursive_directory_iterator(); it.increment(ec)) {
        if (ec) return false;
        if (it->is_symlink()) return false;
    }
    return !ec;
}

} // namespace vantrel::fuzz
