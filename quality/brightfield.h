/// \file
/// Whether frames can be a bright field.
#pragma once

#include <functional>
#include <vector>

#include <QString>

#include "quality/framestack.h"

namespace ffc::quality {

/// Watches the light while bright frames come: their means, and how they change in time from place to place. Used by
/// one thread at a time.
class CLightWatch {
public:
  /// Cells to each side of the grid that is watched.
  static constexpr uint32_t CELLS = 8;

  /// Takes one frame of tightly packed lines; all have one size. Never fails: without memory a frame is not watched.
  /// \param nBytesPerSample 1 or 2
  void Add(const void *pFrame, uint32_t nWidth, uint32_t nHeight, uint32_t nBytesPerSample);

  std::size_t GetFrameCount() const { return m_listFrames.size(); }
  /// Distance of the brightest frame from the darkest, percent of the mean; 0 for fewer than two.
  double GetFlickerPercent() const;
  /// How differently the cells change from the first half of the frames to the second, percent; 0 for fewer than four.
  double GetDriftPercent() const;
  /// Largest value seen, and how many samples had it.
  uint32_t GetLargest() const { return m_nLargest; }
  uint64_t GetLargestCount() const { return m_nAtLargest; }
  uint64_t GetSampleCount() const { return m_nSamples; }

private:
  template <class TSample>
  void AddSamples(const TSample *pSamples, uint32_t nWidth, uint32_t nHeight);

  std::vector<std::vector<double>> m_listFrames; ///< means of the cells
  uint32_t m_nLargest = 0;
  uint64_t m_nAtLargest = 0;
  uint64_t m_nSamples = 0;
};

/// What speaks against a bright field.
struct SBrightField {
  double dClippedPercent = 0;
  double dStructurePercent = 0; ///< of the blocks that differ from their neighbours as no smooth shading does
  double dFlickerPercent = 0;
  double dDriftPercent = 0;
};

/// Share of the blocks, in percent, that lie off the middle of their two neighbours, across or down, by 3 percent of
/// the mean and what steep shading explains.
/// \param fnValue mean of a pixel of the channel, by its column and line
double MeasureStructure(uint32_t nColumns, uint32_t nLines,
                        const std::function<double(uint32_t nColumn, uint32_t nLine)> &fnValue);

/// \param pWatch may be null
SBrightField MeasureBrightField(const CFrameStack &stBright, const CLightWatch *pWatch, genapi::EColorLayout eLayout);

struct SBrightRemark {
  bool bUnusable = false; ///< else only worse than it might be
  QString strText;        ///< a sentence, in the language of the program
};
std::vector<SBrightRemark> JudgeBrightField(const SBrightField &stField);

} // namespace ffc::quality
