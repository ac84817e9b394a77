#include "tests/tools/ffc/toolrun.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QProcess>

#include <gtest/gtest.h>

#include "frames/ifilekind.h"

namespace ffc::test {
namespace {

constexpr int LIMIT_MS = 60000;

/// The same number for the same place, between -1 and 1.
double GetNoise(uint32_t nSeed, uint32_t nPlace)
{
  uint32_t n = nSeed * 0x9E3779B9U + nPlace * 0x85EBCA6BU;
  n ^= n >> 15U;
  n *= 0x2C1B3C6DU;
  n ^= n >> 12U;
  n *= 0x297A2D39U;
  n ^= n >> 15U;
  return static_cast<double>(n) / 2147483648.0 - 1.0;
}

} // namespace

std::vector<QJsonObject> SToolResult::GetObjects() const
{
  std::vector<QJsonObject> listObjects;
  for (const QByteArray &byteLine : byteOutput.split('\n')) {
    if (!byteLine.trimmed().isEmpty()) {
      const QJsonDocument document = QJsonDocument::fromJson(byteLine);
      EXPECT_TRUE(document.isObject()) << byteLine.constData();
      listObjects.push_back(document.object());
    }
  }
  return listObjects;
}

QString GetToolPath()
{
  return QStringLiteral(FFC);
}

SToolResult RunTool(const QStringList &listArguments, const QByteArray &byteInput)
{
  QProcess tool;
  tool.start(GetToolPath(), listArguments);
  tool.write(byteInput);
  tool.closeWriteChannel();
  SToolResult stResult;
  if (tool.waitForFinished(LIMIT_MS) && tool.exitStatus() == QProcess::NormalExit) {
    stResult.nExitCode = tool.exitCode();
  }
  stResult.byteOutput = tool.readAllStandardOutput();
  stResult.byteErrors = tool.readAllStandardError();
  return stResult;
}

CRecording::CRecording(uint32_t nSeed, const frames::SLayout &stLayout, uint32_t nBitDepth)
  : m_nSeed(nSeed), m_stLayout(stLayout), m_nBitDepth(nBitDepth)
{
}

void CRecording::Write(int nDark, int nBright) const
{
  QDir(GetFolder()).mkpath("dark");
  QDir(GetFolder()).mkpath("bright");
  for (int n = 0; n < nDark; ++n) {
    const auto listFrame = MakeDark(static_cast<uint32_t>(n));
    ASSERT_TRUE(frames::SaveFrame(Path(QStringLiteral("dark/dark_%1.png").arg(n)), m_stLayout, listFrame.data()));
  }
  for (int n = 0; n < nBright; ++n) {
    const auto listFrame = MakeBright(static_cast<uint32_t>(n));
    ASSERT_TRUE(frames::SaveFrame(Path(QStringLiteral("bright/bright_%1.png").arg(n)), m_stLayout, listFrame.data()));
  }
}

std::vector<uint8_t> CRecording::Make(double dLight, uint32_t nFrame) const
{
  std::vector<uint8_t> listFrame(m_stLayout.GetFrameSize());
  const double dMaximum = (1U << m_nBitDepth) - 1;
  uint32_t nPixel = 0;
  for (uint32_t nY = 0; nY < m_stLayout.nHeight; ++nY) {
    for (uint32_t nX = 0; nX < m_stLayout.nWidth; ++nX, ++nPixel) {
      const double dX = static_cast<double>(nX) / m_stLayout.nWidth - 0.5;
      const double dY = static_cast<double>(nY) / m_stLayout.nHeight - 0.5;
      const double dShading = 1.0 - 0.6 * (dX * dX + dY * dY);
      const double dPixel = 1.0 + 0.04 * GetNoise(m_nSeed, nPixel);
      const double dNoise = 0.004 * GetNoise(m_nSeed + 77 + nFrame, nPixel);
      const double dDark = 0.02 + 0.005 * GetNoise(m_nSeed + 5, nPixel);
      const double dValue = dMaximum * (dDark + dLight * dShading * dPixel + dNoise);
      const auto nSample = static_cast<uint16_t>(std::lround(std::clamp(dValue, 0.0, dMaximum)));
      if (m_stLayout.nBytesPerSample == 1) {
        listFrame[nPixel] = static_cast<uint8_t>(nSample);
      } else {
        std::memcpy(listFrame.data() + 2 * nPixel, &nSample, 2);
      }
    }
  }
  return listFrame;
}

QStringList ListOtherKinds()
{
  QStringList listSuffixes;
  for (const frames::IFileKind *pKind : frames::ListFileKinds()) {
    listSuffixes << pKind->GetSuffixes().front();
  }
  listSuffixes.removeAll(QStringLiteral("png"));
  return listSuffixes;
}

QByteArray ReadBytes(const QString &strPath)
{
  QFile file(strPath);
  EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << strPath.toStdString();
  return file.readAll();
}

void WriteBytes(const QString &strPath, const QByteArray &byteContent)
{
  QFile file(strPath);
  EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(byteContent) == byteContent.size())
    << strPath.toStdString();
}

std::vector<uint8_t> ReadFrame(const QString &strPath, frames::SFrameInfo *pInfo)
{
  auto reader = frames::FindFileKind(strPath)->Open(strPath);
  EXPECT_EQ(reader.GetError(), "") << strPath.toStdString();
  if (!reader) {
    return {};
  }
  std::vector<uint8_t> listFrame(reader.GetValue()->GetInfo().stLayout.GetFrameSize());
  EXPECT_EQ(reader.GetValue()->Read(listFrame.data()).GetError(), "");
  if (pInfo != nullptr) {
    *pInfo = reader.GetValue()->GetInfo();
  }
  return listFrame;
}

} // namespace ffc::test
