// vantrel-cli: the command-line companion of Vantrel for batch work.
#include "cli/cli_common.h"
#include "vantrel_version.h"

#include <algorithm>
#include <iostream>

using namespace vantrel::cli;

namespace {
void PrintOverview() {
    std::cout << "usage: vantrel-cli COMMAND [ARGS...]\n\ncommands:\n";
    auto cmds = Commands();
    std::sort(cmds.begin(), cmds.end(),
              [](const Command& a, const Command& b) { return a.name < b.name; });
    for (const Command& c : cmds)
        std::cout << "  " << c.usage << "\n      " << c.summary << "\n";
    std::cout << "\n'vantrel-cli COMMAND --help' describes one command;"
                 " 'vantrel-cli --version' prints the version.\n";
}
} // namespace

int main(int argc, char** argv) {
    std::vector<std::string> args(argv + 1, argv + argc);
    if (args.empty() || args[0] == "--help" || args[0] == "-h" || args[0] == "help") {
        PrintOverview();
        return args.empty() ? ExitUsage : ExitOk;
    }
    if (args[0] == "--version" || args[0] == "-V") {
        std::cout << "vantrel-cli " << VANTREL_VERSION_TEXT << "\n";
        return ExitOk;
    }
    for (const Command& c : Commands())
        if (c.name == args[0]) return c.run(std::vector<std::string>(args.begin() + 1, args.end()));
    std::cerr << "vantrel-cli: unknown command '" << args[0] << "'\n";
    PrintOverview();
    return ExitUsage;
}
