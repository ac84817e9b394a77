/// \file
/// Frames from one file into another, one after the other.
#pragma once

#include <functional>

#include "frames/ifilekind.h"
#include "tools/ffc/report.h"

namespace ffc::tool {

/// Changes a frame in place. \return what is wrong, as the end of a sentence about the frame's file
using FnChange = std::function<Result<>(void *pFrame)>;

struct STransfer {
  QString strFrom;
  QString strTo;
  const frames::IFileKind *pKind = nullptr; ///< of the file to write
  frames::SFrameInfo stInfo;                ///< of the file to write
  frames::Texts mapTexts;                   ///< added to those of every frame
  FnChange fnChange;
  bool bReadAhead = false; ///< whether the next frame is read while one is changed and written
};

/// Hashes of the samples of all frames.
struct SHashes {
  QString strRead;
  QString strWritten;
};

/// Memory for two frames. The file is there when all frames are in it, else nothing of it.
/// \param pHashes may be null: they are then not computed
std::optional<STrouble> Transfer(frames::IFrameReader &reader, const STransfer &stTransfer, SHashes *pHashes);

/// Calls fnWork for every file, on so many threads. What it throws for want of memory becomes a trouble of the file.
void ForEachFile(const QStringList &listFiles, uint32_t nThreads, CReport &report,
                 const std::function<void(const QString &strFile)> &fnWork);

/// Where the corrected or converted files go.
/// \return a failure when two of them would be the same file
Result<QStringList> PlanOutputs(const QStringList &listFiles, const QString &strFolder, const QString &strSuffix);

/// Makes the folder where it is missing.
Result<> MakeFolder(const QString &strFolder);

} // namespace ffc::tool
