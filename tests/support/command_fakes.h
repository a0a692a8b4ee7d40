// Scripted stand-ins for the file and folder dialogs, profile files, clock and progress form, so
// the file commands run in tests without a modal window (messages and shell: test_support.h).
#pragma once

#include "base/ports.h"
#include "base/staged_file.h"
#include "forms/folder_picker.h"
#include "mainwindow/file_commands.h"
#include "support/test_support.h"

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace vantrel::testing {

struct DialogCall {
    std::string title, filter, initialFolder, proposedName;
};

// Each Open or Save call takes the next scripted result; none left means Cancel.
class ScriptedFileDialogs : public FileDialogs {
  public:
    std::deque<FileDialogResult> opens, saves;
    std::vector<DialogCall> openCalls, saveCalls;
    FileDialogResult Open(const std::string& title, const std::string& filter,
                          const std::string& initialFolder) override {
        openCalls.push_back({title, filter, initialFolder, ""});
        return Next(opens, initialFolder);
    }
    FileDialogResult Save(const std::string& title, const std::string& filter,
                          const std::string& initialFolder,
                          const std::string& proposedName) override {
        saveCalls.push_back({title, filter, initialFolder, proposedName});
        return Next(saves, initialFolder);
    }

  private:
    static FileDialogResult Next(std::deque<FileDialogResult>& queue, const std::string& start) {
        if (queue.empty()) return FileDialogResult{false, "", 1, start};
        FileDialogResult r = queue.front();
        queue.pop_front();
        return r;
    }
};

// The folder dialog: answers `answer` and notes the folder it was offered.
class ScriptedPicker : public FolderPicker {
  public:
    std::optional<std::string> PickFolder(const std::string&, const std::string& start) override {
        offered = start;
        return answer;
    }
    std::optional<std::string> answer;
    std::string offered;
};

struct ProfileCall {
    std::string op; // "save", "read", "tessaly"
    std::string path;
    bool merge = false;
};

// Records calls; `failure` makes every call throw ProfileError. A save writes
// the AI's name into the file and its build-set file beside it, committed as
// a pair the way the profile writer does, so that tests see what was written.
class FakeProfileIO : public ProfileIO {
  public:
    std::vector<ProfileCall> calls;
    std::string failure;
    std::function<void(Definitions&)> onRead; // what reading the profile writes

    void Save(ProfileContext& ctx, const std::string& path) override {
        Record("save", path, false);
        StagedFile set(BuildSetPath(path), "[BUILD SET]\r\n");
        StagedFile profile(path, "[AI] " + ctx.fields.AIName() + "\r\n");
        CommitTogether(profile, set);
    }
    void Read(ProfileContext& ctx, const std::string& path, bool merge) override {
        Record("read", path, merge);
        if (onRead) onRead(ctx.defs);
    }
    void ReadTessaly(ProfileContext&, const std::string& path, bool merge) override {
        Record("tessaly", path, merge);
    }

  private:
    void Record(const char* op, const std::string& path, bool merge) {
        calls.push_back({op, path, merge});
        if (!failure.empty()) throw ProfileError("Cannot use '" + path + "': " + failure);
    }
};

using test::FixedClock;
using test::RecordingProgress;

} // namespace vantrel::testing
