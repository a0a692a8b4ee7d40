// The Settings dialog: the AI's name and author. It stays loaded for the
// whole run; its two text boxes are where the program keeps the name and the
// author, and it backs the SettingsFields that the profile code uses.
#pragma once

#include "base/ports.h"
#include "catalogue/definitions.h"

#include <QDialog>
#include <QString>

class QLabel;
class QLineEdit;
class QPushButton;

namespace vantrel {

class frmSettings : public QDialog, public SettingsFields {
    Q_OBJECT
  public:
    explicit frmSettings(Definitions& defs, QWidget* parent = nullptr);

    // The main window's banner label (lblAIName) that OK renames.
    void SetBannerLabel(QLabel* banner) { banner_ = banner; }

    // SettingsFields. Control characters from a file never reach the fields
    // or the banner.
    std::string AIName() override;
    void SetAIName(const std::string& s) override;
    std::string Author() override;
    void SetAuthor(const std::string& s) override;
    std::string Banner() override;
    void SetBanner(const std::string& s) override;

    // "New" between File, New and the next OK or Cancel.
    QString Tag;

    QLabel* Label1 = nullptr;
    QLineEdit* txtAIname = nullptr;
    QLineEdit* txtAuthor = nullptr;
    QPushButton* cmdOK = nullptr;
    QPushButton* cmdCancel = nullptr;
    QLabel* Label2 = nullptr;

  public slots:
    void cmdOK_Click();
    void cmdCancel_Click();

  protected:
    void reject() override; // Escape and the window's close button: Cancel
    void showEvent(QShowEvent* event) override;

  private:
    Definitions& defs_;
    QLabel* banner_ = nullptr;
    std::string bannerText_ = "New AI"; // used while no banner label is attached
};

} // namespace vantrel
