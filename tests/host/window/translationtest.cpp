#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QPair>
#include <QRegularExpression>
#include <QSet>
#include <QString>

#include <gtest/gtest.h>

#include "host/options/language.h"
#include "host/viewer/errortexts.h"
#include "host/window/mainwindow.h"

using namespace ffc::host;

namespace {

const QRegularExpression LITERAL(R"-("((?:[^"\\]|\\.)*)")-");

/// Who asks for a text, and the text.
using Message = QPair<QString, QString>;

/// The class whose member function the place lies in, as the toolkit knows it.
QString FindClass(const QString &strSource, int nPlace)
{
  const QRegularExpression definition(R"-(^(?=\S).*?\b(C[A-Z]\w*)::~?\w+\()-", QRegularExpression::MultilineOption);
  QString strClass;
  for (QRegularExpressionMatchIterator it = definition.globalMatch(strSource); it.hasNext();) {
    const QRegularExpressionMatch match = it.next();
    strClass = match.capturedStart() < nPlace ? match.captured(1) : strClass;
  }
  return QStringLiteral("ffc::host::") + strClass;
}

QString JoinLiterals(const QString &strLiterals)
{
  QString strText;
  for (QRegularExpressionMatchIterator it = LITERAL.globalMatch(strLiterals); it.hasNext();) {
    strText += it.next().captured(1);
  }
  return strText.replace(QStringLiteral("\\n"), QStringLiteral("\n"))
    .replace(QStringLiteral("\\\""), QStringLiteral("\""));
}

/// Every text of one source that passes through a translation.
QSet<Message> ListMessages(const QString &strSource)
{
  const QRegularExpression call(
    R"-((?:\b(tr)\(|\bTranslate\(|QT_TRANSLATE_NOOP\("\w+",)\s*((?:"(?:[^"\\]|\\.)*"\s*)+))-");
  const QString strContext =
    QRegularExpression(R"-(QCoreApplication::translate\("(\w+)")-").match(strSource).captured(1);
  QSet<Message> setMessages;
  for (QRegularExpressionMatchIterator it = call.globalMatch(strSource); it.hasNext();) {
    const QRegularExpressionMatch match = it.next();
    const bool bOfClass = !match.captured(1).isEmpty();
    setMessages.insert(
      {bOfClass ? FindClass(strSource, match.capturedStart()) : strContext, JoinLiterals(match.captured(2))});
  }
  return setMessages;
}

QSet<Message> ListSourceMessages()
{
  QSet<Message> setMessages;
  for (const char *pFolder : {FFC_SOURCE_DIR "/host", FFC_SOURCE_DIR "/quality"}) {
    QDirIterator it(QString::fromUtf8(pFolder), {"*.cpp"}, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
      QFile file(it.next());
      EXPECT_TRUE(file.open(QIODevice::ReadOnly));
      setMessages += ListMessages(QString::fromUtf8(file.readAll()));
    }
  }
  return setMessages;
}

QString Plain(QString strText)
{
  return strText.replace("&lt;", "<").replace("&gt;", ">").replace("&quot;", "\"").replace("&amp;", "&");
}

/// Messages and their translations.
QMap<Message, QString> ReadTranslations()
{
  QFile file(QStringLiteral(FFC_SOURCE_DIR "/host/translations/ffchost_zh.ts"));
  EXPECT_TRUE(file.open(QIODevice::ReadOnly));
  const QString strContent = QString::fromUtf8(file.readAll());
  const QRegularExpression part(R"-(<name>(.*?)</name>|<source>(.*?)</source>\s*<translation>(.*?)</translation>)-",
                                QRegularExpression::DotMatchesEverythingOption);
  QMap<Message, QString> mapTexts;
  QString strContext;
  for (QRegularExpressionMatchIterator it = part.globalMatch(strContent); it.hasNext();) {
    const QRegularExpressionMatch match = it.next();
    if (!match.captured(1).isEmpty()) {
      strContext = match.captured(1);
    } else {
      mapTexts.insert({strContext, Plain(match.captured(2))}, Plain(match.captured(3)));
    }
  }
  return mapTexts;
}

std::string Describe(const Message &message)
{
  return (message.first + ": " + message.second).toStdString();
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

TEST(HostTranslation, HasEveryTextOfTheHostWhereItIsAskedForAndNoOther)
{
  const QSet<Message> setSources = ListSourceMessages();
  const QMap<Message, QString> mapTexts = ReadTranslations();
  EXPECT_GT(setSources.size(), 100);
  for (const Message &message : setSources) {
    EXPECT_FALSE(mapTexts.value(message).isEmpty()) << "no translation: " << Describe(message);
  }
  for (const Message &message : mapTexts.keys()) {
    EXPECT_TRUE(setSources.contains(message)) << "not used any more: " << Describe(message);
  }
}

TEST(HostTranslation, KeepsPlacesForValuesAndKeys)
{
  const QMap<Message, QString> mapTexts = ReadTranslations();
  for (auto it = mapTexts.cbegin(); it != mapTexts.cend(); ++it) {
    for (const char *pPattern : {"%[0-9]", "&[a-z0-9]"}) {
      EXPECT_EQ(ListMarkers(it.key().second, pPattern), ListMarkers(it.value(), pPattern)) << Describe(it.key());
    }
  }
}

TEST(HostTranslation, IsCompiledIn)
{
  {
    const CLanguage language(true);
    EXPECT_EQ(QCoreApplication::translate("CorrectionState", "corrected"), QString::fromUtf8("已校正"));
    EXPECT_EQ(CMainWindow::tr("Flat field"), QString::fromUtf8("平场"));
  }
  EXPECT_EQ(QCoreApplication::translate("CorrectionState", "corrected"), QString("corrected"));
  const CLanguage language(false);
  EXPECT_EQ(QCoreApplication::translate("CorrectionState", "corrected"), QString("corrected"));
}

TEST(HostTranslation, OfErrorsOfTheRoomsBelowKeepsTheirParts)
{
  EXPECT_EQ(TranslateError(std::string("the camera does not answer")), QString("The camera does not answer"));
  EXPECT_EQ(TranslateError(std::string("what nobody knows")), QString("What nobody knows"));
  const CLanguage language(true);
  EXPECT_EQ(TranslateError(std::string("camera: There is no folder \"x (1)\".")),
            QString::fromUtf8("文件夹“x (1)”不存在。"));
}
