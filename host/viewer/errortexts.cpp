#include "host/viewer/errortexts.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QStringList>

namespace ffc::host {
namespace {

/// %1 and so on stand for any text.
const char *const KNOWN[] = {
  QT_TRANSLATE_NOOP("ErrorTexts", "There is not enough memory."),
  QT_TRANSLATE_NOOP("ErrorTexts", "The image library does not compute coefficients of these frames."),
  QT_TRANSLATE_NOOP("ErrorTexts", "There is not enough memory for the camera."),
  QT_TRANSLATE_NOOP("ErrorTexts", "There is not enough memory for the camera's frames."),
  QT_TRANSLATE_NOOP("ErrorTexts", "There is not enough memory for the recorded frames."),
  QT_TRANSLATE_NOOP("ErrorTexts", "There is not enough memory for the simulated camera."),
  QT_TRANSLATE_NOOP("ErrorTexts", "There is no folder \"%1\"."),
  QT_TRANSLATE_NOOP("ErrorTexts", "The folder \"%1\" has %2 frames in \"%3\" files; at least %4 are needed (%5)."),
  QT_TRANSLATE_NOOP("ErrorTexts", "The recording cannot be played: there is no pixel format \"%1\"."),
  QT_TRANSLATE_NOOP("ErrorTexts", "The file \"%1\" cannot be read: %2."),
  QT_TRANSLATE_NOOP("ErrorTexts", "The camera does not answer any more."),
  QT_TRANSLATE_NOOP("ErrorTexts", "A frame of %1 bytes cannot be received."),
  QT_TRANSLATE_NOOP("ErrorTexts", "The camera's flash \"%1\" cannot be written: %2."),
  QT_TRANSLATE_NOOP("ErrorTexts", "The camera's flash \"%1\" is damaged."),
  QT_TRANSLATE_NOOP("ErrorTexts", "The simulated camera has no pixel format \"%1\"."),
  QT_TRANSLATE_NOOP("ErrorTexts", "the camera's pixel format cannot be set"),
  QT_TRANSLATE_NOOP("ErrorTexts", "this program was built without support for real cameras"),
  QT_TRANSLATE_NOOP("ErrorTexts", "this camera has no user set \"UserSet0\""),
  QT_TRANSLATE_NOOP("ErrorTexts", "the camera does not answer"),
};

/// \return false where the text is not of the pattern
bool Match(const QString &strPattern, const QString &strText, QStringList &listParts)
{
  static const QRegularExpression place(QStringLiteral("%[1-9]"));
  QString strExpression;
  for (const QString &strPart : strPattern.split(place)) {
    strExpression +=
      (strExpression.isEmpty() ? QString() : QStringLiteral("(.+)")) + QRegularExpression::escape(strPart);
  }
  const QRegularExpressionMatch match =
    QRegularExpression(QRegularExpression::anchoredPattern(strExpression)).match(strText);
  listParts = match.capturedTexts().mid(1);
  return match.hasMatch();
}

QString Capitalise(QString strText)
{
  if (!strText.isEmpty()) {
    strText[0] = strText[0].toUpper();
  }
  return strText;
}

} // namespace

QString TranslateError(const QString &strError)
{
  const QString strPrefix = QStringLiteral("camera: "); // for a terminal; the window shows whose error it is
  const QString strText = strError.startsWith(strPrefix) ? strError.mid(strPrefix.size()) : strError;
  for (const char *pKnown : KNOWN) {
    QStringList listParts;
    if (Match(QString::fromUtf8(pKnown), strText, listParts)) {
      QString strTranslated = QCoreApplication::translate("ErrorTexts", pKnown);
      for (const QString &strPart : listParts) {
        strTranslated = strTranslated.arg(strPart);
      }
      return Capitalise(strTranslated);
    }
  }
  return Capitalise(strText);
}

QString TranslateError(const std::string &strError)
{
  return TranslateError(QString::fromStdString(strError));
}

} // namespace ffc::host
