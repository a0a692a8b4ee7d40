// vantrel-cli save UNITS_DIR OUT [--open FILE [--tessaly]] [--name NAME] ...
#include "cli/cli_profile_common.h"

#include "forms/unit_edits.h"
#include "startup/options.h"

#include <iostream>

namespace vantrel::cli {
namespace {

const char* Usage = "save UNITS_DIR OUT [--open FILE [--tessaly]] [--name NAME] [--author AUTHOR] "
                    "[--easy N] [--medium N] [--hard N] [--weight-max N] [--limit-max N] "
                    "[--set FILTER:weight=V] [--set FILTER:limit=V]...";

const char* Details =
    "Loads the units of UNITS_DIR and the stored options, optionally opens FILE as\n"
    "File, Open does (an AI profile, or a Tessaly profile with --tessaly; its\n"
    "build-set file is applied when there is one), then writes OUT and its\n"
    "build-set file (OUT less its last four characters, plus \".set\") as\n"
    "File, Save does. FILE may name a profile inside a game archive,\n"
    "ARCHIVE#path/inside (its build-set file is then looked for in the archive).\n"
    "\n"
    "The AI name written is the Settings name followed by \" AI\": \"New\" unless a\n"
    "profile was opened (its name without every \"AI\") or --name is given. The\n"
    "author is \"N/A\", the opened profile's author, or AUTHOR.\n"
    "--easy, --medium, --hard (plan percentages), --weight-max and --limit-max\n"
    "override the stored options for this run only; N is a whole number from\n"
    "-32768 to 32767.\n"
    "--set FILTER:weight=V and --set FILTER:limit=V (repeatable, applied in\n"
    "order after --open) set the build priority or number produced of every\n"
    "unit whose Name, UnitName, Side or class contains FILTER, without regard\n"
    "to case (\"*\" or nothing before the colon: every unit), as the unit\n"
    "table's bulk edits do: weights in hundredths from 0 to WeightMax, limits\n"
    "whole from 0 to LimitMax.";

struct OptionFlag {
    const char* flag;
    std::int32_t Options::*field;
};
constexpr OptionFlag OptionFlags[] = {{"--easy", &Options::EasyLimit},
                                      {"--medium", &Options::MediumLimit},
                                      {"--hard", &Options::HardLimit},
                                      {"--weight-max", &Options::WeightMax},
                                      {"--limit-max", &Options::LimitMax}};

int RunSave(const std::vector<std::string>& args) {
    if (WantsHelp(args, Usage, Details)) return ExitOk;
    std::vector<std::string> positional;
    std::optional<std::string> open, name, author;
    bool tessaly = false;
    std::vector<std::pair<std::int32_t Options::*, std::int32_t>> overrides;
    std::vector<BulkSet> sets;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        auto value = [&]() -> std::optional<std::string> {
            if (i + 1 >= args.size()) return std::nullopt;
            return args[++i];
        };
        if (a == "--tessaly") {
            tessaly = true;
            continue;
        }
        if (a == "--set") {
            auto v = value();
            auto set = v ? ParseBulkSet(*v) : std::nullopt;
            if (!set)
                return UsageError(Usage, "--set needs FILTER:weight=V or FILTER:limit=V, not '" +
                                             v.value_or("") + "'");
            sets.push_back(*set);
            continue;
        }
        std::optional<std::string>* text = a == "--open"     ? &open
                                           : a == "--name"   ? &name
                                           : a == "--author" ? &author
                                                             : nullptr;
        const OptionFlag* flag = nullptr;
        for (const OptionFlag& f : OptionFlags)
            if (a == f.flag) flag = &f;
        if (!text && !flag) {
            if (a.size() > 1 && a[0] == '-') return UsageError(Usage, "unknown option " + a);
            positional.push_back(a);
            continue;
        }
        auto v = value();
        if (!v) return UsageError(Usage, a + " needs a value");
        if (text) {
            *text = *v;
            continue;
        }
        auto number = ParseOption16(*v);
        if (!number) return UsageError(Usage, a + " needs a whole number, not '" + *v + "'");
        overrides.emplace_back(flag->field, *number);
    }
    if (positional.size() != 2) return UsageError(Usage, "expected UNITS_DIR and OUT");
    if (tessaly && !open) return UsageError(Usage, "--tessaly needs --open FILE");

    ProfileRun run;
    if (auto status = PrepareProfileRun(run, positional[0])) return *status;
    for (auto [field, value] : overrides)
        run.defs.Options.*field = value;
    if (open)
        if (auto status = OpenProfile(run, *open, tessaly, false)) return *status;
    for (const BulkSet& set : sets)
        if (ApplyBulkSet(run.defs, set) == 0)
            std::cerr << "vantrel-cli: --set " << set.Filter << ": no unit matches\n";
    if (name) run.fields.SetAIName(*name);
    if (author) run.fields.SetAuthor(*author);
    run.fields.SetBanner(run.fields.AIName() + " AI");
    try {
        SaveAI(run.ctx, positional[1]);
    } catch (const ProfileError& e) {
        std::cerr << "vantrel-cli: " << e.what() << "\n";
        return ExitFailed;
    }
    return ExitOk;
}

const CommandRegistrar reg("save", Usage, "write an AI profile and its build-set file", RunSave);

} // namespace
} // namespace vantrel::cli
