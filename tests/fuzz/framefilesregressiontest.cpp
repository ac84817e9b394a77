// Files of frames, and beside them, that are damaged in every way that chance finds, and the inputs that are kept.
#include <random>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "frames/ifilekind.h"
#include "frames/sidefile.h"
#include "tests/fuzz/fuzztargets.h"

using namespace ffc::frames;

namespace {

struct SFrameTarget {
  const char *pName;
  void (*fnRun)(const uint8_t *pData, std::size_t nSize);
};

constexpr SFrameTarget TARGETS[] = {{"tifffile", FuzzTiffFile}, {"fitsfile", FuzzFitsFile},
                                    {"serfile", FuzzSerFile},   {"rawfile", FuzzRawFile},
                                    {"sidefile", FuzzSideFile}, {"defectlist", FuzzDefectList}};

void Feed(const SFrameTarget &stTarget, const QByteArray &byteInput)
{
  stTarget.fnRun(reinterpret_cast<const uint8_t *>(byteInput.constData()), static_cast<std::size_t>(byteInput.size()));
}

QByteArray ReadBytes(const QString &strPath)
{
  QFile file(strPath);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// A good file of a kind, with two small frames.
QByteArray MakeFile(const QString &strSuffix)
{
  const QTemporaryDir dir;
  const QString strPath = dir.filePath("frames." + strSuffix);
  const IFileKind *pKind = FindFileKind(strPath);
  SFrameInfo stInfo;
  stInfo.stLayout = {8, 6, 2};
  stInfo.nFrames = 2;
  auto writer = pKind->Create(strPath, stInfo);
  std::vector<uint8_t> listFrame(stInfo.stLayout.GetFrameSize(), 7);
  for (int n = 0; n < 2; ++n) {
    EXPECT_TRUE(writer.GetValue()->Write(listFrame.data(), {{TEXT_DESCRIPTION, "x"}}).IsOk());
  }
  EXPECT_TRUE(writer.GetValue()->Commit().IsOk());
  return ReadBytes(strPath);
}

QByteArray MakeGood(const SFrameTarget &stTarget)
{
  const QString strName = QLatin1String(stTarget.pName);
  if (strName == "sidefile") {
    SSideFile stSide;
    stSide.nWidth = stSide.nHeight = 32;
    stSide.strPixelFormat = "Mono12";
    return MakeSideFile(stSide);
  }
  if (strName == "defectlist") {
    return "x,y,kind\n3,4,dark\n5,6,hot\n";
  }
  if (strName == "rawfile") {
    return "4x3:Mono8\n123456789012";
  }
  const QString strSuffix = strName == "serfile" ? "ser" : strName == "fitsfile" ? "fits" : "tif";
  return FindFileKind("x." + strSuffix)->IsSupported() ? MakeFile(strSuffix) : QByteArray("II*");
}

class FuzzFrameFiles : public testing::TestWithParam<SFrameTarget> {};

} // namespace

TEST_P(FuzzFrameFiles, KeptInputsKeepEveryPromise)
{
  for (const char *pKind : {"seeds", "regressions"}) {
    const QDir folder(
      QStringLiteral(FFC_FUZZ_INPUTS "/%1/%2").arg(QLatin1String(pKind), QLatin1String(GetParam().pName)));
    for (const QString &strName : folder.entryList(QDir::Files)) {
      SCOPED_TRACE(strName.toStdString());
      Feed(GetParam(), ReadBytes(folder.filePath(strName)));
    }
  }
  Feed(GetParam(), {});
}

TEST_P(FuzzFrameFiles, DamagedFilesAreReadOrRefused)
{
  const QByteArray byteGood = MakeGood(GetParam());
  Feed(GetParam(), byteGood);
  std::mt19937 random(7);
  for (int n = 0; n < 500; ++n) {
    QByteArray byteBad = byteGood;
    for (unsigned nChange = 0; nChange <= random() % 4; ++nChange) {
      const char acValues[] = {'\0', '\1', '\x7F', '\xFF', static_cast<char>(random())};
      byteBad[static_cast<int>(random() % static_cast<unsigned>(byteBad.size()))] = acValues[random() % 5];
    }
    Feed(GetParam(), random() % 8 == 0
                       ? byteBad.left(static_cast<int>(random() % static_cast<unsigned>(byteBad.size())))
                       : byteBad);
  }
}

INSTANTIATE_TEST_SUITE_P(Targets, FuzzFrameFiles, testing::ValuesIn(TARGETS),
                         [](const auto &stInfo) { return std::string(stInfo.param.pName); });
