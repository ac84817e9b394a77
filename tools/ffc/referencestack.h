/// \file
/// Dark or bright frames, added up as they are read.
#pragma once

#include "frames/alignment.h"
#include "pluginobject/shadingcorrection/process/acquisition/brightfield.h"
#include "quality/brightfield.h"
#include "reference/weightedreference.h"
#include "tools/ffc/options.h"
#include "tools/ffc/report.h"

namespace ffc::tool {

/// Averages frames as the host-side process does: sums of 32 bits, divided and truncated. Memory for one frame and its
/// sums, however many frames there are. Used by one thread at a time.
class CReferenceStack {
public:
  /// Has the frames' noise measured as they are read, which takes memory for one frame more.
  void MeasureNoise() { m_bMeasured = true; }
  /// Adds all frames of all files; the first file says what all others must be.
  /// \param pLike what the frames must be like; null: whatever they are
  std::optional<STrouble> Read(const QStringList &listFiles, const SOptions &stOptions,
                               const frames::SFrameInfo *pLike);

  const frames::SFrameInfo &GetInfo() const { return m_stInfo; }
  const frames::SEvidence &GetEvidence() const { return m_stEvidence; }
  uint32_t GetFrameCount() const { return m_nFrames; }
  const quality::CLightWatch &GetWatch() const { return m_watch; }
  /// Remarks of the files, each once.
  const QStringList &GetRemarks() const { return m_listRemarks; }

  /// The truncated average and the first frame, right-aligned.
  /// \return false when there is no memory
  bool Average(const frames::SDepth &stDepth, process::CFrameBuffer &average);
  bool TakeFirst(const frames::SDepth &stDepth, process::CFrameBuffer &first);

  /// What was added up, for as long as the stack lives.
  reference::SFrameSums GetSums(const frames::SDepth &stDepth);

private:
  std::optional<STrouble> ReadFile(const QString &strFile, const SOptions &stOptions, const frames::SFrameInfo *pLike);
  std::optional<STrouble> Prepare(const QString &strFile, const frames::SFrameInfo &stInfo);
  std::optional<STrouble> AddFrame(const QString &strFile);
  process::SFrameFormat MakeFormat() const;

  frames::SFrameInfo m_stInfo;
  frames::SEvidence m_stEvidence;
  QStringList m_listRemarks;
  process::CFrameBuffer m_frame;
  process::CFrameBuffer m_first;
  process::CFrameAccumulator m_sums;
  bool m_bMeasured = false;
  process::CFrameBuffer m_former;
  reference::CNoiseMeter m_meter;
  quality::CLightWatch m_watch;
  uint32_t m_nFrames = 0;
};

} // namespace ffc::tool
