#include "tests/reference/recordedset.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <functional>
#include <optional>
#include <random>

#include "frames/recordedframes.h"
#include "ombrix/ombrix.h"
#include "reference/weightedreference.h"

namespace ffc::test {
namespace {

using namespace reference;
using Frame = CRecordedSet::Frame;

constexpr double DARK_LEVEL = 14.75; ///< DN
constexpr std::size_t FIRST_FRESH = 20;

std::vector<Frame> ToFrames(const std::vector<std::vector<uint8_t>> &listBytes)
{
  std::vector<Frame> listFrames;
  for (const std::vector<uint8_t> &listFrame : listBytes) {
    listFrames.emplace_back(listFrame.size() / 2);
    std::memcpy(listFrames.back().data(), listFrame.data(), listFrame.size());
  }
  return listFrames;
}

void AddUp(const std::vector<Frame> &listFrames, uint32_t nFirst, uint32_t nFrames, std::vector<uint32_t> &listSums,
           CNoiseMeter &meter)
{
  for (uint32_t nFrame = nFirst; nFrame < nFirst + nFrames; ++nFrame) {
    for (std::size_t n = 0; n < listSums.size(); ++n) {
      listSums[n] += listFrames[nFrame][n];
    }
    if (nFrame > nFirst) {
      meter.Add(listFrames[nFrame - 1].data(), listFrames[nFrame].data(), SET_WIDTH, SET_HEIGHT, 2);
    }
  }
}

/// Percent of the mean, as a standard deviation; 0 of no pixels.
/// \param pWhere pixels that count; null: all
double GetCovariance(const std::array<std::vector<uint32_t>, 2> &alistHalves, const std::vector<bool> *pWhere)
{
  double dCount = 0;
  double dOne = 0;
  double dOther = 0;
  double dProducts = 0;
  for (std::size_t n = 0; n < alistHalves[0].size(); ++n) {
    if (pWhere == nullptr || (*pWhere)[n]) {
      dCount += 1;
      dOne += alistHalves[0][n];
      dOther += alistHalves[1][n];
      dProducts += static_cast<double>(alistHalves[0][n]) * alistHalves[1][n];
    }
  }
  if (dCount == 0) {
    return 0;
  }
  const double dCovariance = dProducts / dCount - dOne / dCount * (dOther / dCount);
  return 100 * std::sqrt(std::max(0.0, dCovariance)) / ((dOne + dOther) / 2 / dCount);
}

} // namespace

SDust MakeDust(bool bHard, uint32_t nSeed)
{
  constexpr double FARTHEST = 3; // radii from which on nothing is left of a spot
  SDust stDust;
  std::mt19937 random(nSeed);
  const auto fnRandom = [&random](double dFrom, double dTo) {
    return dFrom + (dTo - dFrom) * static_cast<double>(random()) / 4294967296.0;
  };
  for (int nSpot = 0; nSpot < 40; ++nSpot) {
    const double dX = fnRandom(20, SET_WIDTH - 20);
    const double dY = fnRandom(20, SET_HEIGHT - 20);
    const double dRadius = fnRandom(4, 12);
    const double dDepth = fnRandom(0.02, 0.1);
    const auto fnFirst = [&](double dCentre) {
      return static_cast<uint32_t>(std::max(0.0, dCentre - FARTHEST * dRadius));
    };
    const auto fnEnd = [&](double dCentre, uint32_t nMost) {
      return std::min(nMost, static_cast<uint32_t>(dCentre + FARTHEST * dRadius) + 1);
    };
    for (uint32_t nY = fnFirst(dY); nY < fnEnd(dY, SET_HEIGHT); ++nY) {
      for (uint32_t nX = fnFirst(dX); nX < fnEnd(dX, SET_WIDTH); ++nX) {
        const std::size_t nPixel = std::size_t{nY} * SET_WIDTH + nX;
        const double dDistance = std::hypot(nX - dX, nY - dY) / dRadius;
        const double dShape = bHard ? (dDistance <= 1 ? 1 : 0) : std::exp(-2 * dDistance * dDistance);
        stDust.listLight[nPixel] *= 1 - dDepth * dShape;
        stDust.listInside[nPixel] = stDust.listInside[nPixel] || dDistance <= 1;
      }
    }
  }
  return stDust;
}

Result<CRecordedSet> CRecordedSet::Load(const std::string &strFolder)
{
  const auto frames = frames::LoadRecordedFrames(strFolder + "/emva1288_set001", std::nullopt);
  if (!frames) {
    return frames.GetFailure();
  }
  CRecordedSet set;
  set.m_listBright = ToFrames(frames.GetValue().listBright);
  set.m_listDark = ToFrames(frames.GetValue().listDark);
  return set;
}

void CRecordedSet::Cover(const SDust &stDust)
{
  for (Frame &frame : m_listBright) {
    for (std::size_t n = 0; n < frame.size(); ++n) {
      frame[n] = static_cast<uint16_t>(std::lround((frame[n] - DARK_LEVEL) * stDust.listLight[n] + DARK_LEVEL));
    }
  }
}

std::vector<uint8_t> CRecordedSet::MakeTable(uint32_t nBright, uint32_t nFirst) const
{
  const uint32_t nDark = std::min<uint32_t>(nBright, 8);
  std::vector<uint32_t> listBrightSums(m_listBright[0].size());
  std::vector<uint32_t> listDarkSums(m_listBright[0].size());
  CNoiseMeter meterBright;
  CNoiseMeter meterDark;
  AddUp(m_listBright, nFirst, nBright, listBrightSums, meterBright);
  AddUp(m_listDark, 0, nDark, listDarkSums, meterDark);
  SReferenceInput stInput;
  stInput.nWidth = SET_WIDTH;
  stInput.nHeight = SET_HEIGHT;
  stInput.nBitDepth = 12;
  stInput.stBright = {listBrightSums.data(), nBright, 0, &meterBright};
  stInput.stDark = {listDarkSums.data(), nDark, 0, &meterDark};
  stInput.nThreads = 2;
  Frame bright(listBrightSums.size());
  Frame dark(listBrightSums.size());
  SReferenceResult stResult;
  std::vector<uint8_t> listTable(bright.size() * 4);
  auto nSize = static_cast<uint32_t>(listTable.size());
  const uint32_t nTarget = 124U << 8U;
  const bool bMade = MakeWeightedReference(stInput, bright.data(), dark.data(), stResult) == STATUS_SUCCESS &&
                     OmbrixComputeFlatField({bright.data(), dark.data(), SET_WIDTH, SET_HEIGHT, 16, 0},
                                            listTable.data(), &nSize, &nTarget) == OMBRIX_STATUS_SUCCESS;
  return bMade ? listTable : std::vector<uint8_t>();
}

SResidual CRecordedSet::MeasureResidual(const std::vector<uint8_t> *pTable, const SDust &stDust) const
{
  std::array<std::vector<uint32_t>, 2> alistHalves;
  alistHalves.fill(std::vector<uint32_t>(m_listBright[0].size()));
  for (std::size_t nFrame = FIRST_FRESH; nFrame < m_listBright.size(); ++nFrame) {
    Frame frame = m_listBright[nFrame];
    if (pTable != nullptr) {
      const auto nSize = static_cast<uint32_t>(pTable->size());
      if (OmbrixApplyFlatField(frame.data(), frame.data(), 12, SET_WIDTH, SET_HEIGHT, pTable->data(), &nSize) !=
          OMBRIX_STATUS_SUCCESS) {
        return {std::nan(""), std::nan("")};
      }
    }
    std::transform(frame.begin(), frame.end(), alistHalves[nFrame % 2].begin(), alistHalves[nFrame % 2].begin(),
                   std::plus<>());
  }
  return {GetCovariance(alistHalves, nullptr), GetCovariance(alistHalves, &stDust.listInside)};
}

} // namespace ffc::test
