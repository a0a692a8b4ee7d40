#include "base/paths.h"
#include "base/text.h"
#include "forms/settings_rules.h"
#include "mainwindow/file_commands.h"
#include "mainwindow/game_commands.h"
#include "mainwindow/help_file.h"
#include "support/command_fakes.h"
#include "support/profile_support.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

namespace vantrel {
namespace {

using namespace vantrel::testing;

// The window as the commands see it: records what they asked for, in order.
class RecordingWindow : public MainWindowHooks {
  public:
    explicit RecordingWindow(RecordingProgress& progress) : progress_(progress) {}
    std::vector<std::string> events;
    bool inUse = true;
    bool mergeAnswersOK = false;
    bool settingsAnswersOK = true;
    void ReselectCurrentSide() override { events.push_back("reselect"); }
    void SetInUse(bool use) override {
        inUse = use;
        events.push_back(use ? "in use" : "out of use");
    }
    bool ShowSettings(bool forNewAI) override {
        events.push_back(forNewAI ? "settings new" : "settings");
        return settingsAnswersOK;
    }
    bool ShowMerge() override {
        events.push_back(progress_.visible ? "merge over progress" : "merge");
        return mergeAnswersOK;
    }
    void ShowStatus(const std::string& text) override { status = text; }
    std::string status;

  private:
    RecordingProgress& progress_;
};

std::string ReadFile(const std::string& path) {
    return ReadWholeFile(path).value_or("");
}

class FileCommandsTest : public ::testing::Test {
  protected:
    test::TempDir app;
    Definitions defs;
    test::ScriptedMessages messages;
    MemorySettingsStore settings;
    test::RecordingShell shell;
    RecordingProgress progress;
    PlainSettingsFields fields;
    FixedClock clock;
    ScriptedFileDialogs dialogs;
    FakeProfileIO profiles;
    RecordingWindow window{progress};
    FileCommands commands{FileCommandPorts{defs, messages, settings, shell, progress, fields, clock,
                                           dialogs, profiles},
                          window};

    void SetUp() override {
        defs.AppDir = app.path() + "/";
        defs.LastDir = "/profiles/";
        commands.Load();
    }
    static FileDialogResult Chosen(const std::string& path, int filter = 1) {
        return FileDialogResult{true, path, filter, path.substr(0, path.rfind('/') + 1)};
    }
};

// Cancel, or Yes and then Cancel in the save dialog, stops New, Open and
// closing: nothing is reset and the changes stay unsaved (a failed save:
// FailuresAreShownAndChangeNothing).
TEST_F(FileCommandsTest, SaveQuestionCancelOrACancelledSaveStopsTheCommand) {
    EXPECT_TRUE(commands.Closing()); // nothing changed: no question
    EXPECT_TRUE(messages.shown.empty());
    defs.Profile.Changed = true;
    defs.Profile.ParentAIs = "Old;Parents";
    fields.SetAIName("Mine");
    for (MsgAnswer answer : {MsgAnswer::Cancel, MsgAnswer::Yes}) {
        messages.answers = {answer, answer, answer};
        commands.New();
        commands.Open();
        EXPECT_FALSE(commands.Closing());
    }
    ASSERT_EQ(messages.shown.size(), 6u);
    EXPECT_EQ(messages.shown[0].text, "Save Changes to New AI now?");
    EXPECT_EQ(messages.shown[0].buttons, MsgButtons::YesNoCancel);
    EXPECT_EQ(dialogs.saveCalls.size(), 3u);
    EXPECT_TRUE(dialogs.openCalls.empty());
    EXPECT_EQ(defs.Profile.ParentAIs, "Old;Parents");
    EXPECT_EQ(fields.AIName(), "Mine");
    EXPECT_TRUE(window.events.empty());
    EXPECT_TRUE(defs.Profile.Changed);

    messages.answers = {MsgAnswer::No};
    EXPECT_TRUE(commands.Closing());
    // A successful save counts as saved: closing then asks nothing.
    messages.answers = {MsgAnswer::Yes};
    dialogs.saves = {Chosen(defs.AppDir + "Mine.txt")};
    EXPECT_TRUE(commands.Closing());
    EXPECT_FALSE(defs.Profile.Changed);
    const std::size_t asked = messages.shown.size();
    EXPECT_TRUE(commands.Closing());
    EXPECT_EQ(messages.shown.size(), asked);
}

// New then Cancel in Settings: the name field goes back to the AI that the
// banner still shows, so Save proposes that name and not "New".
TEST_F(FileCommandsTest, NewThenCancelKeepsNameAndBannerInStep) {
    fields.SetAIName("Mine");
    fields.SetBanner("Mine AI");
    defs.Profile.ParentAIs = "Old, ";
    window.settingsAnswersOK = false;
    commands.New();
    EXPECT_EQ(fields.AIName(), "Mine");
    EXPECT_EQ(defs.Profile.ParentAIs, "Old, ");
    EXPECT_EQ(window.events, (std::vector<std::string>{"settings new"}));
    commands.Save();
    EXPECT_EQ(dialogs.saveCalls[0].proposedName, "Mine.txt");
}

TEST_F(FileCommandsTest, OpenChoosesTheReaderByFilterNotByExtension) {
    dialogs.opens = {Chosen("/data/ais/Rush.txt", 2)};
    commands.Open();
    ASSERT_EQ(dialogs.openCalls.size(), 1u);
    EXPECT_EQ(dialogs.openCalls[0].filter, "AI Text File|*.txt|Tessaly 1.x|*.tsy");
    EXPECT_EQ(dialogs.openCalls[0].initialFolder, "/profiles/"); // LastDir at first
    ASSERT_EQ(profiles.calls.size(), 1u);
    EXPECT_EQ(profiles.calls[0].op, "tessaly");
    EXPECT_EQ(profiles.calls[0].path, "/data/ais/Rush.txt");
    EXPECT_FALSE(profiles.calls[0].merge);
    EXPECT_FALSE(defs.Profile.Changed); // the profile is what its file holds: the next Open asks nothing
    EXPECT_EQ(settings.Get("LastDir", ""), "/data/ais/");
    EXPECT_EQ(progress.shows, 1);
    EXPECT_EQ(progress.closes, 1);
    EXPECT_EQ(window.events, (std::vector<std::string>{"out of use", "reselect", "in use"}));

    // Values read above the maxima stay; the status bar counts them.
    profiles.onRead = [](Definitions& d) { test::FillCatalogue(d, {{"A", "KBOT", true, 99, 51}}); };
    dialogs.opens = {Chosen("/data/ais/Turtle.tsy", 1)};
    commands.Open();
    EXPECT_EQ(profiles.calls.back().op, "read");
    EXPECT_EQ(window.status,
              "Opened /data/ais/Turtle.tsy - 2 values are above the maxima of the Options (kept as read).");
}

TEST_F(FileCommandsTest, CancelledOpenStillRemembersTheFolderItEndedIn) {
    dialogs.opens = {FileDialogResult{false, "", 1, "/elsewhere/"}};
    commands.Open();
    EXPECT_EQ(commands.RememberedFolder(), "/elsewhere/");
    EXPECT_FALSE(defs.Profile.Changed);
    EXPECT_TRUE(profiles.calls.empty());
    EXPECT_FALSE(settings.Has("LastDir"));

    commands.Open();
    EXPECT_EQ(dialogs.openCalls[1].initialFolder, "/elsewhere/");
    // Save starts there too but does not move the remembered folder.
    dialogs.saves = {FileDialogResult{false, "", 1, "/third/"}};
    commands.Save();
    EXPECT_EQ(dialogs.saveCalls[0].initialFolder, "/elsewhere/");
    EXPECT_EQ(commands.RememberedFolder(), "/elsewhere/");
}

TEST_F(FileCommandsTest, MergeThenCancelRebuildsStoresLastDirWithoutMergeComplete) {
    dialogs.opens = {Chosen("/m/Other.txt")};
    window.mergeAnswersOK = false;
    commands.Merge();
    ASSERT_EQ(profiles.calls.size(), 1u);
    EXPECT_TRUE(profiles.calls[0].merge);
    // frmLoad is closed before the Merge dialog; the board is rebuilt afterwards.
    EXPECT_EQ(window.events,
              (std::vector<std::string>{"out of use", "merge", "reselect", "in use"}));
    EXPECT_EQ(settings.Get("LastDir", ""), "/m/");
    EXPECT_TRUE(messages.shown.empty()); // no "Merge complete"

    dialogs.opens = {Chosen("/m/Other.tsy", 2)};
    window.mergeAnswersOK = true;
    commands.Merge();
    EXPECT_EQ(dialogs.openCalls[1].title, "Merge");
    EXPECT_EQ(profiles.calls[1].op, "tessaly");
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].text, "Merge complete");
}

TEST_F(FileCommandsTest, SaveAsProposesNameDotTxtAndMovesTheRememberedFolder) {
    fields.SetAIName("Krogoth Rush");
    defs.Profile.Changed = true;
    // A full path typed into the dialog: the folder it names counts at once.
    test::TempDir elsewhere;
    const std::string target = elsewhere.path() + "/Krogoth Rush.txt";
    dialogs.saves = {FileDialogResult{true, target, 1, "/profiles/"}};
    EXPECT_TRUE(commands.Save()); // no current file yet: Save is Save As
    ASSERT_EQ(dialogs.saveCalls.size(), 1u);
    EXPECT_EQ(dialogs.saveCalls[0].title, "Save As");
    EXPECT_EQ(dialogs.saveCalls[0].proposedName, "Krogoth Rush.txt");
    EXPECT_EQ(dialogs.saveCalls[0].filter, "AI Text File|*.txt");
    ASSERT_EQ(profiles.calls.size(), 1u);
    EXPECT_EQ(profiles.calls[0].path, target);
    EXPECT_FALSE(defs.Profile.Changed);
    EXPECT_EQ(settings.Get("LastDir", ""), elsewhere.path() + "/");
    EXPECT_EQ(commands.RememberedFolder(), elsewhere.path() + "/");
    EXPECT_TRUE(window.inUse);

    dialogs.opens = {FileDialogResult{true, "/typed/x/One.txt", 1, "/profiles/"}};
    commands.Open();
    EXPECT_EQ(dialogs.openCalls[0].initialFolder, elsewhere.path() + "/");
    EXPECT_EQ(commands.RememberedFolder(), "/typed/x/");
    EXPECT_EQ(ProposedFileName("Rush.TXT"), "Rush.TXT");
}

// Save writes the current file back only when it is a file of our own: one
// opened or saved here. A profile inside the game, a Tessaly file or none at
// all is saved as, under a proposed name in our format.
TEST_F(FileCommandsTest, SaveWritesBackOnlyACurrentFileOfOurOwn) {
    const std::string mine = app / "Merged.txt", tessaly = app / "Old.tsy";
    std::ofstream(mine) << "Name: Merged\r\n";
    std::ofstream(tessaly) << "[ARMCOM]\r\n";
    fields.SetAIName("Rusher");
    struct Case {
        std::function<void()> open;
        std::string quietlyTo;    // "" : the dialog asks
        std::string proposedName; // what it proposes then
    } cases[] = {
        {[&] { dialogs.opens = {Chosen(mine)}, commands.Open(); }, mine, ""},
        {[&] { dialogs.opens = {Chosen(tessaly, 2)}, commands.Open(); }, "", "Old.txt"},
        {[&] { commands.OpenGameProfile("/g/TOTALA1.HPI#ai/DEFAULT.TXT"); }, "", "DEFAULT.txt"},
        {[&] { commands.New(); }, "", "New.txt"},
    };
    for (const Case& c : cases) {
        defs.Profile.Changed = false;
        c.open();
        defs.Profile.Changed = true;
        dialogs.saveCalls.clear();
        profiles.calls.clear();
        const bool saved = commands.Save(); // a dialog is cancelled
        if (!c.quietlyTo.empty()) {
            EXPECT_TRUE(saved);
            EXPECT_TRUE(dialogs.saveCalls.empty());
            ASSERT_EQ(profiles.calls.size(), 1u);
            EXPECT_EQ(profiles.calls[0].path, c.quietlyTo);
            // Save As proposes the current file, in its folder.
            commands.SaveAs();
            ASSERT_EQ(dialogs.saveCalls.size(), 1u);
            EXPECT_EQ(dialogs.saveCalls[0].proposedName, "Merged.txt");
            EXPECT_EQ(dialogs.saveCalls[0].initialFolder, app.path() + "/");
        } else {
            EXPECT_FALSE(saved);
            ASSERT_EQ(dialogs.saveCalls.size(), 1u) << c.proposedName;
            EXPECT_EQ(dialogs.saveCalls[0].proposedName, c.proposedName);
            EXPECT_TRUE(profiles.calls.empty());
        }
    }
    EXPECT_EQ(SavedStatus(defs, "/p/A.txt"), "Saved /p/A.txt (0 units, 0 excluded)");
}

// A link is followed and stays a link.
TEST_F(FileCommandsTest, SaveFollowsALink) {
    test::TempDir real;
    const std::string link = defs.AppDir + "Linked.txt", pointee = real.path() + "/Real.txt";
    std::ofstream(pointee) << "old";
    ASSERT_EQ(::symlink(pointee.c_str(), link.c_str()), 0);
    fields.SetAIName("Through");
    dialogs.saves = {Chosen(link)};
    EXPECT_TRUE(commands.Save());
    struct stat st {};
    ASSERT_EQ(::lstat(link.c_str(), &st), 0);
    EXPECT_TRUE(S_ISLNK(st.st_mode));
    EXPECT_EQ(ReadFile(pointee), "[AI] Through\r\n");
}

// A file that is neither a header nor a single entry is asked about before
// any reader runs; No leaves everything as it was.
TEST_F(FileCommandsTest, OpeningSomethingElseAsksFirst) {
    const std::string picture = defs.AppDir + "shot.png";
    std::ofstream(picture, std::ios::binary) << std::string("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16);
    messages.answers = {MsgAnswer::No};
    dialogs.opens = {Chosen(picture)};
    commands.Open();
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].text,
              "'shot.png' does not look like an AI profile. Open it anyway?");
    EXPECT_TRUE(profiles.calls.empty());
    EXPECT_FALSE(defs.Profile.Changed);

    messages.answers = {MsgAnswer::Yes};
    dialogs.opens = {Chosen(picture)};
    commands.Merge();
    EXPECT_EQ(messages.shown[1].title, "Merge");
    EXPECT_EQ(profiles.calls.size(), 1u);

    const std::pair<const char*, bool> cases[] = {
        {"Name: Rush AI\r\n", true},        {"\r\n  weight armcom 1.5\r\n", true},
        {"[ARMCOM;]\r\nLimit=3\r\n", true}, {"MZ\x90\0\x03 WEIGHTLESS LIMITS", false},
        {"", false},                         {"a weight 3\r\n", false}};
    for (const auto& [text, profile] : cases)
        EXPECT_EQ(LooksLikeAIProfile(text), profile) << text;
    EXPECT_EQ(WithoutControlCharacters("Ru\x01sh\t\x7f\x85 \xe9"), "Rush \xe9");
}

// A read-only target, a failed write or read: the message names the file and
// the reason, neither file on disk changes, the changes stay unsaved, nothing
// is opened or merged over it and the window is back in use.
TEST_F(FileCommandsTest, FailuresAreShownAndChangeNothing) {
    const std::string txt = defs.AppDir + "Old.txt", set = defs.AppDir + "Old.set";
    test::TempDir scratch;
    enum Command { Save, Close, Merge, External };
    const struct {
        const char* readOnly; // "": every profile read and write fails instead
        Command command;
        const char* names;
    } cases[] = {{"Old.txt", Save, "Old.txt"}, {"Old.set", Save, "Old.set"},
                 {"", Save, "Old.txt"},        {"", Close, "Old.txt"},
                 {"", Merge, "Broken.txt"},    {"", External, "AI.txt"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(::testing::Message() << c.names << " " << c.command);
        std::ofstream(txt) << "old profile";
        std::ofstream(set) << "old set";
        ::chmod(txt.c_str(), 0644);
        ::chmod(set.c_str(), 0644);
        const bool readOnly = *c.readOnly;
        if (readOnly) ::chmod((app / c.readOnly).c_str(), 0444);
        profiles.failure = readOnly ? "" : "disk full";
        defs.Profile.Changed = true;
        messages.answers = {MsgAnswer::Yes};
        dialogs.saves = {Chosen(txt)};
        dialogs.opens = {Chosen("/m/Broken.txt")};
        switch (c.command) {
            case Save: EXPECT_FALSE(commands.Save()); break;
            case Close: EXPECT_FALSE(commands.Closing()); break;
            case Merge: commands.Merge(); break;
            case External: commands.External(scratch.path()); break;
        }
        ASSERT_FALSE(messages.shown.empty());
        EXPECT_NE(messages.shown.back().text.find(c.names), std::string::npos);
        EXPECT_NE(messages.shown.back().text.find(readOnly ? "read-only" : "disk full"),
                  std::string::npos);
        EXPECT_EQ(ReadFile(txt), "old profile");
        EXPECT_EQ(ReadFile(set), "old set");
        EXPECT_TRUE(defs.Profile.Changed);
        EXPECT_FALSE(progress.visible);
        EXPECT_TRUE(window.inUse);
        EXPECT_FALSE(settings.Has("LastDir"));
        EXPECT_EQ(std::count(window.events.begin(), window.events.end(), "merge"), 0);
        EXPECT_TRUE(shell.opened.empty());
    }
}

// Install copies the current file under its own name: unsaved changes are
// saved to it first, a profile with no file of its own is saved as after
// asking, and a file of the same name in the game is replaced only after asking.
TEST_F(FileCommandsTest, InstallIntoGameSavesTheCurrentFileAndAsksBeforeReplacing) {
    const std::string game = app / "game";
    fields.SetAIName("Rush");
    dialogs.saves = {Chosen(app / "Rush.txt")};
    EXPECT_FALSE(InstallIntoGame(commands, messages, game)); // no game folder: nothing saved
    EXPECT_TRUE(dialogs.saveCalls.empty());

    MakeDirectory(game);
    EXPECT_EQ(InstallIntoGame(commands, messages, game), game + "/ai/Rush.txt");
    ASSERT_EQ(messages.shown.size(), 2u);
    EXPECT_EQ(messages.shown[1].buttons, MsgButtons::YesNo); // save first?
    EXPECT_EQ(ReadFile(game + "/ai/Rush.txt"), "[AI] Rush\r\n");

    // Unsaved changes go to the current file without a dialog, then replace
    // the installed copy after asking.
    fields.SetAIName("Changed");
    defs.Profile.Changed = true;
    messages.answers = {MsgAnswer::No};
    EXPECT_FALSE(InstallIntoGame(commands, messages, game));
    EXPECT_NE(messages.shown.back().text.find("already exists"), std::string::npos);
    EXPECT_EQ(ReadFile(app / "Rush.txt"), "[AI] Changed\r\n");
    EXPECT_EQ(ReadFile(game + "/ai/Rush.txt"), "[AI] Rush\r\n");
    EXPECT_TRUE(InstallIntoGame(commands, messages, game));
    EXPECT_EQ(ReadFile(game + "/ai/Rush.txt"), "[AI] Changed\r\n");
    EXPECT_EQ(dialogs.saveCalls.size(), 1u);

    // A game profile opens as Open does, but LastDir stays.
    settings.Set("LastDir", "/profiles/");
    commands.OpenGameProfile(game + "/TOTALA1.HPI#ai/DEFAULT.TXT");
    EXPECT_EQ(profiles.calls.back().op, "read");
    EXPECT_EQ(profiles.calls.back().path, game + "/TOTALA1.HPI#ai/DEFAULT.TXT");
    EXPECT_EQ(settings.Get("LastDir", ""), "/profiles/");
    EXPECT_FALSE(defs.Profile.Changed);
    // Install follows the profile on screen, not the file saved before it.
    messages.answers = {MsgAnswer::No};
    EXPECT_FALSE(InstallIntoGame(commands, messages, game));
    EXPECT_NE(messages.shown.back().text.find("must be saved"), std::string::npos);
    EXPECT_EQ(ReadFile(game + "/ai/Rush.txt"), "[AI] Changed\r\n");
}

TEST_F(FileCommandsTest, ExternalWritesAiTxtInTheFolderItIsGivenAndOpensIt) {
    test::TempDir scratch;
    fields.SetAIName("Outside");
    commands.External(scratch.path());
    const std::string path = scratch.path() + "/AI.txt";
    EXPECT_EQ(ReadFile(path), "[AI] Outside\r\n");
    EXPECT_EQ(shell.opened, std::vector<std::string>{path});
    EXPECT_EQ(messages.beeps, 0);
    EXPECT_FALSE(progress.visible);
    EXPECT_TRUE(commands.CurrentFile().empty()); // the copy is not the player's file

    // Without a viewer the message says where the file is.
    shell.openResult = false;
    commands.External(scratch.path());
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_NE(messages.shown[0].text.find(path), std::string::npos);
}

TEST(SideMenuRules, FurtherSidesSkipTheFirstAndAnyPartOfArmCore) {
    Definitions defs;
    const char* sides[] = {"GOK", "ARM", "ronin WARRIORS", "AR", "core", "", "Voss"};
    defs.Races.Dim(7);
    for (int i = 0; i < 7; ++i)
        defs.Races[i + 1].Name = sides[i];
    EXPECT_EQ(FurtherSideCaptions(defs), (std::vector<std::string>{"Ronin Warriors", "Voss"}));
    EXPECT_TRUE(IsStandardSide("core"));
    EXPECT_FALSE(IsStandardSide("CORES"));
}

TEST(SettingsRules, NamesAndNewAIReset) {
    EXPECT_FALSE(IsAcceptableAIName(""));
    EXPECT_FALSE(IsAcceptableAIName("   "));
    EXPECT_TRUE(IsAcceptableAIName(" x "));
    Definitions defs;
    defs.Units.Dim(2);
    defs.Units[2] = vtUnit{"A", "ARMA", "KBOT", "ARM", "", 3.5f, 7.0f, true, false};
    ResetUnitsForNewAI(defs);
    EXPECT_EQ(defs.Units[2].Weight, 0.0f);
    EXPECT_EQ(defs.Units[2].Limit, 0.0f);
    EXPECT_TRUE(defs.Units[2].Include);
    EXPECT_EQ(defs.Units[2].Name, "A");
}

TEST(PathRules, FolderPartKeepsTheSeparator) {
    EXPECT_EQ(FolderPart("/a/b/c.txt"), "/a/b/");
    EXPECT_EQ(FolderPart("C:\\AI\\x.tsy"), "C:\\AI\\");
    EXPECT_EQ(FolderPart("bare.txt"), "");
}

TEST(HelpFile, WrittenIntoTheProgramFolderWhenMissing) {
    const test::TempDir appDir;
    const std::string app = appDir.path() + "/";
    EXPECT_EQ(EnsureHelpFile(app, "<h1>help</h1>"), app + "Vant1.hlp");
    EXPECT_EQ(ReadFile(app + "Vant1.hlp"), "<h1>help</h1>");
    // An existing copy is kept as it is.
    std::ofstream(app + "Vant1.hlp") << "edited";
    EXPECT_EQ(EnsureHelpFile(app, "<h1>help</h1>"), app + "Vant1.hlp");
    EXPECT_EQ(ReadFile(app + "Vant1.hlp"), "edited");
    EXPECT_EQ(EnsureHelpFile(app + "missing/", "<h1>help</h1>"), "");
}

} // namespace
} // namespace vantrel
