#include "quality/deviationimage.h"

#include <algorithm>
#include <numeric>

namespace ffc::quality {
namespace {

/// Reads lines of a mean image, or of the difference of two.
class CReader {
public:
  CReader(const CFrameStack &stack, const CFrameStack *pLess, const SChannel &stChannel)
    : m_stack(stack), m_pLess(pLess), m_stChannel(stChannel), m_listLess(stChannel.GetColumns(stack.GetWidth()))
  {
  }

  void Read(uint32_t nLine, double *pLine)
  {
    m_stack.ReadMeans(m_stChannel, nLine, pLine);
    if (m_pLess != nullptr) {
      m_pLess->ReadMeans(m_stChannel, nLine, m_listLess.data());
      std::transform(pLine, pLine + m_listLess.size(), m_listLess.begin(), pLine, std::minus<>());
    }
  }

private:
  const CFrameStack &m_stack;
  const CFrameStack *m_pLess;
  const SChannel &m_stChannel;
  std::vector<double> m_listLess;
};

} // namespace

SDeviationImage MakeDeviationImage(const CFrameStack &stack, const CFrameStack *pLess, const SChannel &stChannel,
                                   const EHighPass *pHighPass)
{
  SDeviationImage stImage{
    stChannel.GetColumns(stack.GetWidth()), stChannel.GetLines(stack.GetHeight()), stack.GetFrameCount(), {}};
  CReader reader(stack, pLess, stChannel);
  if (pHighPass != nullptr) {
    CHighPass highPass(*pHighPass, stImage.nColumns, stImage.nRows);
    stImage.nColumns = highPass.GetWidth();
    stImage.nRows = highPass.GetHeight();
    stImage.listValues.reserve(std::size_t{stImage.nColumns} * stImage.nRows);
    highPass.Run([&](uint32_t nLine, double *pLine) { reader.Read(nLine, pLine); },
                 [&](uint32_t, const double *pLine) {
                   stImage.listValues.insert(stImage.listValues.end(), pLine, pLine + stImage.nColumns);
                 });
  } else {
    stImage.listValues.resize(std::size_t{stImage.nColumns} * stImage.nRows);
    for (uint32_t nLine = 0; nLine < stImage.nRows; ++nLine) {
      reader.Read(nLine, stImage.listValues.data() + std::size_t{nLine} * stImage.nColumns);
    }
  }
  if (!stImage.listValues.empty()) {
    const double dMean = std::accumulate(stImage.listValues.begin(), stImage.listValues.end(), 0.0) /
                         static_cast<double>(stImage.listValues.size());
    for (double &dValue : stImage.listValues) {
      dValue -= dMean;
    }
  }
  return stImage;
}

} // namespace ffc::quality
