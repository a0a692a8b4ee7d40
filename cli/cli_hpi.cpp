// vantrel-cli hpi list ARCHIVE | hpi extract ARCHIVE DEST
#include "cli/cli_common.h"

#include "base/paths.h"
#include "formats/hpi_extract.h"

#include <iostream>

namespace vantrel::cli {
namespace {

const char* Usage = "hpi list ARCHIVE | hpi extract [--trusted] ARCHIVE DEST";

// Opens ARCHIVE; nullptr after a message on stderr. `status` gets the exit
// status: missing input is a usage error, a file that is no archive a failure.
std::unique_ptr<HpiArchive> OpenArchive(const std::string& path, int& status) {
    if (!FileExists(path)) {
        status = ExitUsage;
        return nullptr;
    }
    std::string why;
    auto archive = HpiArchive::OpenFile(path, &why);
    if (!archive) {
        std::cerr << "vantrel-cli: cannot read the archive " << path << ": " << why << "\n";
        status = ExitFailed;
    }
    return archive;
}

int List(const std::string& path) {
    int status = ExitOk;
    auto archive = OpenArchive(path, status);
    if (!archive) return status;
    for (const ArchiveFile& f : ListArchiveFiles(archive->Root()))
        std::cout << Escape(f.path) << '\t' << f.entry->size << '\n';
    return ExitOk;
}

int Extract(const std::string& path, const std::string& dest, bool trusted) {
    int status = ExitOk;
    auto archive = OpenArchive(path, status);
    if (!archive) return status;
    if (!trusted) archive->SetLimits(DiskLimits);
    if (!MakeDirectory(dest)) {
        std::cerr << "vantrel-cli: cannot create the folder " << dest << "\n";
        return ExitFailed;
    }
    const TreeExtraction result = ExtractTree(*archive, dest);
    for (const std::string& p : result.skipped)
        std::cerr << "vantrel-cli: skipped a name that would leave the folder: " << Escape(p)
                  << "\n";
    for (const std::string& p : result.failed)
        std::cerr << "vantrel-cli: not written: " << Escape(p) << "\n";
    std::cout << result.written << " files written\n";
    return result.failed.empty() && result.skipped.empty() ? ExitOk : ExitFailed;
}

int RunHpi(const std::vector<std::string>& args) {
    if (WantsHelp(args, Usage,
                  "Reads an archive of the game's format (*.hpi, *.ccx, *.gp?, *.swx, *.ufo).\n"
                  "  list     prints one line per file: its path inside the archive with \"/\"\n"
                  "           separators, TAB, its unpacked size in bytes.\n"
                  "  extract  writes every file below DEST, recreating the archive's folders;\n"
                  "           existing files are replaced. Names that would leave DEST are\n"
                  "           skipped with a message; a symbolic link inside DEST where a\n"
                  "           file or folder goes is refused, never followed. A file above\n"
                  "           16 MiB is not unpacked, and the archive stops after 1 GiB in\n"
                  "           all; --trusted lifts both caps for an archive you trust.\n"
                  "Exit status: 0 done, 1 damaged archive or files not written, 2 bad usage\n"
                  "or missing archive."))
        return ExitOk;
    if (args.size() == 2 && args[0] == "list") return List(args[1]);
    if (args.size() == 3 && args[0] == "extract") return Extract(args[1], args[2], false);
    if (args.size() == 4 && args[0] == "extract" && args[1] == "--trusted")
        return Extract(args[2], args[3], true);
    return UsageError(Usage, "expected 'list ARCHIVE' or 'extract [--trusted] ARCHIVE DEST'");
}

const CommandRegistrar reg("hpi", Usage, "list or extract an archive of the game", RunHpi);

} // namespace
} // namespace vantrel::cli
