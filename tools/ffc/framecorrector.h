/// \file
/// Correcting recorded frames, run by run.
#pragma once

#include <memory>
#include <mutex>

#include "frames/frameinfo.h"
#include "platform/result.h"
#include "tools/ffc/contenthash.h"
#include "tools/ffc/flat.h"

namespace ffc::tool {

/// Corrects frames in runs of pixels: what is done with a run (its hash, its largest value, the correction, the hash of
/// the result) finds it in the processor's second cache. From any number of threads.
class CFrameCorrector {
public:
  /// \param flat loaded; outlives this
  explicit CFrameCorrector(const CFlat &flat);
  ~CFrameCorrector();

  /// Corrects a frame in place.
  /// \param stInfo of a file that fits the flat
  /// \param pHashes may be null
  /// \return why not, as the end of a sentence about the frame's file; the frame's contents are then of no use
  Result<> Correct(void *pFrame, const frames::SFrameInfo &stInfo, SFrameHashes *pHashes);

private:
  class CRunTable;

  std::shared_ptr<const CRunTable> FindTable(std::size_t nPixels);
  /// The pixels on the list of defects, once all others are corrected.
  /// \param nShift by which the frame's values are left-aligned
  void ReplaceDefects(void *pFrame, const frames::SLayout &stLayout, uint32_t nShift) const;
  /// \return by how many bits the values are left-aligned
  Result<uint32_t> CorrectRun(void *pRun, const frames::SLayout &stRun, const uint8_t *pTable, uint32_t nTable,
                              const frames::SFrameInfo &stInfo) const;

  const CFlat &m_flat;
  std::mutex m_mutex;
  std::shared_ptr<const CRunTable> m_pTable; ///< for frames of the size that came last
};

} // namespace ffc::tool
