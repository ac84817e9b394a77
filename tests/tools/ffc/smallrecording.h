/// \file
/// The tool in this process, for many commands on small frames.
#pragma once

#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include "frames/alignment.h"
#include "frames/ifilekind.h"
#include "tests/tools/ffc/toolrun.h"
#include "tools/ffc/commands.h"

namespace ffc::test {

struct SRun {
  int nExitCode = -1;
  std::string strOutput;
  std::string strErrors;

  bool Says(const char *pText) const
  {
    return strErrors.find(pText) != std::string::npos || strOutput.find(pText) != std::string::npos;
  }
};

inline std::ostream &operator<<(std::ostream &stream, const SRun &stRun)
{
  return stream << stRun.nExitCode << "\n" << stRun.strOutput << stRun.strErrors;
}

inline SRun RunHere(const QStringList &listArguments, bool bTerminal = false)
{
  std::vector<std::string> listWords;
  for (const QString &strWord : listArguments) {
    listWords.push_back(strWord.toStdString());
  }
  std::ostringstream output;
  std::ostringstream errors;
  SRun stRun;
  stRun.nExitCode = tool::RunTool(listWords, bTerminal, output, errors);
  stRun.strOutput = output.str();
  stRun.strErrors = errors.str();
  return stRun;
}

/// \param pText that the tool says, on either stream
inline void ExpectRun(const QStringList &listArguments, int nExitCode, const char *pText)
{
  const SRun stRun = RunHere(listArguments);
  EXPECT_EQ(stRun.nExitCode, nExitCode) << listArguments.join(' ').toStdString() << "\n" << stRun;
  EXPECT_TRUE(stRun.Says(pText)) << pText << "\n" << listArguments.join(' ').toStdString() << "\n" << stRun;
}

/// A recording of 64 x 48 pixels and 12 bits with its flat, and the same flat without a side file.
class SmallRecording : public testing::Test {
protected:
  static void SetUpTestSuite()
  {
    s_pRecording = std::make_unique<CRecording>();
    s_pRecording->Write(2, 4);
    const SRun stRun = RunHere(MakeFlat("flat.ffc"));
    EXPECT_EQ(stRun.nExitCode, 0) << stRun;
    EXPECT_TRUE(QFile::copy(Path("flat.ffc"), Path("plain.ffc")));
  }
  static void TearDownTestSuite() { s_pRecording.reset(); }

  static QString Path(const QString &strName) { return s_pRecording->Path(strName); }
  static QStringList MakeFlat(const QString &strName)
  {
    return {"make", "--dark",      Path("dark"),     "--bright", Path("bright"),
            "-o",   Path(strName), "--pixel-format", "Mono12"};
  }
  static QStringList Apply(const QString &strFlat, const QString &strFrames)
  {
    return {"apply", Path(strFlat), Path(strFrames), "-o", Path("out"), "--dry-run"};
  }
  static QStringList Check(const QString &strFlat, const QString &strFrames)
  {
    return {"check", Path(strFlat), Path(strFrames), "--dark", Path("dark")};
  }

  /// A file of the recording's bright frames, or of some that differ in one thing.
  static QString WriteFrames(const QString &strName, const frames::SFrameInfo &stInfo, uint32_t nFrames = 1)
  {
    const QString strPath = Path(strName);
    EXPECT_TRUE(QDir().mkpath(QFileInfo(strPath).path()));
    const CRecording other(1, stInfo.stLayout,
                           stInfo.nBitDepth == 0 ? 8 * stInfo.stLayout.nBytesPerSample : stInfo.nBitDepth);
    frames::SFrameInfo stWritten = stInfo;
    stWritten.nFrames = nFrames;
    auto writer = frames::FindFileKind(strPath)->Create(strPath, stWritten);
    EXPECT_EQ(writer.GetError(), "");
    for (uint32_t n = 0; n < nFrames; ++n) {
      EXPECT_TRUE(writer.GetValue()->Write(other.MakeBright(n).data(), {}).IsOk());
    }
    EXPECT_TRUE(writer.GetValue()->Commit().IsOk());
    return strPath;
  }
  static frames::SFrameInfo MakeInfo(uint32_t nBitDepth, std::optional<genapi::EColorLayout> eColors = {},
                                     const frames::SLayout &stLayout = {64, 48, 2})
  {
    frames::SFrameInfo stInfo;
    stInfo.stLayout = stLayout;
    stInfo.nBitDepth = nBitDepth;
    stInfo.eColors = eColors;
    return stInfo;
  }
  /// The recording's frames at the high end of 16 bits.
  static void WriteLeftAligned(const QString &strFolder)
  {
    EXPECT_TRUE(QDir().mkpath(Path(strFolder)));
    for (uint32_t n = 0; n < 4; ++n) {
      std::vector<uint8_t> listFrame = s_pRecording->MakeBright(n);
      frames::ShiftLeft(listFrame.data(), s_pRecording->GetLayout(), 4);
      EXPECT_TRUE(frames::SaveFrame(Path(strFolder + QStringLiteral("/left_%1.png").arg(n)), s_pRecording->GetLayout(),
                                    listFrame.data()));
    }
  }

  static inline std::unique_ptr<CRecording> s_pRecording;
};

} // namespace ffc::test
