// Shared pieces of vantrel-cli: command registration, ports on stdout and
// stderr, and table output.
#pragma once

#include "base/ports.h"
#include "base/text.h"
#include "catalogue/definitions.h"

#include <functional>
#include <initializer_list>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace vantrel::cli {

// Exit statuses: 0 success, 1 failed work, 2 bad usage or missing input.
inline constexpr int ExitOk = 0;
inline constexpr int ExitFailed = 1;
inline constexpr int ExitUsage = 2;

using CommandFn = std::function<int(const std::vector<std::string>& args)>;

struct Command {
    std::string name;
    std::string usage;   // "units UNITS_DIR"
    std::string summary; // one line
    CommandFn run;
};

std::vector<Command>& Commands();

// Registers a command at static-initialisation time.
struct CommandRegistrar {
    CommandRegistrar(std::string name, std::string usage, std::string summary, CommandFn fn);
};

// True when args hold "--help" or "-h"; prints the command's usage then.
bool WantsHelp(const std::vector<std::string>& args, const std::string& usage,
               const std::string& details);
int UsageError(const std::string& usage, const std::string& message);

// A switch of a command ("--merge") and where to record that it was given.
struct Flag {
    const char* name;
    bool* given;
};
// Splits `args` into the positional arguments and the given switches.
// Returns the exit status of a usage error when an argument is an unknown option.
std::optional<int> SplitArgs(const std::vector<std::string>& args, const std::string& usage,
                             std::initializer_list<Flag> flags,
                             std::vector<std::string>& positional);

// The `units` table: a header line, then one line per unit in index order.
void PrintUnitTable(std::ostream& out, const RecordArray<vtUnit>& units);

// Ports for a command-line run.
class ConsoleProgress : public Progress {
  public:
    explicit ConsoleProgress(bool echoStatus) : echo_(echoStatus) {}

  protected:
    void OnChange() override;

  private:
    bool echo_;
    std::string last_;
};

class ConsoleMessages : public Messages {
  public:
    // Questions get `answer` (Yes for batch runs by default).
    explicit ConsoleMessages(MsgAnswer answer = MsgAnswer::Yes) : answer_(answer) {}
    MsgAnswer Show(const std::string& text, const std::string& title, MsgButtons buttons,
                   MsgIcon icon) override;

  private:
    MsgAnswer answer_;
};

class ConsoleShell : public Shell {
  public:
    bool RestartSelf() override { return false; }
    bool OpenDocument(const std::string&) override { return false; }
};

// Missing input: false after "no such folder/file" on stderr.
bool FolderExists(const std::string& path);
bool FileExists(const std::string& path);

// Loads the unit files of a folder into `defs` (no start-up side effects).
// Returns false (after a message on stderr) when the folder is missing.
bool LoadCatalogue(Definitions& defs, const std::string& unitsDir);

} // namespace vantrel::cli
