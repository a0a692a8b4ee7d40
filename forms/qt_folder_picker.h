// The desktop's folder dialog behind FolderPicker.
#pragma once

#include "forms/folder_picker.h"

class QWidget;

namespace vantrel {

class QtFolderPicker : public FolderPicker {
  public:
    explicit QtFolderPicker(QWidget* parent = nullptr) : parent_(parent) {}
    std::optional<std::string> PickFolder(const std::string& title,
                                          const std::string& start) override;

  private:
    QWidget* parent_;
};

} // namespace vantrel
