#include "forms/frmSettings.h"

#include "base/text.h"
#include "forms/qt_form_parts.h"
#include "forms/qt_text.h"
#include "forms/settings_rules.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace vantrel {

frmSettings::frmSettings(Definitions& defs, QWidget* parent) : QDialog(parent), defs_(defs) {
    setObjectName("frmSettings");
    setWindowTitle("Settings");
    setModal(true);

    Label1 = new QLabel("AI Name", this);
    Label1->setObjectName("Label1");
    txtAIname = new QLineEdit("New", this);
    txtAIname->setObjectName("txtAIname");
    txtAIname->setToolTip("Enter AI Name Here");
    txtAIname->setMaxLength(28);
    txtAuthor = new QLineEdit("N/A", this);
    txtAuthor->setObjectName("txtAuthor");
    txtAuthor->setToolTip("Enter Author of AI Here");
    txtAuthor->setMaxLength(28);
    cmdOK = new QPushButton("&OK", this);
    cmdOK->setObjectName("cmdOK");
    cmdOK->setDefault(true);
    cmdCancel = new QPushButton("&Cancel", this);
    cmdCancel->setObjectName("cmdCancel");
    Label2 = new QLabel("Author", this);
    Label2->setObjectName("Label2");
    Label1->setBuddy(txtAIname);
    Label2->setBuddy(txtAuthor);

    auto* grid = new QGridLayout(this);
    grid->addWidget(Label1, 0, 0);
    grid->addWidget(txtAIname, 0, 1);
    grid->addWidget(Label2, 1, 0);
    grid->addWidget(txtAuthor, 1, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    grid->addLayout(buttons, 2, 0, 1, 2);
    txtAIname->setMinimumWidth(220);
    setTabOrder(txtAIname, txtAuthor);
    setTabOrder(txtAuthor, cmdOK);
    setTabOrder(cmdOK, cmdCancel);
    FixedAndCentred(this);

    connect(txtAIname, &QLineEdit::textChanged, this,
            [this](const QString& text) { cmdOK->setEnabled(IsAcceptableAIName(StdText(text))); });
    connect(cmdOK, &QPushButton::clicked, this, &frmSettings::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmSettings::cmdCancel_Click);
}

void frmSettings::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    // Typing replaces the name, whatever it is.
    txtAIname->setFocus();
    txtAIname->selectAll();
}

void frmSettings::cmdOK_Click() {
    SetBanner(AIName() + " AI");
    if (Tag == "New") ResetUnitsForNewAI(defs_);
    Tag.clear();
    QDialog::accept();
}

void frmSettings::cmdCancel_Click() {
    Tag.clear();
    QDialog::reject();
}

void frmSettings::reject() {
    cmdCancel_Click();
}

std::string frmSettings::AIName() {
    return StdText(txtAIname->text());
}
void frmSettings::SetAIName(const std::string& s) {
    txtAIname->setText(QtText(WithoutControlCharacters(s)));
}
std::string frmSettings::Author() {
    return StdText(txtAuthor->text());
}
void frmSettings::SetAuthor(const std::string& s) {
    txtAuthor->setText(QtText(WithoutControlCharacters(s)));
}

std::string frmSettings::Banner() {
    return banner_ ? StdText(banner_->text()) : bannerText_;
}
void frmSettings::SetBanner(const std::string& s) {
    bannerText_ = WithoutControlCharacters(s);
    if (banner_) banner_->setText(QtText(bannerText_));
}

} // namespace vantrel
