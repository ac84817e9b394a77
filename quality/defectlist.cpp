#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include "quality/defects.h"

namespace ffc::quality {
namespace {

const QString MAP = QStringLiteral("DefectPixelMap");
const QString PIXEL = QStringLiteral("Pixel");

Result<std::vector<SDefect>> ParseXml(const QByteArray &byteList)
{
  std::vector<SDefect> listDefects;
  QXmlStreamReader xml(byteList);
  while (!xml.atEnd()) {
    if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() == PIXEL) {
      bool bColumn = false;
      bool bLine = false;
      SDefect stDefect;
      stDefect.nColumn = xml.attributes().value(QStringLiteral("x")).toUInt(&bColumn);
      stDefect.nLine = xml.attributes().value(QStringLiteral("y")).toUInt(&bLine);
      if (!bColumn || !bLine) {
        return Failure(QStringLiteral("has a pixel without whole numbers x and y in line %1.").arg(xml.lineNumber()));
      }
      listDefects.push_back(stDefect);
    }
  }
  if (xml.hasError()) {
    return Failure(QStringLiteral("is no whole XML: line %1: %2.").arg(xml.lineNumber()).arg(xml.errorString()));
  }
  return listDefects;
}

} // namespace

QByteArray MakeDefectsCsv(const std::vector<SDefect> &listDefects)
{
  QByteArray byteList = "x,y,kind,bright_percent,dark_dn,noise_times\n";
  for (const SDefect &stDefect : listDefects) {
    byteList += QStringLiteral("%1,%2,%3,%4,%5,%6\n")
                  .arg(stDefect.nColumn)
                  .arg(stDefect.nLine)
                  .arg(GetKindNames(stDefect.nKinds))
                  .arg(stDefect.dBrightPercent, 0, 'f', 2)
                  .arg(stDefect.dDarkDn, 0, 'f', 2)
                  .arg(stDefect.dNoiseTimes, 0, 'f', 2)
                  .toLatin1();
  }
  return byteList;
}

QByteArray MakeDefectsXml(const std::vector<SDefect> &listDefects, uint32_t nWidth, uint32_t nHeight)
{
  QByteArray byteMap;
  QXmlStreamWriter xml(&byteMap);
  xml.setAutoFormatting(true);
  xml.writeStartDocument();
  xml.writeStartElement(MAP);
  xml.writeAttribute(QStringLiteral("width"), QString::number(nWidth));
  xml.writeAttribute(QStringLiteral("height"), QString::number(nHeight));
  xml.writeAttribute(QStringLiteral("count"), QString::number(listDefects.size()));
  for (const SDefect &stDefect : listDefects) {
    xml.writeEmptyElement(PIXEL);
    xml.writeAttribute(QStringLiteral("x"), QString::number(stDefect.nColumn));
    xml.writeAttribute(QStringLiteral("y"), QString::number(stDefect.nLine));
    xml.writeAttribute(QStringLiteral("kind"), GetKindNames(stDefect.nKinds));
  }
  xml.writeEndElement();
  xml.writeEndDocument();
  return byteMap;
}

Result<std::vector<SDefect>> ParseDefects(const QByteArray &byteList)
{
  if (byteList.trimmed().startsWith('<')) {
    return ParseXml(byteList);
  }
  std::vector<SDefect> listDefects;
  int nNumber = 0;
  for (const QByteArray &byteLine : byteList.split('\n')) {
    ++nNumber;
    const QList<QByteArray> listFields = byteLine.trimmed().split(',');
    if (byteLine.trimmed().isEmpty() || (nNumber == 1 && listFields[0].trimmed() == "x")) {
      continue;
    }
    bool bColumn = false;
    bool bLine = false;
    SDefect stDefect;
    stDefect.nColumn = listFields[0].trimmed().toUInt(&bColumn);
    stDefect.nLine = listFields.value(1).trimmed().toUInt(&bLine);
    if (!bColumn || !bLine) {
      return Failure(QStringLiteral("has no pixel x,y in line %1.").arg(nNumber));
    }
    listDefects.push_back(stDefect);
  }
  return listDefects;
}

} // namespace ffc::quality
