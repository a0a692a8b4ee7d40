// The small interfaces through which the rules reach the outside world:
// the progress form, message boxes, the settings store, the clock, random
// numbers, the AI's name fields, the shell and restarting the program.
// The desktop program, the command-line program and the tests each provide
// their own implementations.
#pragma once

#include "base/text.h"

#include <cstdint>
#include <ctime>
#include <map>
#include <string>

namespace vantrel {

// The progress form frmLoad: a status line (lblStatus) and a progress bar
// (prbMain). The bar's rules live here; the form only shows the values.
class Progress {
  public:
    virtual ~Progress() = default;

    void SetStatus(const std::string& text) {
        status_ = text;
        OnChange();
    }
    const std::string& Status() const { return status_; }

    int Maximum() const { return max_; }
    int Value() const { return value_; }
    void SetMaximum(int max) {
        if (max < 0) return;
        max_ = max;
        if (value_ > max_) value_ = max_;
        OnChange();
    }
    void AddMaximum(int n) { SetMaximum(max_ + n); }
    // A value outside 0..Maximum is not applied (and is not an error).
    void SetValue(int value) {
        if (value < 0 || value > max_) return;
        value_ = value;
        OnChange();
    }
    void AddValue(int n) { SetValue(value_ + n); }

    virtual void Show() {}          // show modelessly
    virtual void Repaint() {}       // bring the screen up to date
    virtual void Close() {}         // unload the form
    virtual void ProcessEvents() {} // let pending window events run

  protected:
    virtual void OnChange() {}

  private:
    std::string status_ = "Loading....";
    int max_ = 100;
    int value_ = 0;
};

enum class MsgIcon { None, Critical, Question, Exclamation, Information };
enum class MsgButtons { OK, YesNo, YesNoCancel };
enum class MsgAnswer { OK, Yes, No, Cancel };

class Messages {
  public:
    virtual ~Messages() = default;
    virtual MsgAnswer Show(const std::string& text, const std::string& title, MsgButtons buttons,
                           MsgIcon icon) = 0;
    void Inform(const std::string& text, const std::string& title, MsgIcon icon) {
        Show(text, title, MsgButtons::OK, icon);
    }
    virtual void Beep() {}
};

// Section "Options" of the per-user settings store.
class SettingsStore {
  public:
    virtual ~SettingsStore() = default;
    virtual std::string Get(const std::string& key, const std::string& fallback) = 0;
    virtual void Set(const std::string& key, const std::string& value) = 0;
    // Where the values are kept, for messages ("" when nowhere in particular).
    virtual std::string Location() { return {}; }
};

class Clock {
  public:
    virtual ~Clock() = default;
    virtual std::time_t Now() = 0;             // wall-clock time (dates in profiles)
    virtual double SecondsSinceMidnight() = 0; // with fractions (random seeds)
};

class RandomSource {
  public:
    virtual ~RandomSource() = default;
    virtual void Seed(double seed) = 0;
    virtual double Next() = 0; // uniform in [0, 1)
};

// The AI's name and author as the Settings dialog holds them, and the banner.
class SettingsFields {
  public:
    virtual ~SettingsFields() = default;
    virtual std::string AIName() = 0; // txtAIname
    virtual void SetAIName(const std::string& s) = 0;
    virtual std::string Author() = 0; // txtAuthor
    virtual void SetAuthor(const std::string& s) = 0;
    virtual std::string Banner() = 0; // caption of lblAIName
    virtual void SetBanner(const std::string& s) = 0;
};

// Starting the program again and opening documents with the desktop.
class Shell {
  public:
    virtual ~Shell() = default;
    virtual bool RestartSelf() = 0;                           // start a new instance
    virtual bool IsRestart() { return false; }                // started by RestartSelf
    virtual bool OpenDocument(const std::string& target) = 0; // false when it failed
};

// ---------------------------------------------------------------------------
// Plain implementations (command line, tests).
// ---------------------------------------------------------------------------
class PlainSettingsFields : public SettingsFields {
  public:
    std::string AIName() override { return name_; }
    void SetAIName(const std::string& s) override { name_ = WithoutControlCharacters(s); }
    std::string Author() override { return author_; }
    void SetAuthor(const std::string& s) override { author_ = WithoutControlCharacters(s); }
    std::string Banner() override { return banner_; }
    void SetBanner(const std::string& s) override { banner_ = WithoutControlCharacters(s); }

  private:
    std::string name_ = "New";
    std::string author_ = "N/A";
    std::string banner_ = "New AI";
};

// A settings store kept in memory (tests, batch runs that must not touch
// the user's stored options).
class MemorySettingsStore : public SettingsStore {
  public:
    std::string Get(const std::string& key, const std::string& fallback) override {
        auto it = values_.find(key);
        return it == values_.end() ? fallback : it->second;
    }
    void Set(const std::string& key, const std::string& value) override { values_[key] = value; }
    bool Has(const std::string& key) const { return values_.count(key) != 0; }

  private:
    std::map<std::string, std::string> values_;
};

class SystemClock : public Clock {
  public:
    std::time_t Now() override; // honours SOURCE_DATE_EPOCH
    double SecondsSinceMidnight() override;
};

// A small, fast generator; the same seed gives the same draws.
class DefaultRandom : public RandomSource {
  public:
    void Seed(double seed) override;
    double Next() override;

  private:
    std::uint64_t state_ = 0x853c49e6748fea9bULL;
};

} // namespace vantrel
