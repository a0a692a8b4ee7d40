// The build-set reader on arbitrary bytes, reached as the program reaches it:
// opening a profile applies the ".set" file beside it. The input is split at
// its first NUL into the profile and the build-set file.
#include "fuzz/fuzz_scratch.h"
#include "profile/profile.h"

#include <cstdint>
#include <fstream>
#include <string>
#include <string_view>

using namespace vantrel;

namespace {

class NoClock : public Clock {
  public:
    std::time_t Now() override { return 0; }
    double SecondsSinceMidnight() override { return 0; }
};

void Write(const std::filesystem::path& path, std::string_view bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const std::size_t cut = std::min(text.find('\0'), size);
    const std::string profile = (fuzz::ScratchFolder::Path() / "ai.txt").string();
    Write(profile, text.substr(0, cut));
    Write(BuildSetPath(profile), cut < size ? text.substr(cut + 1) : std::string_view());

    Definitions defs;
    const char* names[] = {"ARMCOM", "ARMCOMX", "armcom", "", "CORAK", "ARM COM", "A;B", "[X]"};
    defs.Units.Dim(static_cast<int>(std::size(names)));
    for (int i = 1; i <= defs.Units.UBound(); ++i)
        defs.Units[i].UnitName = names[i - 1];
    Progress progress;
    PlainSettingsFields fields;
    NoClock clock;
    ProfileContext ctx{defs, progress, fields, clock};
    try {
        ReadAI(ctx, profile, false);
    } catch (const ProfileError&) {
    }
    ReadBuildSet(defs, profile);
    fuzz::ScratchFolder::Clear();
    return 0;
}
