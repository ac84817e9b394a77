#include <algorithm>

#include <QFile>
#include <QImage>
#include <QRegularExpression>

#include <gtest/gtest.h>

namespace {

QByteArray ReadStyleSheet()
{
  QFile file(QStringLiteral(":/skin/style/PlugAcqstatusSetting.qss"));
  EXPECT_TRUE(file.open(QIODevice::ReadOnly));
  return file.readAll();
}

TEST(StyleSheet, IsPlainAscii)
{
  const QByteArray strSheet = ReadStyleSheet();
  EXPECT_FALSE(strSheet.isEmpty());
  EXPECT_TRUE(std::all_of(strSheet.begin(), strSheet.end(), [](char c) { return c > 0; })) << "it is read as Latin-1";
}

TEST(StyleSheet, NamesOnlyPicturesThatAreThere)
{
  QRegularExpressionMatchIterator matches =
    QRegularExpression(QStringLiteral(R"(url\(([^)]*)\))")).globalMatch(QString::fromLatin1(ReadStyleSheet()));
  int nCount = 0;
  for (; matches.hasNext(); ++nCount) {
    const QString strPath = matches.next().captured(1);
    EXPECT_TRUE(strPath.startsWith(QLatin1String(":/skin/images/"))) << qPrintable(strPath);
    EXPECT_FALSE(QImage(strPath).isNull()) << qPrintable(strPath);
  }
  EXPECT_GT(nCount, 10);
}

TEST(Pictures, MessageBoxIconsAre32PixelsWideWithClearCorners)
{
  for (const char *pName : {"TipBig", "WarningBig", "ErrorBig"}) {
    const QImage image(QStringLiteral(":/skin/images/%1.png").arg(QLatin1String(pName)));
    EXPECT_EQ(image.size(), QSize(32, 32)) << pName;
    EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0) << pName;
    EXPECT_EQ(image.pixelColor(16, 26).alpha(), 255) << pName;
  }
}

TEST(Pictures, AHoveredButtonIsBrighter)
{
  for (const char *pName : {"min", "restore", "max", "close"}) {
    const auto fnLightest = [pName](const char *pState) {
      const QImage image(QStringLiteral(":/skin/images/%1-%2.png").arg(QLatin1String(pName), QLatin1String(pState)));
      int nLightest = 0;
      for (int i = 0; i < image.width() * image.height(); ++i) {
        const QColor colour = image.pixelColor(i % image.width(), i / image.width());
        nLightest = std::max(nLightest, colour.alpha() > 128 ? colour.lightness() : 0);
      }
      return nLightest;
    };
    EXPECT_GT(fnLightest("normal"), 100) << pName;
    EXPECT_GT(fnLightest("active"), fnLightest("normal")) << pName;
  }
}

} // namespace
