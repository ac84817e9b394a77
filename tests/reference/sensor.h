/// \file
/// A sensor whose every pixel is known, and its noisy frames.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "reference/weightedreference.h"

namespace ffc::test {

using Field = std::vector<double>;

struct SSensor {
  uint32_t nWidth = 128;
  uint32_t nHeight = 96;
  uint32_t nBitDepth = 12;
  double dLevel = 2000;      ///< DN, mean
  double dSystemGain = 0.27; ///< DN per electron
  double dReadNoise = 3;     ///< DN
  double dPattern = 0.003;   ///< deviation of the pixels' response
  double dDark = 100;        ///< DN
  bool bMosaic = false;
  uint32_t nSeed = 1;
  std::function<double(uint32_t nX, uint32_t nY)> fnStructure; ///< response besides; null: 1 everywhere

  std::size_t GetPixelCount() const { return static_cast<std::size_t>(nWidth) * nHeight; }
  /// Light of every pixel, DN, with some shading.
  Field MakeField() const;
  /// Dark level of every pixel beside dDark, DN: 100 in the mean, and of this deviation relative to that.
  Field MakeDarkLevels(double dDeviation) const;
};

Field Add(Field field, const Field &levels);

/// Frames added up as they would be when they are read.
class CSums {
public:
  CSums(const SSensor &stSensor, const Field &field, uint32_t nFrames, uint32_t nShift = 0);

  reference::SFrameSums Get() const { return {m_listSums.data(), m_nFrames, m_nShift, &m_meter}; }
  const std::vector<uint32_t> &GetValues() const { return m_listSums; }

private:
  std::vector<uint32_t> m_listSums;
  uint32_t m_nFrames;
  uint32_t m_nShift;
  reference::CNoiseMeter m_meter;
};

/// Frames without light.
CSums MakeDark(SSensor stSensor, const Field &levels, uint32_t nFrames);

struct SMade {
  int32_t nStatus = 0;
  std::vector<uint16_t> listBright;
  std::vector<uint16_t> listDark;
  reference::SReferenceResult stResult;

  /// Bright less dark reference, DN.
  Field GetSignal(const SSensor &stSensor) const;
};

/// Input for one thread.
/// \param pDark null: no dark frames
reference::SReferenceInput MakeInput(const SSensor &stSensor, const CSums &bright, const CSums *pDark = nullptr);

SMade MakeReference(const SSensor &stSensor, const CSums &bright, const CSums *pDark, uint32_t nThreads = 1);

/// Average of the frames less the true dark level, DN.
Field GetAverage(const SSensor &stSensor, const CSums &bright);

/// Root mean square of the relative error of a field, both scaled to a mean ratio of 1.
/// \param fnWhere pixels that count; null: all
double GetError(const SSensor &stSensor, const Field &estimate, const Field &truth,
                const std::function<bool(uint32_t nX, uint32_t nY)> &fnWhere = nullptr);

} // namespace ffc::test
