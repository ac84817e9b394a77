#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <QString>

#include <gtest/gtest.h>

#include "host/options/language.h"

namespace {

const QRegularExpression LITERAL(R"-("((?:[^"\\]|\\.)*)")-");

/// Every text in the sources that passes through a translation.
QSet<QString> ListSourceTexts()
{
  const QRegularExpression call(
    R"-((?:\btr\(|\bTranslate\(|QT_TRANSLATE_NOOP\("\w+",)\s*((?:"(?:[^"\\]|\\.)*"\s*)+))-");
  QSet<QString> setTexts;
  for (const char *pFolder : {FFC_SOURCE_DIR "/host", FFC_SOURCE_DIR "/quality"}) {
    QDirIterator it(QString::fromUtf8(pFolder), {"*.cpp"}, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
      QFile file(it.next());
      EXPECT_TRUE(file.open(QIODevice::ReadOnly));
      QRegularExpressionMatchIterator itCall = call.globalMatch(QString::fromUtf8(file.readAll()));
      while (itCall.hasNext()) {
        QString strText;
        QRegularExpressionMatchIterator itPart = LITERAL.globalMatch(itCall.next().captured(1));
        while (itPart.hasNext()) {
          strText += itPart.next().captured(1);
        }
        setTexts.insert(strText.replace(QStringLiteral("\\n"), QStringLiteral("\n")));
      }
    }
  }
  return setTexts;
}

/// Source texts and their translations, over all contexts.
QMap<QString, QString> ReadTranslations()
{
  QFile file(QStringLiteral(FFC_SOURCE_DIR "/host/translations/ffchost_zh.ts"));
  EXPECT_TRUE(file.open(QIODevice::ReadOnly));
  const QString strContent = QString::fromUtf8(file.readAll());
  const QRegularExpression message(R"-(<source>(.*?)</source>\s*<translation>(.*?)</translation>)-",
                                   QRegularExpression::DotMatchesEverythingOption);
  const auto Plain = [](QString strText) {
    return strText.replace("&lt;", "<").replace("&gt;", ">").replace("&quot;", "\"").replace("&amp;", "&");
  };
  QMap<QString, QString> mapTexts;
  for (QRegularExpressionMatchIterator it = message.globalMatch(strContent); it.hasNext();) {
    const QRegularExpressionMatch match = it.next();
    mapTexts.insert(Plain(match.captured(1)), Plain(match.captured(2)));
  }
  return mapTexts;
}

QSet<QString> ListMarkers(const QString &strText, const char *pPattern)
{
  QSet<QString> setMarkers;
  const QRegularExpression pattern(QLatin1String(pPattern), QRegularExpression::CaseInsensitiveOption);
  for (QRegularExpressionMatchIterator it = pattern.globalMatch(strText); it.hasNext();) {
    setMarkers.insert(it.next().captured(0).toLower());
  }
  return setMarkers;
}

} // namespace

TEST(HostTranslation, HasEveryTextOfTheHostAndNoOther)
{
  const QSet<QString> setSources = ListSourceTexts();
  const QMap<QString, QString> mapTexts = ReadTranslations();
  EXPECT_GT(setSources.size(), 100);
  for (const QString &strSource : setSources) {
    EXPECT_FALSE(mapTexts.value(strSource).isEmpty()) << "no translation: " << strSource.toStdString();
  }
  for (const QString &strText : mapTexts.keys()) {
    EXPECT_TRUE(setSources.contains(strText)) << "not used any more: " << strText.toStdString();
  }
}

TEST(HostTranslation, KeepsPlacesForValuesAndKeys)
{
  const QMap<QString, QString> mapTexts = ReadTranslations();
  for (auto it = mapTexts.cbegin(); it != mapTexts.cend(); ++it) {
    for (const char *pPattern : {"%[0-9]", "&[a-z0-9]"}) {
      EXPECT_EQ(ListMarkers(it.key(), pPattern), ListMarkers(it.value(), pPattern)) << it.key().toStdString();
    }
  }
}

TEST(HostTranslation, IsCompiledIn)
{
  {
    const CHostLanguage language(true);
    EXPECT_EQ(QCoreApplication::translate("CorrectionState", "corrected"), QString::fromUtf8("已校正"));
  }
  EXPECT_EQ(QCoreApplication::translate("CorrectionState", "corrected"), QString("corrected"));
  const CHostLanguage language(false);
  EXPECT_EQ(QCoreApplication::translate("CorrectionState", "corrected"), QString("corrected"));
}
