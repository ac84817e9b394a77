/// \file
/// The average of a run of bright frames.
#pragma once

#include <cstdint>
#include <memory>

#include "pluginobject/shadingcorrection/imagecalc/framesums.h"
#include "pluginobject/shadingcorrection/process/acquisition/framebuffer.h"
#include "pluginobject/shadingcorrection/process/acquisition/frameexchange.h"
#include "pluginobject/shadingcorrection/process/acquisition/frameformat.h"

namespace ffc::process {

/// One sum per pixel, in memory of its own. Statuses are the plug-in's.
class CFrameAccumulator {
public:
  /// Takes zeroed sums for frames of nFrameSize bytes, one for each byte: 4 x nFrameSize bytes, of which few frames
  /// touch half. \return false when there is no memory
  bool Allocate(uint64_t nFrameSize);
  void Release();

  /// Adds a frame. \return -1012 when the frame or the sums are smaller than the format says
  [[nodiscard]] int32_t Add(const CFrameBuffer &frame, const SFrameFormat &stFormat);
  /// Writes the truncated average of nFrameCount frames. \return -1012 as above
  [[nodiscard]] int32_t Average(uint32_t nFrameCount, const SFrameFormat &stFormat, CFrameBuffer &average);

  /// The sums, one per pixel; null before they are allocated.
  const uint32_t *GetSums() { return m_sums.GetWide(); }

private:
  bool Holds(const SFrameFormat &stFormat) const;

  CFrameBuffer m_memory;
  imagecalc::CFrameSums m_sums;
};

/// Averages frames that arrive in an exchange, and keeps the average. User-interface thread only.
class CBrightField {
public:
  /// \param exchange outlives this object; its buffer is this object's matter from Allocate to EndAcquisition
  explicit CBrightField(CFrameExchange &exchange) : m_exchange(exchange) {}

  /// Takes zeroed memory for frames of nSize bytes: the average, its sums and the exchange's buffer.
  /// \return 0, or -2
  [[nodiscard]] int32_t Allocate(uint64_t nSize);
  /// Adds the frame in the exchange. \return -1012 for a frame smaller than its format says
  [[nodiscard]] int32_t Add(const SFrameFormat &stFormat);
  /// Computes the average of nFrameCount added frames, in the memory of the last one; later frames do not reach it.
  /// \return 0, or a mapped status of the image statistics
  [[nodiscard]] int32_t Average(uint32_t nFrameCount, const SFrameFormat &stFormat);
  /// Frees what only an acquisition needs.
  void EndAcquisition();
  /// Frees the average.
  void Drop() { m_average.Release(); }

  /// Half an average is no bright field: drops it unless the status of the acquisition is 0.
  [[nodiscard]] int32_t KeepOnSuccess(int32_t nStatus);

  const CFrameBuffer &GetAverage() const { return m_average; }

private:
  CFrameExchange &m_exchange;
  CFrameAccumulator m_accumulator;
  CFrameBuffer m_average;
};

} // namespace ffc::process
