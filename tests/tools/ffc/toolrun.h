/// \file
/// The tool as a program, and frames for it.
#pragma once

#include <cstdint>
#include <vector>

#include <QByteArray>
#include <QJsonObject>
#include <QStringList>
#include <QTemporaryDir>

#include "frames/frameinfo.h"

namespace ffc::test {

struct SToolResult {
  int nExitCode = -1; ///< -1 when it did not end by itself
  QByteArray byteOutput;
  QByteArray byteErrors;

  /// Lines of standard output as JSON objects.
  std::vector<QJsonObject> GetObjects() const;
};

/// The program that runs as ffc.
QString GetToolPath();

/// Runs it to its end.
/// \param byteInput standard input
SToolResult RunTool(const QStringList &listArguments, const QByteArray &byteInput = {});

/// A folder with dark and bright frames of one camera, shaded and with pixels of their own.
class CRecording {
public:
  /// \param nSeed another one is another camera
  explicit CRecording(uint32_t nSeed = 1, const frames::SLayout &stLayout = {64, 48, 2}, uint32_t nBitDepth = 12);

  QString Path(const QString &strName) const { return m_dir.filePath(strName); }
  QString GetFolder() const { return m_dir.path(); }
  /// Frames "dark_0.png" and so on, in folders "dark" and "bright".
  void Write(int nDark, int nBright) const;
  /// A frame with noise of its own.
  std::vector<uint8_t> MakeDark(uint32_t nFrame) const { return Make(0.0, nFrame); }
  std::vector<uint8_t> MakeBright(uint32_t nFrame) const { return Make(0.6, 1000 + nFrame); }
  const frames::SLayout &GetLayout() const { return m_stLayout; }

private:
  std::vector<uint8_t> Make(double dLight, uint32_t nFrame) const;

  QTemporaryDir m_dir;
  uint32_t m_nSeed;
  frames::SLayout m_stLayout;
  uint32_t m_nBitDepth;
};

/// Endings of the kinds of files that are no PNG, one of each that the tool was built with.
QStringList ListOtherKinds();

QByteArray ReadBytes(const QString &strPath);
void WriteBytes(const QString &strPath, const QByteArray &byteContent);
/// The samples of the first frame of a file.
std::vector<uint8_t> ReadFrame(const QString &strPath, frames::SFrameInfo *pInfo = nullptr);

} // namespace ffc::test
