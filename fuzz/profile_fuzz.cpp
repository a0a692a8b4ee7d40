// The profile readers and the INI reader on arbitrary bytes. The first byte
// chooses the reader and mode; the rest is the file.
#include "fuzz/fuzz_scratch.h"
#include "formats/ini_file.h"
#include "profile/profile.h"

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <string>

namespace {

class NoClock : public vantrel::Clock {
  public:
    std::time_t Now() override { return 0; }
    double SecondsSinceMidnight() override { return 0; }
};

std::string ScratchFile() {
    static const std::string path = (vantrel::fuzz::ScratchFolder::Path() / "profile").string();
    return path;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const unsigned mode = data[0];
    std::string bytes(reinterpret_cast<const char*>(data + 1), size - 1);
    {
        std::ofstream out(ScratchFile(), std::ios::binary | std::ios::trunc);
        out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }

    vantrel::Definitions defs;
    const char* names[] = {"ARMCOM", "ARMCOMX", "armcom", "", "A", "CORAK", "ARM COM"};
    defs.Units.Dim(static_cast<int>(std::size(names)));
    for (int i = 1; i <= defs.Units.UBound(); ++i)
        defs.Units[i].UnitName = names[i - 1];
    vantrel::Progress progress;
    vantrel::PlainSettingsFields fields;
    NoClock clock;
    vantrel::ProfileContext ctx{defs, progress, fields, clock};
    bool merge = (mode & 1) != 0;

    switch ((mode >> 1) % 4) {
    case 0:
        vantrel::ReadAI(ctx, ScratchFile(), merge);
        break;
    case 1:
        vantrel::ReadTessalyAI(ctx, ScratchFile(), merge);
        break;
    case 2: {
        const vantrel::IniIndex ini(bytes);
        ini.Get("ARMCOM;", "Weight", "0");
        std::size_t cut = std::min<std::size_t>(8, bytes.size());
        ini.Get(bytes.substr(0, cut), bytes.substr(cut, 8), "0");
        break;
    }
    default: {
        // A profile in memory, the same bytes standing for its build set too.
        vantrel::ReadAI(ctx, vantrel::ProfileText{"fuzz.txt", bytes, bytes}, merge);
        break;
    }
    }
    return 0;
}
