#include "forms/frmFirstStart.h"

#include "base/paths.h"
#include "forms/qt_folder_picker.h"
#include "forms/qt_form_parts.h"
#include "forms/qt_icon.h"
#include "forms/qt_text.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace vantrel {

namespace {
enum Answer { Quit = QDialog::Rejected, Extract = 2, Continue = 3 };

QLabel* WrappedLabel(QWidget* parent, const char* name) {
    auto* label = new QLabel(parent);
    label->setObjectName(name);
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}
} // namespace

frmFirstStart::frmFirstStart(QWidget* parent)
    : QDialog(parent), desktopPicker_(std::make_unique<QtFolderPicker>(this)),
      picker_(desktopPicker_.get()) {
    setObjectName("frmFirstStart");
    setWindowTitle("Vantrel");
    setWindowIcon(QIcon(VantrelIcon(64)));

    lblLooked = WrappedLabel(this, "lblLooked");
    lblFound = WrappedLabel(this, "lblFound");
    const GameFolderRow gameRow = NewGameFolderRow(this, "&Game folder");
    txtGameDir = gameRow.field;
    txtGameDir->setMinimumWidth(360);
    cmdBrowse = gameRow.browse;
    cmdExtract = NewButton(this, "cmdExtract", "Extract Units", true);
    cmdContinue = NewButton(this, "cmdContinue", "Continue Without Units");
    cmdQuit = NewButton(this, "cmdQuit", "Quit");

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdExtract);
    buttons->addWidget(cmdContinue);
    buttons->addWidget(cmdQuit);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(lblLooked);
    layout->addWidget(lblFound);
    layout->addLayout(gameRow.layout);
    layout->addSpacing(8);
    layout->addLayout(buttons);

    connect(cmdBrowse, &QPushButton::clicked, this, &frmFirstStart::OnBrowse);
    connect(txtGameDir, &QLineEdit::textChanged, this, &frmFirstStart::UpdateExtract);
    connect(cmdExtract, &QPushButton::clicked, this, [this] { done(Extract); });
    connect(cmdContinue, &QPushButton::clicked, this, [this] { done(Continue); });
    connect(cmdQuit, &QPushButton::clicked, this, &QDialog::reject);
}

frmFirstStart::~frmFirstStart() = default;

void frmFirstStart::SetFolderPicker(FolderPicker* picker) {
    picker_ = picker ? picker : desktopPicker_.get();
}

NoUnitsChoice frmFirstStart::Ask(Definitions& defs, const std::string& unitsFolder,
                                 bool afterExtract) {
    const QString units = QtPath(unitsFolder);
    lblLooked->setText(
        afterExtract
            ? "Extracting found no unit files for the folder '" + units +
                  "'. Check the game folder below, or put zip packages of units (*.zip) into "
                  "the program folder, and extract again."
            : "No units found. Vantrel looked for unit files (*.fbi) in the folder '" + units +
                  "'. It extracts them from the game's archives (*.hpi, *.ccx, *.gp?, *.swx) "
                  "and from zip packages (*.zip) in the program folder.");
    lblFound->setText(IsDirectory(defs.GameDir)
                          ? "Game folder found: " + QtPath(defs.GameDir)
                          : QString("No game folder was found. Name the folder where Total "
                                    "Annihilation is installed:"));
    txtGameDir->setText(QtPath(defs.GameDir));
    UpdateExtract();
    adjustSize();
    CentreOnParent(this);
    const int answer = exec();
    if (answer == Extract) {
        defs.GameDir = StdPath(txtGameDir->text().trimmed());
        return NoUnitsChoice::Extract;
    }
    return answer == Continue ? NoUnitsChoice::Continue : NoUnitsChoice::Quit;
}

void frmFirstStart::OnBrowse() {
    if (auto folder = picker_->PickFolder("Game folder", StdPath(txtGameDir->text())))
        txtGameDir->setText(QtPath(*folder));
}

void frmFirstStart::UpdateExtract() {
    // An empty field extracts the zip packages alone; a folder that is not
    // there cannot be extracted from.
    const QString folder = txtGameDir->text().trimmed();
    const bool usable = folder.isEmpty() || IsDirectory(StdPath(folder));
    cmdExtract->setEnabled(usable);
    cmdExtract->setToolTip(usable ? QString() : "There is no folder '" + folder + "'.");
}

} // namespace vantrel
