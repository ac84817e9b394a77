/// \file
/// What the tool makes of frames that the host has acquired.
#pragma once

#include <sstream>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "flat/weightedflat.h"
#include "frames/ifilekind.h"
#include "tools/ffc/commands.h"

namespace ffc::flat {

inline std::string SaveFrames(const SFrameSet &stSet, const QString &strFolder)
{
  EXPECT_TRUE(QDir().mkpath(strFolder));
  const frames::SLayout stLayout{stSet.nWidth, stSet.nHeight, stSet.pFormat->GetBytesPerPixel()};
  for (std::size_t n = 0; n < stSet.listFrames.size(); ++n) {
    const QString strPath = QDir(strFolder).filePath(QStringLiteral("%1.png").arg(n, 2, 10, QLatin1Char('0')));
    EXPECT_EQ(frames::SaveFrame(strPath, stLayout, stSet.listFrames[n].data()).GetError(), "");
  }
  return strFolder.toStdString();
}

/// \return the file of `ffc make`
inline QByteArray MakeWithTool(const SFlatFrames &stFrames, const QTemporaryDir &folder)
{
  const QString strOut = folder.filePath(QStringLiteral("tool.ffc"));
  std::vector<std::string> listArguments{"make", "--method", "weighted", "--force", "--quiet"};
  listArguments.insert(listArguments.end(),
                       {"--bright", SaveFrames(*stFrames.pBright, folder.filePath(QStringLiteral("tool-bright")))});
  listArguments.insert(listArguments.end(), {"--pixel-format", stFrames.pBright->pFormat->pName});
  listArguments.insert(listArguments.end(), {"--expect-gray", std::to_string(stFrames.nExpectGray)});
  listArguments.insert(listArguments.end(), {"-o", strOut.toStdString()});
  if (stFrames.pDark != nullptr) {
    listArguments.insert(listArguments.end(),
                         {"--dark", SaveFrames(*stFrames.pDark, folder.filePath(QStringLiteral("tool-dark")))});
  }
  std::ostringstream output;
  std::ostringstream errors;
  EXPECT_EQ(tool::RunTool(listArguments, false, output, errors), 0) << errors.str();
  QFile file(strOut);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace ffc::flat
