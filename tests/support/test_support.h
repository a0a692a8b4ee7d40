// Helpers shared by the tests: temporary folders and scripted ports.
#pragma once

#include "base/ports.h"

#include <ctime>
#include <string>
#include <vector>

namespace vantrel::test {

// A fresh folder below the system's temporary folder, removed with its content.
class TempDir {
  public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;
    const std::string& path() const { return path_; }
    std::string operator/(const std::string& name) const { return path_ + "/" + name; }
    std::string File(const std::string& name) const { return *this / name; }
    // Names of the entries in the folder, sorted.
    std::vector<std::string> Entries() const;

  private:
    std::string path_;
};

// Runs the vantrel-cli that $VANTREL_CLI names (a test failure when it is unset)
// with `args`, through the shell, `prefix` put before the program (e.g. "timeout 20 ").
struct CliResult {
    int status = -1;
    std::string out;
    std::string err;
};
CliResult RunCli(const std::string& args, const std::string& prefix = "");

// Names of the entries of a folder (files and folders, hidden ones too), sorted.
std::vector<std::string> FolderEntries(const std::string& dir);

void WriteText(const std::string& path, const std::string& text);
std::string ReadText(const std::string& path);

// Records every message and answers questions from a script (default Yes).
class ScriptedMessages : public Messages {
  public:
    struct Shown {
        std::string text, title;
        MsgButtons buttons;
        MsgIcon icon;
    };
    std::vector<Shown> shown;
    std::vector<MsgAnswer> answers; // consumed front to back; empty: Yes
    int beeps = 0;

    MsgAnswer Show(const std::string& text, const std::string& title, MsgButtons buttons,
                   MsgIcon icon) override;
    void Beep() override { ++beeps; }
};

// Records status texts, shows and closes, and the value at every repaint.
class RecordingProgress : public Progress {
  public:
    std::vector<std::string> statuses;
    std::vector<int> values;
    int shows = 0, closes = 0, repaints = 0;
    bool visible = false;
    void Show() override { ++shows, visible = true; }
    void Close() override { ++closes, visible = false; }
    void Repaint() override {
        ++repaints;
        values.push_back(Value());
    }

  protected:
    void OnChange() override {
        if (statuses.empty() || statuses.back() != Status()) statuses.push_back(Status());
    }
};

class RecordingShell : public Shell {
  public:
    int restarts = 0;
    bool restarted = false; // this instance was started by RestartSelf
    std::vector<std::string> opened;
    bool openResult = true;
    bool RestartSelf() override {
        ++restarts;
        return true;
    }
    bool IsRestart() override { return restarted; }
    bool OpenDocument(const std::string& target) override {
        opened.push_back(target);
        return openResult;
    }
};

// A clock that stands still: at `when` (by default noon UTC of the given date, so the local
// date is the same in every zone within eleven hours of UTC) and `seconds` past midnight.
class FixedClock : public Clock {
  public:
    FixedClock() = default;
    FixedClock(int year, int month, int day);
    std::time_t when = 1700000000;
    double seconds = 4321.5; // tests move it on
    std::time_t Now() override { return when; }
    double SecondsSinceMidnight() override { return seconds; }
};

// A generator that returns a fixed sequence (then repeats it).
class SequenceRandom : public RandomSource {
  public:
    explicit SequenceRandom(std::vector<double> values) : values_(std::move(values)) {}
    void Seed(double seed) override { seeds.push_back(seed); }
    double Next() override { return values_[next_++ % values_.size()]; }
    std::vector<double> seeds;

  private:
    std::vector<double> values_;
    std::size_t next_ = 0;
};

} // namespace vantrel::test
