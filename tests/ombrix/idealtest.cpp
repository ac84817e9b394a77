#include "ombrix/ombrix.h"

#include <algorithm>
#include <cmath>
#include <string>

#include <gtest/gtest.h>

#include "tests/ombrix/pixelbytes.h"

namespace {

// One gain, as the signal of the bright frame and its target.
struct SGainCase {
  uint32_t nSignal;
  uint32_t nTarget;
};

class OmbrixIdeal : public testing::TestWithParam<uint32_t> {
protected:
  const uint32_t m_nBitDepth = GetParam();
  const uint32_t m_nMax = (1U << m_nBitDepth) - 1;

  // Corrects every source value with one gain. \return the largest distance to the ideal, in grey values
  double MeasureGain(const SGainCase &stCase, uint32_t nDark) const
  {
    const std::size_t nBytes = GetBytesPerPixel(m_nBitDepth);
    const uint32_t nCount = m_nMax + 1;
    TValues listSource(nCount);
    for (uint32_t i = 0; i < nCount; ++i) {
      listSource[i] = i;
    }
    const TBytes listBright = PackValues(TValues(nCount, stCase.nSignal + nDark), nBytes);
    const TBytes listDark = PackValues(TValues(nCount, nDark), nBytes);
    TBytes listFrame = PackValues(listSource, nBytes);
    TBytes listTable(std::size_t{nCount} * 4);
    auto nSize = static_cast<uint32_t>(listTable.size());
    const OMBRIX_FFC_PARAM stParam = {listBright.data(), listDark.data(), nCount, 1, m_nBitDepth, 0};
    EXPECT_EQ(OmbrixComputeFlatField(stParam, listTable.data(), &nSize, &stCase.nTarget), OMBRIX_STATUS_SUCCESS);
    EXPECT_EQ(
      OmbrixApplyFlatField(listFrame.data(), listFrame.data(), m_nBitDepth, nCount, 1, listTable.data(), &nSize),
      OMBRIX_STATUS_SUCCESS);
    return GetLargestError(UnpackValues(listFrame, nBytes), stCase, nDark);
  }

private:
  double GetLargestError(const TValues &listResult, const SGainCase &stCase, uint32_t nDark) const
  {
    double dLargest = 0.0;
    for (uint32_t i = 0; i <= m_nMax; ++i) {
      const double dSignal = std::max(0.0, static_cast<double>(i) - nDark);
      const double dIdeal = std::min<double>(m_nMax, dSignal * stCase.nTarget / stCase.nSignal);
      dLargest = std::max(dLargest, std::abs(listResult[i] - dIdeal));
    }
    return dLargest;
  }
};

} // namespace

TEST_P(OmbrixIdeal, ResultsAreWithinOneGreyValueForGainsFromASixteenthToSixteen)
{
  const uint32_t nSixteenth = m_nMax / 16;
  std::vector<SGainCase> listCases = {{nSixteenth, nSixteenth * 16}, {nSixteenth * 16, nSixteenth}, {1, 16}, {16, 1}};
  const TValues listSignals = MakeRandomValues(400, m_nMax - 1, m_nBitDepth);
  const TValues listTargets = MakeRandomValues(400, m_nMax, m_nBitDepth + 1);
  for (std::size_t i = 0; i < listSignals.size(); ++i) {
    const SGainCase stCase = {listSignals[i] + 1, listTargets[i]};
    if (stCase.nTarget * 16 >= stCase.nSignal && stCase.nTarget <= stCase.nSignal * 16) {
      listCases.push_back(stCase);
    }
  }
  ASSERT_GT(listCases.size(), 300U);
  for (const SGainCase &stCase : listCases) {
    for (const uint32_t nDark : {0U, (m_nMax - stCase.nSignal) / 2}) {
      ASSERT_LE(MeasureGain(stCase, nDark), 1.0)
        << "signal " << stCase.nSignal << ", target " << stCase.nTarget << ", dark " << nDark;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(CameraDepths, OmbrixIdeal, testing::Values(8U, 10U, 12U),
                         [](const auto &stInfo) { return std::to_string(stInfo.param) + "Bit"; });
