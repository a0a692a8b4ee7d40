#include "support/zip_maker.h"

#include <zip.h>

#include <algorithm>
#include <filesystem>

namespace vantrel::testing {

namespace {
zip_uint16_t EncryptionMethod() {
    for (zip_uint16_t method : {ZIP_EM_AES_256, ZIP_EM_TRAD_PKWARE})
        if (zip_encryption_method_supported(method, 1)) return method;
    return ZIP_EM_NONE;
}
} // namespace

bool CanEncryptZipEntries() {
    return EncryptionMethod() != ZIP_EM_NONE;
}

bool WriteZip(const std::string& path, const std::vector<ZipItem>& items) {
    int error = 0;
    zip_t* za = zip_open(path.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &error);
    if (!za) return false;
    bool ok = true;
    for (const ZipItem& item : items) {
        zip_int64_t index = -1;
        if (item.folder) {
            index = zip_dir_add(za, item.name.c_str(), ZIP_FL_ENC_RAW);
        } else {
            zip_source_t* src = zip_source_buffer(za, item.data.data(), item.data.size(), 0);
            if (src) index = zip_file_add(za, item.name.c_str(), src, ZIP_FL_ENC_RAW);
            if (src && index < 0) zip_source_free(src);
        }
        if (index < 0) {
            ok = false;
            continue;
        }
        const auto i = static_cast<zip_uint64_t>(index);
        if (item.store) ok = ok && zip_set_file_compression(za, i, ZIP_CM_STORE, 0) == 0;
        if (item.encrypt)
            ok = ok && zip_file_set_encryption(za, i, EncryptionMethod(), "secret") == 0;
    }
    if (zip_close(za) != 0) {
        zip_discard(za);
        return false;
    }
    return ok;
}

std::vector<std::string> FilesBelow(const std::string& root) {
    namespace fs = std::filesystem;
    std::vector<std::string> files;
    for (const auto& e : fs::recursive_directory_iterator(root))
        if (e.is_regular_file()) files.push_back(fs::relative(e.path(), root).string());
    std::sort(files.begin(), files.end());
    return files;
}

} // namespace vantrel::testing
