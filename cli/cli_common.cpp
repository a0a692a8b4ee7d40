#include "cli/cli_common.h"

#include "base/paths.h"
#include "base/text.h"
#include "catalogue/load_units.h"

#include <iostream>

namespace vantrel::cli {

std::vector<Command>& Commands() {
    static std::vector<Command> commands;
    return commands;
}

CommandRegistrar::CommandRegistrar(std::string name, std::string usage, std::string summary,
                                   CommandFn fn) {
    Commands().push_back({std::move(name), std::move(usage), std::move(summary), std::move(fn)});
}

bool WantsHelp(const std::vector<std::string>& args, const std::string& usage,
               const std::string& details) {
    for (const std::string& a : args)
        if (a == "--help" || a == "-h") {
            std::cout << "usage: vantrel-cli " << usage << "\n";
            if (!details.empty()) std::cout << "\n" << details << "\n";
            return true;
        }
    return false;
}

int UsageError(const std::string& usage, const std::string& message) {
    std::cerr << "vantrel-cli: " << message << "\nusage: vantrel-cli " << usage << "\n";
    return ExitUsage;
}

std::optional<int> SplitArgs(const std::vector<std::string>& args, const std::string& usage,
                             std::initializer_list<Flag> flags,
                             std::vector<std::string>& positional) {
    for (const std::string& a : args) {
        const Flag* flag = nullptr;
        for (const Flag& f : flags)
            if (a == f.name) flag = &f;
        if (flag)
            *flag->given = true;
        else if (a.size() > 1 && a[0] == '-')
            return UsageError(usage, "unknown option " + a);
        else
            positional.push_back(a);
    }
    return std::nullopt;
}

void PrintUnitTable(std::ostream& out, const RecordArray<vtUnit>& units) {
    out << "index\tSide\tName\tUnitName\tTEDClass\tDescription\tWeight\tLimit\tInclude\n";
    for (int i = 1; i <= units.UBound(); ++i) {
        const vtUnit& u = units[i];
        out << i << '\t' << Escape(u.Side) << '\t' << Escape(u.Name) << '\t' << Escape(u.UnitName)
            << '\t' << Escape(u.TEDClass) << '\t' << Escape(u.Description) << '\t'
            << FloatText(u.Weight) << '\t' << FloatText(u.Limit) << '\t' << (u.Include ? 1 : 0)
            << '\n';
    }
}

void ConsoleProgress::OnChange() {
    if (echo_ && Status() != last_) {
        last_ = Status();
        std::cout << last_ << "\n";
    }
}

MsgAnswer ConsoleMessages::Show(const std::string& text, const std::string& title,
                                MsgButtons buttons, MsgIcon) {
    std::cerr << title << ": " << text << "\n";
    return buttons == MsgButtons::OK ? MsgAnswer::OK : answer_;
}

bool FolderExists(const std::string& path) {
    if (IsDirectory(path)) return true;
    std::cerr << "vantrel-cli: no such folder: " << path << "\n";
    return false;
}

bool FileExists(const std::string& path) {
    if (IsRegularFile(path)) return true;
    std::cerr << "vantrel-cli: no such file: " << path << "\n";
    return false;
}

bool LoadCatalogue(Definitions& defs, const std::string& unitsDir) {
    if (!FolderExists(unitsDir)) return false;
    LoadUnitsFromFolder(defs, unitsDir, nullptr, nullptr);
    return true;
}

} // namespace vantrel::cli
