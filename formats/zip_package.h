// Zip packages of extra units (libzip underneath): listing and unpacking
// their files into one folder, each under its bare name.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

struct zip;

namespace vantrel {

// Entries that unpack to more than this are refused (zip bombs).
inline constexpr std::uint64_t MaxUnzipEntryBytes = 64ull * 1024 * 1024;
// A package stops unpacking once it has written this much in one run.
inline constexpr std::uint64_t MaxUnzipPackageBytes = 1024ull * 1024 * 1024;

// The last part of an entry name; both "/" and "\" separate folders.
std::string_view EntryBareName(std::string_view entryName);

// What became of one entry of a package.
enum class ZipResult {
    Written,      // unpacked into the folder
    Exists,       // a file of that name is there already: kept
    UnusableName, // "", "." or ".." after the last separator
    Encrypted,    // needs a password
    TooLarge,     // above MaxUnzipEntryBytes, or past MaxUnzipPackageBytes
    Failed,       // damaged data or the file could not be written (see the reason)
};

// One report per file entry (folder entries are not reported).
struct ZipEntryReport {
    std::string_view name; // as stored in the package
    std::uint64_t size;    // unpacked size
    ZipResult result;
    std::string_view reason; // Failed: why; otherwise empty
};

class ZipPackage {
  public:
    // Opens the package; nullptr when it cannot be read, with `error` (when
    // given) saying why (the system's text, "is a folder", or libzip's).
    static std::unique_ptr<ZipPackage> Open(const std::string& path, std::string* error = nullptr);
    ~ZipPackage();
    ZipPackage(const ZipPackage&) = delete;
    ZipPackage& operator=(const ZipPackage&) = delete;

    // Entries of the package, folder entries included.
    std::size_t EntryCount() const;

    // Unpacks every file entry into `folder` under its bare name. A name that
    // `exists` says is already there (in any letter case) is never replaced;
    // nor is a file on disk of the same name. `report` hears of every file
    // entry after it is dealt with.
    void UnpackTo(const std::string& folder, const std::function<bool(const std::string&)>& exists,
                  const std::function<void(const ZipEntryReport&)>& report);

  private:
    explicit ZipPackage(zip* za) : za_(za) {}
    zip* za_;
};

} // namespace vantrel
