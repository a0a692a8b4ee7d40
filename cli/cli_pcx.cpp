// vantrel-cli pcx IN.pcx OUT.png
#include "base/paths.h"
#include "cli/cli_common.h"
#include "formats/pcx.h"
#include "formats/png_writer.h"

#include <iostream>

namespace vantrel::cli {
namespace {

const char* Usage = "pcx IN.pcx OUT.png";

int RunPcx(const std::vector<std::string>& args) {
    if (WantsHelp(args, Usage,
                  "Decodes a unit picture the way the unit board does and writes it as PNG.\n"
                  "256-colour pictures become palette PNGs as wide as the file's bytes per\n"
                  "line (an odd width shows its padding column); 24-bit pictures become RGB\n"
                  "PNGs. When the file gives no picture, the reason goes to stderr and the\n"
                  "exit status is 1 (a 256-colour file without its palette also prints the\n"
                  "program's message); a missing input file gives exit status 2."))
        return ExitOk;
    if (args.size() != 2) return UsageError(Usage, "expected an input and an output file");
    if (!FileExists(args[0])) return ExitUsage;
    ConsoleMessages messages;
    const PcxResult result = LoadPCX(args[0], messages);
    if (!result) {
        std::cerr << "vantrel-cli: " << args[0] << ": no picture: " << result.reason << "\n";
        return ExitFailed;
    }
    std::string error;
    if (!WritePng(args[1], *result.image, error)) {
        std::cerr << "vantrel-cli: " << error << "\n";
        return ExitFailed;
    }
    return ExitOk;
}

const CommandRegistrar reg("pcx", Usage, "decode a unit picture (PCX) and write it as PNG", RunPcx);

} // namespace
} // namespace vantrel::cli
