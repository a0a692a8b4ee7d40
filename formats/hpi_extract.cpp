#include "formats/hpi_extract.h"

namespace vantrel {

namespace {

void ListInto(const HpiEntry& folder, const std::string& prefix, std::vector<ArchiveFile>& out) {
    for (const HpiEntry& e : folder.children) {
        const std::string path = prefix.empty() ? e.name : prefix + "/" + e.name;
        if (e.isDirectory)
            ListInto(e, path, out);
        else
            out.push_back({path, &e});
    }
}

void ExtractFolder(const HpiArchive& archive, const HpiEntry& folder, const OpenFolder& dest,
                   const std::string& prefix, TreeExtraction& result) {
    for (const HpiEntry& e : folder.children) {
        const std::string path = prefix.empty() ? e.name : prefix + "/" + e.name;
        if (!IsSafeBareName(e.name)) {
            result.skipped.push_back(path);
        } else if (e.isDirectory) {
            const OpenFolder sub(dest, e.name);
            if (sub.IsOpen())
                ExtractFolder(archive, e, sub, path, result);
            else
                result.failed.push_back(path + ": " + sub.Error());
        } else if (std::string reason; ExtractToFile(archive, e, dest, e.name, &reason)) {
            ++result.written;
        } else {
            result.failed.push_back(path + ": " + reason);
        }
    }
}

} // namespace

bool IsSafeBareName(std::string_view name) {
    if (name.empty() || name == "." || name == "..") return false;
    if (name.find_first_of(std::string_view("/\\\0", 3)) != std::string_view::npos) return false;
    if (name.size() >= 2 && name[1] == ':') return false;
    return true;
}

bool ExtractToFile(const HpiArchive& archive, const HpiEntry& file, const OpenFolder& folder,
                   const std::string& name, std::string* reason) {
    std::string why = file.isDirectory ? "is a folder" : archive.LimitReason(file);
    if (why.empty()) {
        StagedStream out(folder, name);
        const bool ok = out.IsOpen() &&
                        archive.Extract(
                            file,
                            [&out](const std::uint8_t* data, std::size_t n) {
                                return out.Write(data, n);
                            },
                            &why) &&
                        out.Commit(true);
        if (!ok && why.empty()) why = out.Error();
    }
    if (reason) *reason = why;
    return why.empty();
}

TreeExtraction ExtractTree(const HpiArchive& archive, const std::string& destDir) {
    TreeExtraction result;
    const OpenFolder dest(destDir);
    if (!dest.IsOpen())
        result.failed.push_back(destDir + ": " + dest.Error());
    else
        ExtractFolder(archive, archive.Root(), dest, "", result);
    return result;
}

std::vector<ArchiveFile> ListArchiveFiles(const HpiEntry& folder) {
    std::vector<ArchiveFile> files;
    ListInto(folder, "", files);
    return files;
}

} // namespace vantrel
