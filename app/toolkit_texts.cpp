#include "app/toolkit_texts.h"

#include "model/texts/l10n.h"

#include <QCoreApplication>
#include <QLibraryInfo>

namespace hopsel {

ToolkitTexts::ToolkitTexts() {
    if (l10n::language() == L10nLanguage::ko &&
        translator_.load("qtbase_ko", QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&translator_);
}

ToolkitTexts::~ToolkitTexts() { QCoreApplication::removeTranslator(&translator_); }

} // namespace hopsel
