// The history of value edits: every change of a unit's weight, limit or
// build-set flag, wherever it is made (a card, the unit table, a bulk set,
// Randomize, Merge, the Build Set dialog), is one step of a QUndoStack. So is
// a change of the profile's header: the AI's name and author (Settings) and
// the parent list (Merge).
//
// Key and wheel steps on one value of a card merge into one step while they
// form one gesture (the slider kept the focus) and follow each other within
// a second, so a held key or a turned wheel is undone at once.
//
// The unsaved-changes flag follows the stack: after every push, undo and redo
// it is set unless the stack is back at its clean index (the values of the
// last New, Open or Save). Marking the stack clean leaves the flag alone, so
// the file commands' own rules for it still hold.
#pragma once

#include "base/ports.h"
#include "catalogue/definitions.h"
#include "forms/unit_edits.h"

#include <QObject>
#include <QUndoStack>

#include <string>
#include <vector>

namespace vantrel {

// The texts of the profile's header that a step may change.
struct HeaderTexts {
    std::string Name, Author, Banner, ParentAIs;
    bool operator==(const HeaderTexts&) const = default;
};

class EditHistory : public QObject {
    Q_OBJECT
  public:
    // Steps kept: a step holds 28 bytes per unit it touched, so even bulk
    // sets on 20,000 units stay within a few tens of megabytes.
    static constexpr int UndoLimit = 100;

    // Steps of one gesture further apart than this are steps of their own.
    static constexpr double MergeSeconds = 1.0;

    EditHistory(Definitions& defs, Clock& clock, QObject* parent = nullptr);

    QUndoStack& Stack() { return stack_; }

    // Where the AI's name, author and banner live (the Settings dialog).
    void SetFields(SettingsFields* fields) { fields_ = fields; }
    HeaderTexts Header() const;
    // Records what a command changed in the units and in the header (from
    // `headerBefore` to now) as one step; nothing when nothing differs.
    void Record(const std::string& name, UnitChanges changes, const HeaderTexts& headerBefore);

    // Records changes already made in the units as one step named `name`
    // ("Randomize", "Merge"). Nothing is recorded when no value differs.
    void Record(const std::string& name, UnitChanges changes);
    // Records one value that a card changed; `before` is its earlier value.
    // A step of the same gesture (not 0) on the same value within
    // MergeSeconds of the last one joins that step.
    void RecordEdit(int unit, UnitField field, double before, int gesture = 0);
    // Sets `field` of every listed unit (bounded as on the card) as one step.
    void Set(const std::vector<int>& units, UnitField field, double value);
    // A fresh history (New, Open): nothing to undo, the values count as saved.
    void Reset();
    // The present values are the saved ones (Save).
    void MarkSaved() { stack_.setClean(); }

  signals:
    // Values of units in firstUnit..lastUnit may have changed (views refresh them).
    void valuesChanged(int firstUnit, int lastUnit);

  private:
    friend class ValuesCommand;
    void SetHeader(const HeaderTexts& header);
    Definitions& defs_;
    SettingsFields* fields_ = nullptr;
    Clock& clock_;
    QUndoStack stack_;
};

} // namespace vantrel
