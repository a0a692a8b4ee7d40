#include "formats/zip_package.h"

#include "base/staged_file.h"

#include <zip.h>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace vantrel {

namespace {

bool IsUsableName(std::string_view name) {
    return !name.empty() && name != "." && name != "..";
}

// Why `path` is no package to open ("" when it may be one).
std::string SourceFault(const std::string& path) {
    struct stat st {};
    if (::stat(path.c_str(), &st) != 0) return std::strerror(errno);
    if (S_ISDIR(st.st_mode)) return "is a folder";
    if (::access(path.c_str(), R_OK) != 0) return std::strerror(errno);
    return {};
}

constexpr const char* Damaged = "damaged data in the package";

// Copies entry `index` (declared `size` bytes) into `out`; "" when all of it
// arrived, else why not.
std::string CopyEntry(zip_t* za, zip_uint64_t index, zip_uint64_t size, StagedStream& out,
                      std::vector<char>& buffer) {
    zip_file_t* zf = zip_fopen_index(za, index, 0);
    if (!zf) return Damaged;
    std::string why;
    zip_uint64_t total = 0;
    while (why.empty()) {
        const zip_int64_t n = zip_fread(zf, buffer.data(), buffer.size());
        if (n == 0) break;
        total += static_cast<zip_uint64_t>(n);
        if (n < 0 || total > size)
            why = Damaged;
        else if (!out.Write(buffer.data(), static_cast<std::size_t>(n)))
            why = out.Error();
    }
    if (zip_fclose(zf) != 0 && why.empty()) why = Damaged;
    if (why.empty() && total != size) why = Damaged;
    return why;
}

} // namespace

std::string_view EntryBareName(std::string_view entryName) {
    std::size_t sep = entryName.find_last_of("/\\");
    return sep == std::string_view::npos ? entryName : entryName.substr(sep + 1);
}

std::unique_ptr<ZipPackage> ZipPackage::Open(const std::string& path, std::string* error) {
    std::string why = SourceFault(path);
    zip_t* za = nullptr;
    if (why.empty()) {
        int code = 0;
        za = zip_open(path.c_str(), ZIP_RDONLY, &code);
        if (!za) {
            zip_error_t ze;
            zip_error_init_with_code(&ze, code);
            why = std::string("damaged zip package (") + zip_error_strerror(&ze) + ")";
            zip_error_fini(&ze);
        }
    }
    if (error) *error = why;
    return za ? std::unique_ptr<ZipPackage>(new ZipPackage(za)) : nullptr;
}

ZipPackage::~ZipPackage() {
    zip_discard(za_);
}

std::size_t ZipPackage::EntryCount() const {
    const zip_int64_t n = zip_get_num_entries(za_, 0);
    return n > 0 ? static_cast<std::size_t>(n) : 0;
}

void ZipPackage::UnpackTo(const std::string& folder,
                          const std::function<bool(const std::string&)>& exists,
                          const std::function<void(const ZipEntryReport&)>& report) {
    const OpenFolder dest(folder);
    std::uint64_t written = 0;
    std::vector<char> buffer(64 * 1024);
    const zip_int64_t count = zip_get_num_entries(za_, 0);
    for (zip_int64_t i = 0; i < count; ++i) {
        const auto index = static_cast<zip_uint64_t>(i);
        zip_stat_t st;
        zip_stat_init(&st);
        if (zip_stat_index(za_, index, ZIP_FL_ENC_RAW, &st) != 0 || !st.name) continue;
        const std::string_view name = st.name;
        if (name.empty() || name.back() == '/' || name.back() == '\\') continue;
        const std::uint64_t size = (st.valid & ZIP_STAT_SIZE) ? st.size : 0;
        const std::string bare(EntryBareName(name));
        std::string why;
        ZipResult result = ZipResult::Written;
        if (!IsUsableName(bare))
            result = ZipResult::UnusableName;
        else if ((st.valid & ZIP_STAT_ENCRYPTION_METHOD) && st.encryption_method != ZIP_EM_NONE)
            result = ZipResult::Encrypted;
        else if (!(st.valid & ZIP_STAT_SIZE) || size > MaxUnzipEntryBytes ||
                 written + size > MaxUnzipPackageBytes)
            result = ZipResult::TooLarge;
        else if (exists && exists(bare))
            result = ZipResult::Exists;
        if (result == ZipResult::Written) {
            StagedStream out(dest, bare);
            why = out.IsOpen() ? CopyEntry(za_, index, size, out, buffer) : out.Error();
            if (why.empty() && !out.Commit(false)) {
                result = errno == EEXIST ? ZipResult::Exists : ZipResult::Failed;
                if (result == ZipResult::Failed) why = out.Error();
            }
            if (!why.empty()) result = ZipResult::Failed;
        }
        if (result == ZipResult::Written) written += size;
        if (report) report({name, size, result, why});
    }
}

} // namespace vantrel
