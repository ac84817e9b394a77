#include "tests/reference/sensor.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace ffc::test {

Field SSensor::MakeField() const
{
  std::mt19937 random(nSeed);
  std::normal_distribution<double> normal;
  Field field(GetPixelCount());
  for (uint32_t nY = 0; nY < nHeight; ++nY) {
    for (uint32_t nX = 0; nX < nWidth; ++nX) {
      const double dX = static_cast<double>(nX) / nWidth - 0.5;
      const double dY = static_cast<double>(nY) / nHeight - 0.5;
      const double dStructure = fnStructure ? fnStructure(nX, nY) : 1;
      field[static_cast<std::size_t>(nY) * nWidth + nX] =
        dLevel * (1 - 0.1 * (dX * dX + dY * dY)) * (1 + dPattern * normal(random)) * dStructure;
    }
  }
  return field;
}

Field SSensor::MakeDarkLevels(double dDeviation) const
{
  SSensor stLevels = *this;
  stLevels.dLevel = 100;
  stLevels.dPattern = dDeviation;
  stLevels.nSeed = 9;
  return stLevels.MakeField();
}

Field Add(Field field, const Field &levels)
{
  std::transform(field.begin(), field.end(), levels.begin(), field.begin(), std::plus<>());
  return field;
}

CSums::CSums(const SSensor &stSensor, const Field &field, uint32_t nFrames, uint32_t nShift)
  : m_listSums(stSensor.GetPixelCount()), m_nFrames(nFrames), m_nShift(nShift)
{
  std::mt19937 random(stSensor.nSeed + 1000);
  std::normal_distribution<double> normal;
  const double dMaximum = (1U << stSensor.nBitDepth) - 1;
  std::vector<uint16_t> listFormer(m_listSums.size());
  std::vector<uint16_t> listFrame(m_listSums.size());
  for (uint32_t nFrame = 0; nFrame < nFrames; ++nFrame) {
    for (std::size_t n = 0; n < m_listSums.size(); ++n) {
      const double dVariance = stSensor.dReadNoise * stSensor.dReadNoise + stSensor.dSystemGain * field[n];
      const double dSample = stSensor.dDark + field[n] + std::sqrt(dVariance) * normal(random);
      listFrame[n] = static_cast<uint16_t>(std::lround(std::clamp(dSample, 0.0, dMaximum)) << nShift);
      m_listSums[n] += listFrame[n];
    }
    if (nFrame > 0) {
      m_meter.Add(listFormer.data(), listFrame.data(), stSensor.nWidth, stSensor.nHeight, 2);
    }
    std::swap(listFormer, listFrame);
  }
}

CSums MakeDark(SSensor stSensor, const Field &levels, uint32_t nFrames)
{
  stSensor.dSystemGain = 0;
  stSensor.nSeed = 20;
  return CSums(stSensor, levels, nFrames);
}

Field SMade::GetSignal(const SSensor &stSensor) const
{
  Field signal(listBright.size());
  for (std::size_t n = 0; n < signal.size(); ++n) {
    signal[n] = (listBright[n] - (listDark.empty() ? 0 : listDark[n])) /
                std::ldexp(1.0, 16 - static_cast<int>(stSensor.nBitDepth));
  }
  return signal;
}

reference::SReferenceInput MakeInput(const SSensor &stSensor, const CSums &bright, const CSums *pDark)
{
  reference::SReferenceInput stInput;
  stInput.nWidth = stSensor.nWidth;
  stInput.nHeight = stSensor.nHeight;
  stInput.nBitDepth = stSensor.nBitDepth;
  stInput.bMosaic = stSensor.bMosaic;
  stInput.stBright = bright.Get();
  stInput.stDark = pDark == nullptr ? reference::SFrameSums{} : pDark->Get();
  return stInput;
}

SMade MakeReference(const SSensor &stSensor, const CSums &bright, const CSums *pDark, uint32_t nThreads)
{
  reference::SReferenceInput stInput = MakeInput(stSensor, bright, pDark);
  stInput.nThreads = nThreads;
  SMade stMade;
  stMade.listBright.resize(stSensor.GetPixelCount());
  stMade.listDark.resize(pDark == nullptr ? 0 : stSensor.GetPixelCount());
  stMade.nStatus =
    reference::MakeWeightedReference(stInput, stMade.listBright.data(), stMade.listDark.data(), stMade.stResult);
  return stMade;
}

Field GetAverage(const SSensor &stSensor, const CSums &bright)
{
  Field average(bright.GetValues().size());
  for (std::size_t n = 0; n < average.size(); ++n) {
    average[n] = static_cast<double>(bright.GetValues()[n]) / bright.Get().nFrames - stSensor.dDark;
  }
  return average;
}

double GetError(const SSensor &stSensor, const Field &estimate, const Field &truth,
                const std::function<bool(uint32_t nX, uint32_t nY)> &fnWhere)
{
  Field ratios(truth.size());
  std::transform(estimate.begin(), estimate.end(), truth.begin(), ratios.begin(), std::divides<>());
  double dMean = 0;
  for (const double dRatio : ratios) {
    dMean += dRatio / static_cast<double>(ratios.size());
  }
  double dSum = 0;
  double dCount = 0;
  for (std::size_t n = 0; n < ratios.size(); ++n) {
    if (!fnWhere || fnWhere(static_cast<uint32_t>(n % stSensor.nWidth), static_cast<uint32_t>(n / stSensor.nWidth))) {
      dSum += (ratios[n] / dMean - 1) * (ratios[n] / dMean - 1);
      dCount += 1;
    }
  }
  return std::sqrt(dSum / dCount);
}

} // namespace ffc::test
