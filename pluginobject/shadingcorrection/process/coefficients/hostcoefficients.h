/// \file
/// The coefficient table of the host-side correction, shared between two threads.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>

#include "platform/criticalsection.h"
#include "pluginobject/shadingcorrection/process/acquisition/framebuffer.h"
#include "pluginobject/shadingcorrection/process/acquisition/frameformat.h"

/// What a frame is corrected with.
struct SHostTable {
  CFrameBuffer data;
  uint32_t nSize = 0;    ///< bytes in use, width x height x 2 or x 4
  SFrameFormat stFormat; ///< of the frames that it corrects
};

using HostTablePtr = std::shared_ptr<const SHostTable>;

/// Holds the table in force and the format of the kept frames.
///
/// A reader takes a snapshot and works on it without a lock; a writer replaces the table as a whole. So a
/// correction under way keeps its table alive, and neither side waits for the other's work.
class CHostCoefficients {
public:
  struct SSnapshot {
    HostTablePtr pTable;   ///< null before the first table
    SFrameFormat stFormat; ///< of the kept frames, which need not be that of the table
  };

  SSnapshot Get() const;
  void SetFormat(const SFrameFormat &stFormat);
  void SetTable(HostTablePtr pTable);

private:
  mutable CCriticalSection m_section;
  SSnapshot m_stCurrent;
};
