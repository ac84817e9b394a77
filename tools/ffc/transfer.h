/// \file
/// Frames from one file into another, in their order.
#pragma once

#include <functional>

#include "frames/ifilekind.h"
#include "tools/ffc/contenthash.h"
#include "tools/ffc/report.h"

namespace ffc::tool {

/// Changes a frame in place, from several threads at a time.
/// \param pHashes of the samples before and after; null when nobody wants them
/// \return what is wrong, as the end of a sentence about the frame's file
using FnChange = std::function<Result<>(void *pFrame, SFrameHashes *pHashes)>;

/// Hashes of the samples of all frames.
struct SHashes {
  QString strRead;
  QString strWritten;
};

struct STransfer {
  QString strFrom;
  QString strTo;
  const frames::IFileKind *pKind = nullptr; ///< of the file to write
  frames::SFrameInfo stInfo;                ///< of the file to write
  frames::Texts mapTexts;                   ///< added to those of every frame
  FnChange fnChange;
  uint32_t nThreads = 1; ///< that work on frames of this file, each with one of its own
  /// When all frames are written, before the file is put in its place; may be empty.
  std::function<Result<>(const SHashes &stHashes)> fnBeforeCommit;
};

/// Memory for a frame for each thread. What is written and which trouble is found is the same for any number of
/// threads. The file is there when all frames are in it, else nothing of it. \param pHashes may be null: they are then
/// not computed
std::optional<STrouble> Transfer(frames::IFrameReader &reader, const STransfer &stTransfer, SHashes *pHashes);

/// \param nThreads of which the work on this file may make use
using FnWork = std::function<void(const QString &strFile, uint32_t nThreads)>;

/// Calls fnWork for every file, on so many threads; where there are fewer files, they share them out. What it throws
/// for want of memory becomes a trouble of the file.
void ForEachFile(const QStringList &listFiles, uint32_t nThreads, CReport &report, const FnWork &fnWork);

/// Where the corrected or converted files go.
/// \return a failure when two of them would be the same file
Result<QStringList> PlanOutputs(const QStringList &listFiles, const QString &strFolder, const QString &strSuffix);

/// Makes the folder where it is missing.
Result<> MakeFolder(const QString &strFolder);

} // namespace ffc::tool
