/// \file
/// Averages a run of frames.
#pragma once

#include <cstdint>
#include <memory>

#include "pluginobject/shadingcorrection/process/acquisition/framebuffer.h"
#include "pluginobject/shadingcorrection/process/acquisition/frameformat.h"

/// One 32-bit sum per pixel. Statuses are the plug-in's.
class CFrameAccumulator {
public:
  /// Takes zeroed sums for frames of nFrameSize bytes, one for each byte: 4 x nFrameSize bytes.
  /// \return false when there is no memory
  bool Allocate(uint64_t nFrameSize);
  void Release();

  /// Adds a frame. \return -1012 when the frame or the sums are smaller than the format says
  int32_t Add(const CFrameBuffer &frame, const SFrameFormat &stFormat);
  /// Writes the truncated average of nFrameCount frames. \return -1012 as above
  int32_t Average(uint32_t nFrameCount, const SFrameFormat &stFormat, CFrameBuffer &average) const;

  /// The sums, one per pixel; null before they are allocated.
  const uint32_t *GetSums() const { return reinterpret_cast<const uint32_t *>(m_sums.GetData()); }

private:
  bool Holds(const SFrameFormat &stFormat) const;

  CFrameBuffer m_sums;
};
