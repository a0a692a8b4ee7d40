#include "mainwindow/qt_edit_history.h"

#include "forms/qt_text.h"

#include <QUndoCommand>

#include <algorithm>

namespace vantrel {

// One step: the old and new values of the units it touched.
class ValuesCommand : public QUndoCommand {
  public:
    ValuesCommand(EditHistory& history, const std::string& name, UnitChanges changes)
        : QUndoCommand(QtText(name).replace('&', "&&")), // shown in menus as typed
          history_(history), changes_(std::move(changes)) {
        auto [low, high] = std::minmax_element(
            changes_.begin(), changes_.end(),
            [](const UnitChange& a, const UnitChange& b) { return a.Unit < b.Unit; });
        first_ = low->Unit;
        last_ = high->Unit;
    }
    void undo() override { Apply(true); }
    void redo() override { Apply(false); }

  private:
    void Apply(bool undo) {
        ApplyChanges(history_.defs_, changes_, undo);
        emit history_.valuesChanged(first_, last_);
    }
    EditHistory& history_;
    UnitChanges changes_;
    int first_ = 0;
    int last_ = 0;
};

EditHistory::EditHistory(Definitions& defs, QObject* parent) : QObject(parent), defs_(defs) {
    stack_.setUndoLimit(UndoLimit);
    connect(&stack_, &QUndoStack::indexChanged, this,
            [this] { defs_.Changed = !stack_.isClean(); });
}

void EditHistory::Record(const std::string& name, UnitChanges changes) {
    if (!AnyDifference(changes)) return;
    // The first redo writes the values the units already have.
    stack_.push(new ValuesCommand(*this, name, std::move(changes)));
}

void EditHistory::RecordEdit(int unit, UnitField field, double before) {
    UnitChange change{unit, ValuesOf(defs_.Units[unit]), ValuesOf(defs_.Units[unit])};
    switch (field) {
    case UnitField::Weight:
        change.Before.Weight = static_cast<float>(before);
        break;
    case UnitField::Limit:
        change.Before.Limit = static_cast<float>(before);
        break;
    case UnitField::Include:
        change.Before.Include = before != 0;
        break;
    }
    Record(EditName(defs_, field, change.After.Include, {unit}), {change});
}

void EditHistory::Set(const std::vector<int>& units, UnitField field, double value) {
    if (units.empty()) return;
    UnitChanges changes = SetUnitValues(defs_, units, field, value);
    Record(EditName(defs_, field, value != 0, units), std::move(changes));
}

void EditHistory::Reset() {
    const bool changed = defs_.Changed; // New and Open keep their own rule for the flag
    stack_.clear();
    defs_.Changed = changed;
    // New and Open wrote every unit outside the history: the views show them anew.
    emit valuesChanged(1, defs_.Units.UBound());
}

} // namespace vantrel
