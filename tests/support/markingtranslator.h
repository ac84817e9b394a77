/// \file
/// Translations that tell their context.
#pragma once

#include <QCoreApplication>
#include <QString>
#include <QTranslator>

namespace ffc::test {

/// While one lives, every text that is translated reads "CONTEXT: text".
class CMarkingTranslator : public QTranslator {
public:
  CMarkingTranslator() { QCoreApplication::installTranslator(this); }

  bool isEmpty() const override { return false; }
  QString translate(const char *pContext, const char *pText, const char *, int) const override
  {
    return QString::fromUtf8(pContext) + QStringLiteral(": ") + QString::fromUtf8(pText);
  }
};

} // namespace ffc::test
