/// \file
/// Memory that runs out within a translation.
#pragma once

#include <new>
#include <string>

#include <QCoreApplication>
#include <QTranslator>

/// While one lives, the texts of a context, or one of them, find no memory to be translated with.
class CFailingTranslator : public QTranslator {
public:
  /// \param pText empty: all of the context
  explicit CFailingTranslator(const char *pContext, const char *pText = "") : m_strContext(pContext), m_strText(pText)
  {
    QCoreApplication::installTranslator(this);
  }

  bool isEmpty() const override { return false; }
  QString translate(const char *pContext, const char *pText, const char *, int) const override
  {
    if (m_strContext == pContext && (m_strText.empty() || m_strText == pText)) {
      throw std::bad_alloc();
    }
    return {};
  }

private:
  const std::string m_strContext;
  const std::string m_strText;
};
