// The unit card: one unit's title, picture, build priority and number
// produced, with two sliders and two entry fields in a grid layout. The card
// holds only the unit's index; every value it shows is read from, and every
// edit written to, the unit record in Definitions.
//
// Focus: a click anywhere on the card focuses its priority slider (the
// card's focus proxy) and activates the card. Tab goes priority slider,
// priority field, number slider, number field, then on to the next card
// (through `navigate`, since the board makes cards only for rows in view).
#pragma once

#include "catalogue/definitions.h"
#include "forms/unit_card_rules.h"
#include "forms/unit_edits.h"

#include <QFrame>

#include <functional>
#include <optional>
#include <string>

class QLabel;
class QLineEdit;
class QSlider;

namespace vantrel {

// Which control of the card a navigation step focuses on the card it leads to.
enum class CardControl { Same, First, Last };

class frmUnit : public QFrame {
    Q_OBJECT
  public:
    explicit frmUnit(Definitions& defs, QWidget* parent = nullptr);

    // The manual edit's input box: title and prompt in, the answer out
    // (nullopt when cancelled). Tests replace it.
    std::function<std::optional<std::string>(const std::string& title, const std::string& prompt)>
        InputBox;

    // Shows a unit as it is under `title`: picture, tooltip, values, the
    // excluded notice of an excluded unit, inactive look. Never writes the
    // unit; a value above the slider's maximum shows with the slider at its end.
    void Show(int unitIndex, const QPixmap& picture, const std::string& title);
    int UnitIndex() const { return unitIndex_; }
    // Shows the unit's present values after a change made elsewhere (the unit
    // table, undo); writes nothing.
    void ShowValues();

    void Activate();
    void Deactivate();
    bool IsActive() const { return active_; }
    bool Contains(const QWidget* w) const;

    // The player's edits (slider drag, wheel and keys, entry fields, manual
    // edit) end here: the one place the card writes each value of its unit.
    // Weight from a priority position in hundredths, Limit from a whole number.
    void EditWeight(int position);
    void EditLimit(int limit);

    static QColor ActiveCaptionColor();
    static QColor ActiveTitleColor();
    static QColor InactiveCaptionColor();

  signals:
    // Once for every value the player commits (a drag released, a key, a
    // wheel notch, a typed value) with the value before it. Key and wheel
    // steps on one slider while it keeps the focus share a `gesture` number
    // (never 0); a drag or a typed value has gesture 0.
    void valueCommitted(int unitIndex, UnitField field, double before, int gesture);
    // Ctrl+Down, Ctrl+Up, Ctrl+Home, Ctrl+End anywhere on the card; Tab from
    // the last control and Shift+Tab from the first.
    void navigate(CardStep step, CardControl control);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    QLabel* lblUnitName = nullptr;
    QLabel* imgUnit = nullptr;
    QLabel* lblPriority = nullptr;
    QLabel* lblWeight = nullptr;
    QLineEdit* txtWeight = nullptr;
    QSlider* sldPriority = nullptr;
    QLabel* lblNumbers = nullptr;
    QLabel* lblLimit = nullptr;
    QLineEdit* txtLimit = nullptr;
    QSlider* sldNumbers = nullptr;
    QLabel* lblExclude = nullptr;

    // An edit of one value runs from BeginEdit to EndEdit, however many
    // slider notifications it takes.
    void BeginEdit(UnitField field);
    void EndEdit(UnitField field);
    bool NavigationKey(const QKeyEvent* key);
    void CommitWeight(bool enter);
    void CommitLimit(bool enter);
    void ManualEdit();
    void OnFocusChanged(QWidget* old, QWidget* now);
    void SetLook(bool active);
    void SetIncludedView(bool included);
    void SetSliders();
    void ShowWeight();
    void ShowLimit();
    void ShowFields(bool shown);
    vtUnit& Unit();

    Definitions& defs_;
    int unitIndex_ = 0;
    bool active_ = false;
    int wheelTurn_ = 0; // wheel turn short of a whole notch (1/8 degrees)
    int gesture_ = 0;   // key and wheel steps of the focused slider
    std::optional<double> editBefore_[2]; // Weight, Limit: value when the edit began
    bool changedBefore_ = false;          // the unsaved-changes flag then
};

} // namespace vantrel
