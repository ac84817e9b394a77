/// \file
/// The language of the host's own texts.
#pragma once

#include <QTranslator>

namespace ffc::host {

/// While it lives, the host speaks that language; English is built in. Made before the windows, after the application.
class CLanguage {
public:
  explicit CLanguage(bool bChinese);
  ~CLanguage();
  CLanguage(const CLanguage &) = delete;
  CLanguage &operator=(const CLanguage &) = delete;

private:
  QTranslator m_translator;
  QTranslator m_toolkit; ///< file boxes and buttons of the toolkit, where its translations are installed
};

} // namespace ffc::host
