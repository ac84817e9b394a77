#include "host/window/toolbartext.h"

#include <QRegularExpression>

namespace ffc::host {

QString GetToolBarText(const QString &strMenuText)
{
  static const QRegularExpression bracketed(QStringLiteral("\\(&.\\)"));
  static const QRegularExpression dots(QStringLiteral("\\.\\.\\.$"));
  return QString(strMenuText).remove(bracketed).remove(dots).remove(QLatin1Char('&')).trimmed();
}

} // namespace ffc::host
