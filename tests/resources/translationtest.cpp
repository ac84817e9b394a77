#include <algorithm>
#include <cctype>
#include <cstring>
#include <iterator>
#include <ostream>
#include <set>
#include <string>
#include <utility>

#include <QFile>
#include <QTranslator>
#include <QXmlStreamReader>

#include <gtest/gtest.h>

namespace {

struct SText {
  const char *pContext;
  const char *pSource;
};

/// Every text that the system shows translated.
constexpr SText TEXTS[] = {
  {"QObject", "Success"},
  {"QObject", "Unknown error"},
  {"QObject", "Out of memory"},
  {"QObject", "Invalid input param"},
  {"QObject", "Failure to operation device feature"},
  {"QObject", "Open file error"},
  {"QObject", "Write file error"},
  {"QObject", "Read file error"},
  {"QObject", "Get buffer time out"},
  {"QObject", "Flat field correction error"},
  {"QObject", "Current camera is not support  "},
  {"QObject", "Buffer size is error  "},
  {"QObject", "Recovery user param fail  "},
  {"QObject", "Current ROI is not matching with the coefficient  "},
  {"QObject", "The pixelformat should be changed to bayer!"},
  {"QObject", "The pixelformat not implement!"},
  {"QObject", "The current device parameters have been modified. Please restore the default parameters and try again!"},
  {"QObject", "Flat Field Correction Plugin"},
  {"QObject", "This plugin can calculate flat field correction coefficient and set the coefficient to device"},
  {"QObject", "OK"},
  {"QObject", "Yes"},
  {"QObject", "No"},
  {"QObject", "continue"},
  {"QObject", "Canel"},
  {"ShadingCorrectionDlg", "Flat Field Correction Plugin"},
  {"ShadingCorrectionDlg", "FFC Data"},
  {"ShadingCorrectionDlg", "Acquisition Frame Count"},
  {"ShadingCorrectionDlg", "1"},
  {"ShadingCorrectionDlg", "2"},
  {"ShadingCorrectionDlg", "4"},
  {"ShadingCorrectionDlg", "8"},
  {"ShadingCorrectionDlg", "16"},
  {"ShadingCorrectionDlg", "Acquisition of Darkfield Images"},
  {"ShadingCorrectionDlg", "Acquisition of Brightfield Images"},
  {"ShadingCorrectionDlg", "Execute FFC"},
  {"ShadingCorrectionDlg", "Preview"},
  {"ShadingCorrectionDlg", "FFC Expected Gray Value"},
  {"ShadingCorrectionDlg", "(0~255)"},
  {"ShadingCorrectionDlg", "Read/Write FFC Data"},
  {"ShadingCorrectionDlg", "Read From Device "},
  {"ShadingCorrectionDlg", "Write To Device"},
  {"ShadingCorrectionDlg", "Load/Save FFC Data"},
  {"ShadingCorrectionDlg", "Load File"},
  {"ShadingCorrectionDlg", "Save File"},
  {"ShadingCorrectionDlg", "Prompt Information "},
  {"ShadingCorrectionDlg", "Prompt information "},
  {"ShadingCorrectionDlg",
   "It is demanded to acquire bright field images again for Executing FFC after changing ROI, binning, "
   "decimation, mirror of camera"},
  {"CShadingCorrectionDlg", "Error"},
  {"CShadingCorrectionDlg", "This operation will save the user sets and set the startup sets to UserSet0"},
  {"CShadingCorrectionDlg",
   "The dark field image is too bright, the flat field correction will not use the dark field image,this will "
   "not affect the flat field correction effect"},
  {"CShadingCorrectionDlg",
   "The current black level is not the default value, the flat field correction will not use the dark field "
   "image,this will not affect the flat field correction effect"},
  {"CShadingCorrectionDlg", "Acquisition of dark field image complete"},
  {"CShadingCorrectionDlg",
   "The bright field image is too dark, it will affect the flat field correction effect,it is recommended to "
   "adjust the brightness of the image in the range of 20-250"},
  {"CShadingCorrectionDlg",
   "The bright field image is too bright, it will affect the flat field correction effect,it is recommended "
   "to adjust the brightness of the image in the range of 20-250"},
  {"CShadingCorrectionDlg", "Acquisition of bright field images complete"},
  {"CShadingCorrectionDlg", "FFC executed successfully"},
  {"CShadingCorrectionDlg", "Failed to execute FFC"},
  {"CShadingCorrectionDlg", "Failed to execute FFC. Please Acquired bright filed images and executed FFC again"},
  {"CTipsMessageBox", "Tips"},
  {"CTipsMessageBox", "Warning"},
  {"CTipsMessageBox", "Error"},
  {"CShadingCorrectionPro_PC", "Open FFC"},
  {"CShadingCorrectionPro_PC", "Save FFC"},
  {"CShadingCorrectionPro_PC", "ini file (*.ffc)"},
  {"CShadingCorrectionPro_Dev", "Open FFC"},
  {"CShadingCorrectionPro_Dev", "Save FFC"},
  {"CShadingCorrectionPro_Dev", "ini file (*.ffc)"},
  {"CVignettingCorrectionPro_Dev", "Open FFC"},
  {"CVignettingCorrectionPro_Dev", "Save FFC"},
  {"CVignettingCorrectionPro_Dev", "ini file (*.ffc)"},
};

void PrintTo(const SText &stText, std::ostream *pStream)
{
  *pStream << stText.pContext << ": \"" << stText.pSource << '"';
}

int CountTrailingBlanks(const QString &strText)
{
  int nCount = 0;
  while (nCount < strText.size() && strText.at(strText.size() - 1 - nCount) == QLatin1Char(' ')) {
    ++nCount;
  }
  return nCount;
}

bool HasChinese(const QString &strText)
{
  return std::any_of(strText.begin(), strText.end(), [](QChar c) { return c.script() == QChar::Script_Han; });
}

/// Whether a text has a word that needs translating: tick numbers and value ranges have none.
bool HasWord(const QString &strText)
{
  return std::any_of(strText.begin(), strText.end(), [](QChar c) { return c.isLetter(); });
}

class TranslatedText : public testing::TestWithParam<SText> {};

TEST_P(TranslatedText, IsInTheCompiledTranslation)
{
  QTranslator translator;
  ASSERT_TRUE(translator.load(QStringLiteral(":/lumalevel_zh.qm")));
  const QString strSource = QString::fromUtf8(GetParam().pSource);
  const QString strTranslated = translator.translate(GetParam().pContext, GetParam().pSource);
  ASSERT_FALSE(strTranslated.isEmpty());
  EXPECT_EQ(CountTrailingBlanks(strTranslated), CountTrailingBlanks(strSource));
  if (strSource.contains(QLatin1String("(*.ffc)"))) {
    EXPECT_TRUE(strTranslated.contains(QLatin1String("(*.ffc)"))) << "a file dialog looks for this pattern";
  } else if (HasWord(strSource)) {
    EXPECT_TRUE(HasChinese(strTranslated)) << qPrintable(strTranslated);
  } else {
    EXPECT_EQ(strTranslated, strSource);
  }
}

/// The letters of a text, and a number for those that have the same ones.
std::string GetTextName(const testing::TestParamInfo<SText> &stInfo)
{
  std::string strName = stInfo.param.pContext + std::string("_");
  std::copy_if(stInfo.param.pSource, stInfo.param.pSource + std::strlen(stInfo.param.pSource),
               std::back_inserter(strName), [](char c) { return c >= '0' && c <= 'z' && std::isalnum(c) != 0; });
  return strName + "_" + std::to_string(stInfo.index);
}

INSTANTIATE_TEST_SUITE_P(Every, TranslatedText, testing::ValuesIn(TEXTS), GetTextName);

using ContextAndSource = std::pair<std::string, std::string>;

/// The entries of the translation source. Unfinished and repeated ones fail the test.
std::set<ContextAndSource> ReadTranslationSource(const QString &strPath)
{
  std::set<ContextAndSource> setEntries;
  QFile file(strPath);
  EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(strPath);
  QXmlStreamReader reader(&file);
  ContextAndSource stEntry;
  while (!reader.atEnd()) {
    if (reader.readNext() != QXmlStreamReader::StartElement) {
      continue;
    }
    if (reader.name() == QLatin1String("name")) {
      stEntry.first = reader.readElementText().toStdString();
    } else if (reader.name() == QLatin1String("source")) {
      stEntry.second = reader.readElementText().toStdString();
      EXPECT_TRUE(setEntries.insert(stEntry).second) << "twice: " << stEntry.first << ": " << stEntry.second;
    } else if (reader.name() == QLatin1String("translation")) {
      EXPECT_FALSE(reader.attributes().hasAttribute(QLatin1String("type"))) << stEntry.second;
      EXPECT_FALSE(reader.readElementText().isEmpty()) << stEntry.second;
    }
  }
  EXPECT_FALSE(reader.hasError()) << qPrintable(reader.errorString());
  return setEntries;
}

TEST(TranslationSource, HasExactlyTheTextsOfTheSystemAllFinished)
{
  std::set<ContextAndSource> setExpected;
  for (const SText &stText : TEXTS) {
    setExpected.emplace(stText.pContext, stText.pSource);
  }
  ASSERT_EQ(setExpected.size(), std::size(TEXTS));
  EXPECT_EQ(ReadTranslationSource(QStringLiteral(FFC_TRANSLATION_SOURCE)), setExpected);
}

TEST(TranslationSource, LeavesOtherTextsAndContextsAlone)
{
  QTranslator translator;
  ASSERT_TRUE(translator.load(QStringLiteral(":/lumalevel_zh.qm")));
  EXPECT_TRUE(translator.translate("QObject", "Success ").isEmpty());
  EXPECT_TRUE(translator.translate("QMessageBox", "OK").isEmpty());
}

} // namespace
