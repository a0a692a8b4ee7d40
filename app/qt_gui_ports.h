// Desktop implementations of the message boxes and the shell.
#pragma once

#include "base/ports.h"

class QWidget;

namespace vantrel {

class QtMessages : public Messages {
  public:
    explicit QtMessages(QWidget* parent = nullptr) : parent_(parent) {}
    void SetParent(QWidget* parent) { parent_ = parent; }
    MsgAnswer Show(const std::string& text, const std::string& title, MsgButtons buttons,
                   MsgIcon icon) override;
    void Beep() override;

  private:
    QWidget* parent_;
};

// A restarted instance carries "--restarted" on its command line.
class QtShell : public Shell {
  public:
    bool RestartSelf() override;
    bool IsRestart() override;
    bool OpenDocument(const std::string& target) override;
};

} // namespace vantrel
