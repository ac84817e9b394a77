/// \file
/// Making, reading and applying a coefficient table of the host-side correction.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>

#include <QFile>

#include "platform/criticalsection.h"
#include "pluginobject/shadingcorrection/process/acquisition/framebuffer.h"
#include "pluginobject/shadingcorrection/process/acquisition/frameformat.h"

namespace ffc::process {

/// What a frame is corrected with.
struct SHostTable {
  CFrameBuffer data;
  uint32_t nSize = 0;  ///< bytes in use, width x height x 2 or x 4
  SFrameShape stShape; ///< of the frames that it corrects
};

using HostTablePtr = std::shared_ptr<const SHostTable>;

/// Holds the table in force and the shape of the kept frames.
///
/// A reader takes a snapshot and works on it without a lock; a writer replaces the table as a whole. So a
/// correction under way keeps its table alive, and neither side waits for the other's work.
class CHostCoefficients {
public:
  struct SSnapshot {
    HostTablePtr pTable; ///< null before the first table
    SFrameShape stShape; ///< of the kept frames, which need not be that of the table
  };

  SSnapshot Get() const;
  void SetShape(const SFrameShape &stShape);
  void SetTable(HostTablePtr pTable);

private:
  mutable platform::CCriticalSection m_section;
  SSnapshot m_stCurrent;
};

/// What a table is computed from.
struct SHostReference {
  const CFrameBuffer &bright; ///< averaged bright frame
  const CFrameBuffer *pDark;  ///< null: not used
  SFrameFormat stFormat;      ///< of both frames
  int32_t nBayerType;         ///< 0 mono, 1 to 4
  uint32_t nExpectGray;       ///< target on an 8-bit scale
};

/// Has Ombrix compute a table.
/// \param pTable written on success
/// \return 0; -3 when Ombrix asks for no bytes, as it does for input it cannot use; -2 when there is no
///   memory; -1012 when a frame is smaller than the format says; else a mapped status of Ombrix
[[nodiscard]] int32_t ComputeHostTable(const SHostReference &stReference, HostTablePtr &pTable);

/// Reads a table for frames of a format from an open file.
/// \return 0; -1007 unless the file has width x height x 2 or x 4 bytes and all can be read; -2 when there
///   is no memory
[[nodiscard]] int32_t ReadHostTable(QFile &file, const SFrameFormat &stFormat, HostTablePtr &pTable);

/// Whether a delivered frame has a shape.
bool IsFrameOfShape(const SFrameShape &stShape, uint32_t nWidth, int32_t nHeight, uint32_t nPixelFormat);

/// Has Ombrix correct a frame of the table's shape. \return a mapped status of Ombrix
[[nodiscard]] int32_t ApplyHostTable(const SHostTable &stTable, const void *pSource, void *pDestination);

} // namespace ffc::process
