#include "catalogue/text.h"
#include "mainwindow/file_commands.h"
#include "mainwindow/game_commands.h"
#include "mainwindow/help_file.h"
#include "startup/paths.h"
#include "support/command_fakes.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

namespace vantrel {
namespace {

using namespace vantrel::testing;

// The window as the commands see it: records what they asked for, in order.
class RecordingWindow : public MainWindowHooks {
  public:
    explicit RecordingWindow(Definitions& defs, CountingProgress& progress)
        : defs_(defs), progress_(progress) {}
    std::vector<std::string> events;
    bool inUse = true;
    bool mergeAnswersOK = false;
    void ReselectCurrentSide() override { events.push_back("reselect"); }
    void SetInUse(bool use) override {
        inUse = use;
        events.push_back(use ? "in use" : "out of use");
    }
    void ShowSettings(bool forNewAI) override {
        events.push_back(forNewAI ? "settings new" : "settings");
    }
    void ShowMerge() override {
        events.push_back(progress_.visible ? "merge over progress" : "merge");
        defs_.DialogOK = mergeAnswersOK;
    }

  private:
    Definitions& defs_;
    CountingProgress& progress_;
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
    CountingProgress progress;
    PlainSettingsFields fields;
    FixedClock clock;
    ScriptedFileDialogs dialogs;
    FakeProfileIO profiles;
    RecordingWindow window{defs, progress};
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

TEST_F(FileCommandsTest, SavePromptAsksOnceAndCancelStopsTheCaller) {
    EXPECT_TRUE(commands.Closing()); // nothing changed: no question
    EXPECT_TRUE(messages.shown.empty());

    defs.Changed = true;
    messages.answers = {MsgAnswer::Cancel};
    EXPECT_FALSE(commands.Closing());
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].text, "Save Changes to New AI now?");
    EXPECT_EQ(messages.shown[0].buttons, MsgButtons::YesNoCancel);

    // The prompt cleared Changed, so a second close goes without asking.
    EXPECT_TRUE(commands.Closing());
    EXPECT_EQ(messages.shown.size(), 1u);

    // New stops at Cancel too.
    defs.Changed = true;
    defs.ParentAIs = "Old;Parents";
    messages.answers = {MsgAnswer::Cancel};
    commands.New();
    EXPECT_EQ(defs.ParentAIs, "Old;Parents");
    EXPECT_TRUE(window.events.empty());
}

TEST_F(FileCommandsTest, NewGoesOnAfterYesEvenWhenSaveIsCancelled) {
    defs.Changed = true;
    defs.ParentAIs = "Old;Parents";
    fields.SetAIName("Mine");
    messages.answers = {MsgAnswer::Yes};
    commands.New(); // the save dialog is cancelled (nothing scripted)
    EXPECT_EQ(dialogs.saveCalls.size(), 1u);
    EXPECT_TRUE(profiles.calls.empty());
    EXPECT_EQ(defs.ParentAIs, "");
    EXPECT_EQ(fields.AIName(), "New");
    EXPECT_EQ(window.events, (std::vector<std::string>{"settings new", "reselect"}));
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
    EXPECT_TRUE(defs.Changed);
    EXPECT_EQ(settings.Get("LastDir", ""), "/data/ais/");
    EXPECT_EQ(progress.shows, 1);
    EXPECT_EQ(progress.closes, 1);
    EXPECT_EQ(window.events, (std::vector<std::string>{"out of use", "reselect", "in use"}));

    dialogs.opens = {Chosen("/data/ais/Turtle.tsy", 1)};
    commands.Open();
    EXPECT_EQ(profiles.calls.back().op, "read");
}

TEST_F(FileCommandsTest, CancelledOpenStillRemembersTheFolderItEndedIn) {
    dialogs.opens = {FileDialogResult{false, "", 1, "/elsewhere/"}};
    commands.Open();
    EXPECT_EQ(commands.RememberedFolder(), "/elsewhere/");
    EXPECT_FALSE(defs.Changed);
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
    EXPECT_EQ(profiles.calls[1].op, "tessaly");
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].text, "Merge complete");
}

TEST_F(FileCommandsTest, SaveProposesTheSettingsNameAndSetsChanged) {
    fields.SetAIName("Krogoth Rush");
    const std::string target = defs.AppDir + "Krogoth Rush";
    dialogs.saves = {Chosen(target)};
    commands.Save();
    ASSERT_EQ(dialogs.saveCalls.size(), 1u);
    EXPECT_EQ(dialogs.saveCalls[0].proposedName, "Krogoth Rush");
    EXPECT_EQ(dialogs.saveCalls[0].filter, "AI Text Files|*.txt");
    ASSERT_EQ(profiles.calls.size(), 1u);
    EXPECT_EQ(profiles.calls[0].path, target); // used as typed, no extension added
    EXPECT_TRUE(defs.Changed);                 // a close straight after saving still asks
    EXPECT_EQ(settings.Get("LastDir", ""), defs.AppDir);
    EXPECT_TRUE(window.inUse);
}

TEST_F(FileCommandsTest, FailedReadOrWriteIsShownAndTheWindowIsBackInUse) {
    const std::string target = defs.AppDir + "Old.txt";
    std::ofstream(target) << "old profile";
    profiles.failure = "disk full";
    dialogs.saves = {Chosen(target)};
    commands.Save();
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_NE(messages.shown[0].text.find("Old.txt"), std::string::npos);
    EXPECT_NE(messages.shown[0].text.find("disk full"), std::string::npos);
    EXPECT_FALSE(progress.visible);
    EXPECT_TRUE(window.inUse);
    EXPECT_FALSE(settings.Has("LastDir"));
    EXPECT_EQ(ReadFile(target), "old profile");

    dialogs.opens = {Chosen("/m/Broken.txt")};
    commands.Merge();
    EXPECT_EQ(messages.shown.size(), 2u);
    // No Merge dialog over a failed read.
    EXPECT_EQ(std::count(window.events.begin(), window.events.end(), "merge"), 0);
}

// Install copies the file as saved: an unsaved profile is saved first (after
// asking), and a file of the same name in the game is replaced only after asking.
TEST_F(FileCommandsTest, InstallIntoGameSavesFirstAndAsksBeforeReplacing) {
    const std::string game = app / "game";
    fields.SetAIName("Rush");
    dialogs.saves = {Chosen(app / "Rush.txt")};
    InstallIntoGame(commands, messages, game); // no game folder: nothing asked or saved
    EXPECT_TRUE(dialogs.saveCalls.empty());

    MakeDirectory(game);
    InstallIntoGame(commands, messages, game);
    ASSERT_EQ(messages.shown.size(), 3u);
    EXPECT_EQ(messages.shown[1].buttons, MsgButtons::YesNo); // save first?
    EXPECT_EQ(ReadFile(game + "/ai/Rush.txt"), "[AI] Rush\r\n");

    fields.SetAIName("Changed");
    std::ofstream(app / "Rush.txt", std::ios::binary) << "saved again";
    messages.answers = {MsgAnswer::No};
    InstallIntoGame(commands, messages, game);
    EXPECT_NE(messages.shown.back().text.find("already exists"), std::string::npos);
    EXPECT_EQ(ReadFile(game + "/ai/Rush.txt"), "[AI] Rush\r\n");
    InstallIntoGame(commands, messages, game);
    EXPECT_EQ(ReadFile(game + "/ai/Rush.txt"), "saved again");
    EXPECT_EQ(dialogs.saveCalls.size(), 1u);

    // A game profile opens as Open does, but LastDir stays.
    settings.Set("LastDir", "/profiles/");
    commands.OpenGameProfile(game + "/TOTALA1.HPI#ai/DEFAULT.TXT");
    EXPECT_EQ(profiles.calls.back().op, "read");
    EXPECT_EQ(profiles.calls.back().path, game + "/TOTALA1.HPI#ai/DEFAULT.TXT");
    EXPECT_EQ(settings.Get("LastDir", ""), "/profiles/");
    EXPECT_TRUE(defs.Changed);
}

TEST_F(FileCommandsTest, ExternalWritesAiTxtInTheProgramFolderAndOpensIt) {
    fields.SetAIName("Outside");
    commands.External();
    const std::string path = defs.AppDir + "AI.txt";
    EXPECT_EQ(ReadFile(path), "[AI] Outside\r\n");
    EXPECT_EQ(shell.opened, std::vector<std::string>{path});
    EXPECT_EQ(messages.beeps, 0);
    EXPECT_FALSE(progress.visible);

    shell.openResult = false;
    commands.External();
    EXPECT_EQ(messages.beeps, 1);
    EXPECT_TRUE(messages.shown.empty());

    profiles.failure = "read-only";
    commands.External();
    EXPECT_EQ(shell.opened.size(), 2u); // nothing opened after a failed write
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_TRUE(window.inUse);
}

TEST(SideMenuRules, FurtherSidesSkipTheFirstAndAnyPartOfArmCore) {
    Definitions defs;
    const char* sides[] = {"GOK", "ARM", "ronin WARRIORS", "AR", "core", "", "Voss"};
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

TEST(HelpFile, CopiedIntoTheProgramFolderWhenMissing) {
    const test::TempDir appDir, shareDir, noneDir;
    const std::string app = appDir.path() + "/";
    const std::string share = shareDir.path() + "/";
    std::ofstream(share + "Vant1.hlp") << "<h1>help</h1>";
    EXPECT_EQ(EnsureHelpFile(app, {share + "missing.hlp", share + "Vant1.hlp"}), app + "Vant1.hlp");
    EXPECT_EQ(ReadFile(app + "Vant1.hlp"), "<h1>help</h1>");
    // An existing copy is kept as it is.
    std::ofstream(app + "Vant1.hlp") << "edited";
    EXPECT_EQ(EnsureHelpFile(app, {share + "Vant1.hlp"}), app + "Vant1.hlp");
    EXPECT_EQ(ReadFile(app + "Vant1.hlp"), "edited");
    EXPECT_EQ(EnsureHelpFile(noneDir.path() + "/", {share + "nope"}), "");
}

} // namespace
} // namespace vantrel
