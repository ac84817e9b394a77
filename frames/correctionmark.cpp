#include "frames/correctionmark.h"

#include <QJsonDocument>

namespace ffc::frames {

QJsonObject MakeCorrectionMark(const QString &strFlat, const QString &strSha256, const QString &strTool)
{
  return {{QStringLiteral("flat"), strFlat}, {QStringLiteral("sha256"), strSha256}, {QStringLiteral("tool"), strTool}};
}

QString ToLine(const QJsonObject &object)
{
  return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

QString GetMarkPath(const QString &strFile)
{
  return strFile + QStringLiteral(".json");
}

} // namespace ffc::frames
