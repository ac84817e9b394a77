/// \file
/// The language of the host's own texts.
#pragma once

#include <QTranslator>

/// While it lives, the host speaks that language; English is built in. Made before the windows, after the application.
class CHostLanguage {
public:
  explicit CHostLanguage(bool bChinese);
  ~CHostLanguage();
  CHostLanguage(const CHostLanguage &) = delete;
  CHostLanguage &operator=(const CHostLanguage &) = delete;

private:
  QTranslator m_translator;
};
