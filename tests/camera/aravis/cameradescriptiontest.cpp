// The description of the tests' own camera, as other software than this would read it.
#include <algorithm>
#include <utility>

#include <QFile>
#include <QMap>
#include <QSet>
#include <QStringList>
#include <QUuid>
#include <QXmlStreamReader>

#include <gtest/gtest.h>

namespace {

const QString NAMESPACE = QStringLiteral("http://www.genicam.org/GenApi/Version_1_1");

/// What stands first in a node of any kind, in the order of the standard's schema.
const QStringList COMMON{"ToolTip", "Description",    "DisplayName",  "Visibility", "DocuURL",      "IsDeprecated",
                         "EventID", "pIsImplemented", "pIsAvailable", "pIsLocked",  "pBlockPolling"};

/// And behind it, of each kind that the description uses. What is separated by bars stands in one place.
const QMap<QString, QStringList> BY_KIND{
  {"Category", {"pFeature"}},
  {"Integer", {"Value|pValue", "Min|pMin", "Max|pMax", "Inc|pInc", "Unit", "Representation", "pSelected"}},
  {"Float", {"Value|pValue", "Min|pMin", "Max|pMax", "Inc|pInc", "Unit", "Representation"}},
  {"Enumeration", {"EnumEntry", "Value|pValue", "pSelected"}},
  {"EnumEntry", {"Value"}},
  {"Command", {"Value|pValue", "CommandValue|pCommandValue"}},
  {"IntSwissKnife", {"pVariable", "Formula", "Unit", "Representation"}},
  {"Converter", {"pVariable", "FormulaTo", "FormulaFrom", "pValue", "Unit"}},
  {"IntReg", {"Address|pAddress|pIndex", "Length|pLength", "AccessMode", "pPort", "Cachable", "Sign", "Endianess"}},
  {"Port", {}}};

/// Counts from 1; 0 for an element that such a node does not have.
int GetPlace(const QString &strKind, const QString &strElement)
{
  const QStringList listOrder = COMMON + BY_KIND.value(strKind);
  const auto itPlace = std::find_if(listOrder.begin(), listOrder.end(), [&](const QString &strPlace) {
    return strPlace.split(QLatin1Char('|')).contains(strElement);
  });
  return itPlace == listOrder.end() ? 0 : static_cast<int>(itPlace - listOrder.begin()) + 1;
}

/// Reads the description and keeps what is wrong with it.
class CReader {
public:
  explicit CReader(QIODevice &file) : m_xml(&file)
  {
    if (m_xml.readNextStartElement()) {
      ReadRoot();
    }
    if (m_xml.hasError()) {
      Report(m_xml.errorString());
    }
    for (const QString &strName : std::as_const(m_setUsed)) {
      if (!m_setNodes.contains(strName)) {
        m_listFaults << QStringLiteral("there is no node %1").arg(strName);
      }
    }
  }

  int CountNodes() const { return m_setNodes.size(); }
  std::string GetFaults() const { return m_listFaults.join(QLatin1Char('\n')).toStdString(); }

private:
  void Report(const QString &strFault)
  {
    m_listFaults << QStringLiteral("line %1: %2").arg(m_xml.lineNumber()).arg(strFault);
  }

  void ReadRoot()
  {
    const QXmlStreamAttributes attributes = m_xml.attributes();
    if (m_xml.name() != QLatin1String("RegisterDescription") || m_xml.namespaceUri() != NAMESPACE) {
      Report(QStringLiteral("unexpected element"));
    }
    for (const char *pNumber : {"SchemaMajorVersion", "SchemaMinorVersion", "SchemaSubMinorVersion", "MajorVersion",
                                "MinorVersion", "SubMinorVersion"}) {
      bool bNumber = false;
      attributes.value(QLatin1String(pNumber)).toInt(&bNumber);
      if (!bNumber) {
        Report(QString::fromLatin1(pNumber));
      }
    }
    for (const char *pGuid : {"ProductGuid", "VersionGuid"}) {
      if (QUuid(attributes.value(QLatin1String(pGuid)).toString()).isNull()) {
        Report(QString::fromLatin1(pGuid));
      }
    }
    if (!attributes.hasAttribute("ModelName") || !attributes.hasAttribute("VendorName") ||
        !QStringList{"None", "IIDC", "GEV", "CL"}.contains(attributes.value("StandardNameSpace").toString())) {
      Report(QStringLiteral("names"));
    }
    while (m_xml.readNextStartElement()) {
      ReadNode();
    }
  }

  /// Each element in its place, once unless there may be several.
  void ReadNode()
  {
    const QString strKind = m_xml.name().toString();
    const QString strName = m_xml.attributes().value(QLatin1String("Name")).toString();
    if (!BY_KIND.contains(strKind) || strName.isEmpty()) {
      Report(QStringLiteral("unexpected node %1").arg(strKind));
    }
    if (strKind != QLatin1String("EnumEntry")) {
      if (m_setNodes.contains(strName)) {
        Report(QStringLiteral("a second %1").arg(strName));
      }
      m_setNodes << strName;
    }
    int nLast = 0;
    while (m_xml.readNextStartElement()) {
      const QString strElement = m_xml.name().toString();
      const int nPlace = GetPlace(strKind, strElement);
      const bool bMany = QStringList{"pFeature", "EnumEntry", "pVariable", "pIndex", "pSelected"}.contains(strElement);
      if (nPlace == 0 || nPlace < nLast || (nPlace == nLast && !bMany)) {
        Report(QStringLiteral("unexpected element %1 of %2").arg(strElement, strName));
      }
      nLast = std::max(nPlace, nLast);
      ReadElement(strElement);
    }
  }

  void ReadElement(const QString &strElement)
  {
    if (strElement == QLatin1String("EnumEntry")) {
      ReadNode();
      return;
    }
    const QString strText = m_xml.readElementText();
    if (strElement[0] == QLatin1Char('p')) {
      m_setUsed << strText;
    }
  }

  QXmlStreamReader m_xml;
  QSet<QString> m_setNodes;
  QSet<QString> m_setUsed;
  QStringList m_listFaults;
};

} // namespace

TEST(CameraDescription, IsWellFormedAndItsElementsStandInTheOrderOfTheStandard)
{
  QFile file(QStringLiteral(GIGE_CAMERA_XML));
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const CReader reader(file);
  EXPECT_EQ(reader.GetFaults(), "");
  EXPECT_GT(reader.CountNodes(), 40);
}
