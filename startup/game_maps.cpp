#include "startup/game_maps.h"

#include "base/paths.h"
#include "base/staged_file.h"
#include "base/text.h"
#include "formats/tdf.h"
#include "formats/hpi_extract.h"
#include "startup/game_profiles.h"
#include "formats/hpi_archive.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <memory>

#include <dirent.h>
#include <sys/stat.h>

namespace vantrel {

namespace {

// The part of `path` after its last separator.
std::string_view FileNameOf(std::string_view path) {
    const std::size_t cut = path.find_last_of("/\\");
    return cut == std::string_view::npos ? path : path.substr(cut + 1);
}

// "Foo.ota" -> "Foo"; nullopt when the name does not end in ".ota" (any case).
std::optional<std::string> MapNameOf(std::string_view fileName) {
    if (fileName.size() <= 4 || !WildcardMatch("*.ota", fileName)) return std::nullopt;
    return std::string(fileName.substr(0, fileName.size() - 4));
}

// ---------------------------------------------------------------------------
// The schemas of a map's text

struct SchemaBlock {
    int number = 0;
    const TdfSection* section = nullptr;
};

// "Schema 3" -> 3.
std::optional<int> SchemaNumber(std::string_view name) {
    if (name.size() < 6 || !EqualsNoCase(name.substr(0, 6), "schema")) return std::nullopt;
    std::string_view rest = name.substr(6);
    while (!rest.empty() && IsBlankChar(rest.front()))
        rest.remove_prefix(1);
    int number = 0;
    auto [end, ec] = std::from_chars(rest.data(), rest.data() + rest.size(), number);
    if (ec != std::errc() || end != rest.data() + rest.size() || rest.empty()) return std::nullopt;
    return number;
}

// The header of a map: its "[GlobalHeader]" section, else the top level.
const TdfSection& HeaderOf(const TdfDocument& doc) {
    const TdfSection* header = doc.root.FindSection("GlobalHeader");
    return header ? *header : doc.root;
}

std::vector<SchemaBlock> SchemasOf(const TdfDocument& doc, std::vector<std::string>* notes) {
    std::vector<SchemaBlock> schemas;
    for (const TdfSection& s : HeaderOf(doc).sections) {
        if (s.name.size() < 6 || !EqualsNoCase(s.name.substr(0, 6), "schema")) continue;
        if (auto number = SchemaNumber(s.name))
            schemas.push_back({*number, &s});
        else if (notes)
            notes->push_back("[" + std::string(s.name) + "] has no schema number: skipped");
    }
    return schemas;
}

// The offsets in `text` of the "aiprofile" values to change: those of every
// schema, or of schema `only`.
std::vector<std::pair<std::size_t, std::size_t>>
ProfileValueSpans(std::string_view text, const TdfDocument& doc, std::optional<int> only) {
    std::vector<std::pair<std::size_t, std::size_t>> spans;
    for (const SchemaBlock& schema : SchemasOf(doc, nullptr)) {
        if (only && schema.number != *only) continue;
        for (const TdfEntry& e : schema.section->entries) {
            if (!EqualsNoCase(e.key, "aiprofile")) continue;
            const auto begin = static_cast<std::size_t>(e.value.data() - text.data());
            spans.emplace_back(begin, begin + e.value.size());
        }
    }
    std::sort(spans.begin(), spans.end());
    return spans;
}

// `text` with the spans replaced by `value`.
std::string ReplaceSpans(std::string_view text,
                         const std::vector<std::pair<std::size_t, std::size_t>>& spans,
                         std::string_view value) {
    std::string out;
    out.reserve(text.size() + spans.size() * value.size());
    std::size_t at = 0;
    for (auto [begin, end] : spans) {
        out.append(text.substr(at, begin - at));
        out.append(value);
        at = end;
    }
    out.append(text.substr(at));
    return out;
}

// ---------------------------------------------------------------------------
// Where the maps are

struct MapLocation {
    std::string name;
    // The archived map (the last archive listed that has it).
    const HpiArchive* archive = nullptr;
    const HpiEntry* entry = nullptr;
    std::string archivedShown; // "totala1.hpi#maps/Foo.ota"
    // The loose map.
    std::string loosePath;
    std::string looseShown; // "maps/Foo.ota"
};

class MapIndex {
  public:
    MapIndex(const std::string& gameDir, std::vector<std::string>& skipped) {
        for (const std::string& file : GameArchiveFiles(gameDir)) {
            std::string why;
            auto archive = HpiArchive::OpenFile(JoinPath(gameDir, file), &why);
            if (!archive) {
                skipped.push_back(file + ": " + why);
                continue;
            }
            const HpiEntry* folder = archive->FindFolder("maps");
            if (!folder) continue;
            for (const HpiEntry& e : folder->children) {
                auto name = MapNameOf(e.name);
                if (!name) continue;
                const std::string shown = file + "#" + folder->name + "/" + e.name;
                if (e.isDirectory) {
                    skipped.push_back(shown + ": is a folder, not a map");
                } else if (!IsSafeBareName(e.name)) {
                    skipped.push_back(shown + ": a name that cannot be a file's");
                } else {
                    MapLocation& loc = Slot(*name);
                    loc.name = *name;
                    loc.archive = archive.get();
                    loc.entry = &e;
                    loc.archivedShown = shown;
                }
            }
            archives_.push_back(std::move(archive));
        }

        const std::string folder = GameSubfolder(gameDir, "maps");
        const std::string folderName(FileNameOf(folder));
        if (IsRegularFile(folder)) skipped.push_back(folderName + ": is a file, not a folder");
        for (const std::string& file : LooseCandidates(folder)) {
            const std::string path = JoinPath(folder, file);
            const std::string shown = folderName + "/" + file;
            auto name = MapNameOf(file);
            MapLocation& loc = Slot(*name);
            if (IsDirectory(path)) {
                skipped.push_back(shown + ": is a folder, not a map");
            } else if (!loc.loosePath.empty()) {
                skipped.push_back(shown + ": " + loc.looseShown + " stands for the map " + *name);
            } else {
                loc.name = *name;
                loc.loosePath = path;
                loc.looseShown = shown;
            }
        }
        // A name seen only as a folder leaves an empty slot behind.
        std::erase_if(byName_, [](const auto& item) {
            return !item.second.entry && item.second.loosePath.empty();
        });
    }

    const MapLocation* Find(std::string_view name) const {
        auto it = byName_.find(UCase(name));
        return it == byName_.end() ? nullptr : &it->second;
    }

    std::vector<const MapLocation*> All() const {
        std::vector<const MapLocation*> all;
        for (const auto& item : byName_)
            all.push_back(&item.second);
        return all;
    }

    static std::string ArchivedText(const MapLocation& loc) {
        if (loc.entry->size > MapFileMax)
            throw MapError(loc.archivedShown + ": larger than " +
                           std::to_string(MapFileMax >> 20) + " MiB: not read");
        std::string data;
        data.reserve(loc.entry->size);
        bool ok = loc.archive->Extract(*loc.entry, [&](const std::uint8_t* bytes, std::size_t n) {
            data.append(reinterpret_cast<const char*>(bytes), n);
            return true;
        });
        if (!ok) throw MapError(loc.archivedShown + ": the archived file is damaged");
        return data;
    }

    static std::string LooseText(const MapLocation& loc) {
        FileText text = ReadFileText(loc.loosePath, MapFileMax);
        if (!text.ok()) throw MapError(loc.looseShown + ": " + text.error);
        return std::move(text.data);
    }

    // The text the game reads: the loose file when there is one.
    static std::string CurrentText(const MapLocation& loc) {
        return loc.loosePath.empty() ? ArchivedText(loc) : LooseText(loc);
    }

  private:
    MapLocation& Slot(const std::string& name) { return byName_[UCase(name)]; }

    // Names in `folder` that end in ".ota" in any case, files and folders, in listing order.
    static std::vector<std::string> LooseCandidates(const std::string& folder) {
        std::vector<std::string> names;
        DIR* d = ::opendir(folder.c_str());
        if (!d) return names;
        while (dirent* e = ::readdir(d))
            if (MapNameOf(e->d_name)) names.emplace_back(e->d_name);
        ::closedir(d);
        std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
            return ListingLess(a, b);
        });
        return names;
    }

    std::vector<std::unique_ptr<HpiArchive>> archives_;
    std::map<std::string, MapLocation> byName_; // upper-case name
};

const MapLocation& FindMap(const MapIndex& index, const std::string& name) {
    const MapLocation* loc = index.Find(name);
    if (!loc) throw MapError("The game has no map '" + name + "'.");
    return *loc;
}

} // namespace

// ---------------------------------------------------------------------------

GameProfileSources::GameProfileSources(const std::string& gameDir) {
    // Archived profiles come first, then the loose ones: the last listed wins.
    // Names we cannot address still count: the game reads them all.
    GameProfileList list = ListGameProfiles(gameDir);
    std::vector<GameProfile> all = std::move(list.unreachable);
    all.insert(all.end(), list.profiles.begin(), list.profiles.end());
    for (const GameProfile& p : all) {
        std::string_view file = FileNameOf(p.name);
        if (file.size() < 4) continue;
        const std::string key = UCase(file.substr(0, file.size() - 4));
        std::string source;
        if (SplitArchivePath(p.path)) {
            source = p.source + "#" + p.name;
        } else {
            const std::string folder = p.path.substr(0, p.path.size() - file.size() - 1);
            source = std::string(FileNameOf(folder)) + "/" + std::string(file);
        }
        byName_[key] = std::move(source);
    }
}

std::string GameProfileSources::SourceOf(std::string_view profileName) const {
    auto it = byName_.find(UCase(profileName));
    return it == byName_.end() ? std::string() : it->second;
}

GameMap ReadMapText(std::string_view text) {
    GameMap map;
    map.read = true;
    const TdfDocument doc = ReadTdf(text);
    map.notes = doc.problems;
    const TdfSection& header = HeaderOf(doc);
    map.missionName = header.Value("missionname");
    map.missionDescription = header.Value("missiondescription");
    map.numPlayers = header.Value("numplayers");
    for (const SchemaBlock& block : SchemasOf(doc, &map.notes)) {
        MapSchema schema;
        schema.number = block.number;
        schema.type = block.section->Value("Type");
        if (const TdfEntry* profile = block.section->Find("aiprofile")) {
            schema.namesProfile = true;
            schema.aiprofile = std::string(profile->value);
        }
        map.schemas.push_back(std::move(schema));
    }
    if (map.schemas.empty()) map.notes.push_back("the map has no schema");
    return map;
}

MapListing ListGameMaps(const std::string& gameDir) {
    MapListing listing;
    MapIndex index(gameDir, listing.skipped);
    GameProfileSources sources(gameDir);
    for (const MapLocation* loc : index.All()) {
        GameMap map;
        try {
            map = ReadMapText(MapIndex::CurrentText(*loc));
        } catch (const MapError& e) {
            map.notes.push_back(e.what());
        }
        map.name = loc->name;
        map.loose = !loc->loosePath.empty();
        map.file = map.loose ? loc->looseShown : loc->archivedShown;
        for (MapSchema& schema : map.schemas)
            if (schema.namesProfile) schema.profileSource = sources.SourceOf(schema.aiprofile);
        listing.maps.push_back(std::move(map));
    }
    return listing;
}

std::string WithAiProfile(std::string_view ota, std::string_view profile,
                          std::optional<int> schema) {
    const TdfDocument doc = ReadTdf(ota);
    const auto spans = ProfileValueSpans(ota, doc, schema);
    if (spans.empty()) {
        if (!schema) throw MapError("no schema of the map names a profile");
        const auto blocks = SchemasOf(doc, nullptr);
        const bool exists = std::any_of(blocks.begin(), blocks.end(), [&](const SchemaBlock& b) {
            return b.number == *schema;
        });
        throw MapError(exists ? "schema " + std::to_string(*schema) + " names no profile"
                              : "the map has no schema " + std::to_string(*schema));
    }
    return ReplaceSpans(ota, spans, profile);
}

bool DiffersOnlyInAiProfile(std::string_view a, std::string_view b) {
    auto withoutValues = [](std::string_view text) {
        return ReplaceSpans(text, ProfileValueSpans(text, ReadTdf(text), std::nullopt), "");
    };
    return withoutValues(a) == withoutValues(b);
}

std::string ProfileNameProblem(std::string_view name) {
    if (name.empty()) return "a profile needs a name";
    if (IsBlankChar(name.front()) || IsBlankChar(name.back()))
        return "a profile's name cannot begin or end with a blank";
    for (char c : name) {
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f)
            return "a profile's name cannot hold control characters";
        if (std::strchr(";{}[]/\\", c))
            return std::string("a profile's name cannot hold '") + c + "'";
    }
    return {};
}

std::vector<std::string> UseProfileOnMaps(const std::string& gameDir, const std::string& profile,
                                          const std::vector<std::string>& maps,
                                          std::optional<int> schema) {
    if (std::string problem = ProfileNameProblem(profile); !problem.empty())
        throw MapError("'" + profile + "': " + problem + ".");
    std::vector<std::string> skipped;
    MapIndex index(gameDir, skipped);
    const std::string folder = GameSubfolder(gameDir, "maps");

    struct Change {
        std::string destination, text;
    };
    std::vector<Change> changes;
    for (const std::string& name : maps) {
        const MapLocation& loc = FindMap(index, name);
        try {
            std::string text = WithAiProfile(MapIndex::CurrentText(loc), profile, schema);
            std::string destination =
                loc.loosePath.empty() ? JoinPath(folder, loc.entry->name) : loc.loosePath;
            changes.push_back({std::move(destination), std::move(text)});
        } catch (const MapError& e) {
            throw MapError("The map '" + loc.name + "' was not changed: " + e.what() + ".");
        }
    }
    if (IsRegularFile(folder))
        throw MapError("Cannot write into '" + folder + "': it is a file, not a folder.");
    if (!IsDirectory(folder) && ::mkdir(folder.c_str(), 0777) != 0)
        throw MapError("Cannot create the folder '" + folder + "': " + std::strerror(errno) + ".");

    // Every file is staged before any is committed, so a folder that cannot
    // be written changes nothing.
    std::vector<std::unique_ptr<StagedFile>> staged;
    std::vector<std::string> written;
    try {
        for (const Change& c : changes)
            staged.push_back(std::make_unique<StagedFile>(c.destination, c.text));
        for (auto& file : staged) {
            file->Commit();
            written.push_back(file->Name());
        }
    } catch (const FileError& e) {
        std::string message = e.what();
        if (!written.empty())
            message += " (" + std::to_string(written.size()) + " of " +
                       std::to_string(changes.size()) + " maps were written before)";
        throw MapError(message);
    }
    return written;
}

std::vector<RestoreOutcome> RestoreMaps(const std::string& gameDir,
                                        const std::vector<std::string>& maps) {
    std::vector<std::string> skipped;
    MapIndex index(gameDir, skipped);
    std::vector<RestoreOutcome> outcomes;
    for (const std::string& name : maps) {
        RestoreOutcome out;
        out.map = name;
        const MapLocation* loc = index.Find(name);
        try {
            if (!loc) throw MapError("The game has no map '" + name + "'.");
            out.map = loc->name;
            if (loc->loosePath.empty() || !IsRegularFile(loc->loosePath)) {
                out.restored = true;
                out.message = loc->name + " already uses the game's own profiles.";
            } else if (!loc->entry) {
                out.message = loc->looseShown + " was left alone: the game has no archived map "
                                                "to go back to.";
            } else if (!DiffersOnlyInAiProfile(MapIndex::LooseText(*loc),
                                               MapIndex::ArchivedText(*loc))) {
                out.message = loc->looseShown + " was left alone: it differs from " +
                              loc->archivedShown + " in more than its profiles.";
            } else if (std::remove(loc->loosePath.c_str()) != 0) {
                out.message = "Cannot remove '" + loc->loosePath + "': " + std::strerror(errno) + ".";
            } else {
                out.restored = out.removed = true;
                out.message = "Removed " + loc->looseShown + ": " + loc->name +
                              " uses the game's own profiles again.";
            }
        } catch (const MapError& e) {
            out.message = e.what();
        }
        outcomes.push_back(std::move(out));
    }
    return outcomes;
}

} // namespace vantrel
