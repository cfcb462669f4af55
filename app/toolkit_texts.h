// The toolkit's own texts (its file dialog, the menus of its text fields) in the language of ours.
//
// Made by `main` right after the application, for as long as that lives.
#pragma once

#include <QTranslator>

namespace hopsel {

class ToolkitTexts {
  public:
    /// English where the toolkit's translations are not installed.
    ToolkitTexts();
    ~ToolkitTexts();
    ToolkitTexts(const ToolkitTexts&) = delete;
    ToolkitTexts& operator=(const ToolkitTexts&) = delete;

  private:
    QTranslator translator_;
};

} // namespace hopsel
