#include "quality/defects.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include <QStringList>

namespace ffc::quality {

using genapi::EColorLayout;

namespace {

constexpr uint32_t REACH = 2;           ///< pixels of the channel to each side
constexpr double TO_DEVIATION = 1.4826; ///< from the median absolute deviation of a normal distribution
constexpr double STUCK_SHARE = 0.1;     ///< of the neighbours' signal
constexpr double ROUNDING = 1.0 / 12.0; ///< DN^2, the variance that rounding leaves
constexpr double NOISE_TIMES = 6.0;     ///< robust standard deviations that a deviating signal exceeds in any case
constexpr std::size_t ENOUGH_SAMPLES = 100000; ///< for a standard deviation
constexpr uint32_t FRAMES_FOR_NOISE = 4;

constexpr std::array<std::pair<uint32_t, const char *>, 5> KINDS = {{
  {DEFECT_DARK, "dark"},
  {DEFECT_BRIGHT, "bright"},
  {DEFECT_HOT, "hot"},
  {DEFECT_STUCK, "stuck"},
  {DEFECT_NOISY, "noisy"},
}};

double TakeMedian(std::vector<double> &listValues)
{
  if (listValues.empty()) {
    return 0;
  }
  const auto itMiddle = listValues.begin() + static_cast<std::ptrdiff_t>(listValues.size() / 2);
  std::nth_element(listValues.begin(), itMiddle, listValues.end());
  return *itMiddle;
}

/// One channel's mean image, or variances, with sides of its own.
class CPlaneImage {
public:
  CPlaneImage(const CFrameStack &stack, const SChannel &stChannel)
    : m_nColumns(stChannel.GetColumns(stack.GetWidth())), m_nLines(stChannel.GetLines(stack.GetHeight())),
      m_listValues(std::size_t{m_nColumns} * m_nLines)
  {
  }

  double *GetLine(uint32_t nLine) { return m_listValues.data() + std::size_t{nLine} * m_nColumns; }
  double At(uint32_t nColumn, uint32_t nLine) const { return m_listValues[std::size_t{nLine} * m_nColumns + nColumn]; }
  uint32_t GetColumns() const { return m_nColumns; }
  uint32_t GetLines() const { return m_nLines; }
  const std::vector<double> &GetValues() const { return m_listValues; }

  /// Whether the median around a pixel surely lies within a distance of the pixel itself, because most values do.
  bool IsMedianWithin(uint32_t nColumn, uint32_t nLine, double dDistance) const
  {
    if (nColumn < REACH || nLine < REACH || nColumn + REACH >= m_nColumns || nLine + REACH >= m_nLines) {
      return false;
    }
    const double dValue = At(nColumn, nLine);
    uint32_t nWithin = 0;
    for (uint32_t nY = nLine - REACH; nY <= nLine + REACH; ++nY) {
      const double *pValues = m_listValues.data() + std::size_t{nY} * m_nColumns + nColumn - REACH;
      for (uint32_t nX = 0; nX <= 2 * REACH; ++nX) {
        nWithin += std::abs(pValues[nX] - dValue) <= dDistance ? 1U : 0U;
      }
    }
    return 2 * nWithin > (2 * REACH + 1) * (2 * REACH + 1);
  }

  /// Of the pixels around one, itself included.
  double GetMedianAround(uint32_t nColumn, uint32_t nLine) const
  {
    std::array<double, std::size_t{2 * REACH + 1} * (2 * REACH + 1)> adValues;
    std::size_t nValues = 0;
    for (uint32_t nY = nLine - std::min(nLine, REACH); nY < std::min(m_nLines, nLine + REACH + 1); ++nY) {
      for (uint32_t nX = nColumn - std::min(nColumn, REACH); nX < std::min(m_nColumns, nColumn + REACH + 1); ++nX) {
        adValues[nValues++] = At(nX, nY);
      }
    }
    const auto itMiddle = adValues.begin() + static_cast<std::ptrdiff_t>(nValues / 2);
    std::nth_element(adValues.begin(), itMiddle, adValues.begin() + static_cast<std::ptrdiff_t>(nValues));
    return *itMiddle;
  }

private:
  uint32_t m_nColumns;
  uint32_t m_nLines;
  std::vector<double> m_listValues;
};

CPlaneImage ReadMeans(const CFrameStack &stack, const SChannel &stChannel)
{
  CPlaneImage image(stack, stChannel);
  for (uint32_t nLine = 0; nLine < image.GetLines(); ++nLine) {
    stack.ReadMeans(stChannel, nLine, image.GetLine(nLine));
  }
  return image;
}

CPlaneImage ReadVariances(const CFrameStack &stack, const SChannel &stChannel)
{
  CPlaneImage image(stack, stChannel);
  for (uint32_t nLine = 0; nLine < image.GetLines(); ++nLine) {
    for (uint32_t nColumn = 0; nColumn < image.GetColumns(); ++nColumn) {
      image.GetLine(nLine)[nColumn] = stack.GetVariance(stChannel.nFirstColumn + nColumn * stChannel.nStep,
                                                        stChannel.nFirstLine + nLine * stChannel.nStep) +
                                      ROUNDING;
    }
  }
  return image;
}

/// Of the pixels from the medians around them, DN; no less than rounding makes it.
double GetRobustDeviation(const CPlaneImage &image)
{
  std::vector<double> listAbsolute;
  const std::size_t nStep = 1 + image.GetValues().size() / ENOUGH_SAMPLES;
  for (std::size_t nPixel = 0; nPixel < image.GetValues().size(); nPixel += nStep) {
    const auto nColumn = static_cast<uint32_t>(nPixel % image.GetColumns());
    const auto nLine = static_cast<uint32_t>(nPixel / image.GetColumns());
    listAbsolute.push_back(std::abs(image.At(nColumn, nLine) - image.GetMedianAround(nColumn, nLine)));
  }
  return std::max(std::sqrt(ROUNDING), TO_DEVIATION * TakeMedian(listAbsolute));
}

bool HasNoise(const CFrameStack &stack)
{
  return stack.KeepsSquares() && stack.GetFrameCount() >= FRAMES_FOR_NOISE;
}

/// Judges the pixels of one channel.
class CChannelJudge {
public:
  CChannelJudge(const CFrameStack &stBright, const CFrameStack &stDark, const SChannel &stChannel,
                const SDefectLimits &stLimits)
    : m_stChannel(stChannel), m_stLimits(stLimits), m_dark(ReadMeans(stDark, stChannel)),
      m_signal(ReadMeans(stBright, stChannel))
  {
    for (uint32_t nLine = 0; nLine < m_signal.GetLines(); ++nLine) {
      for (uint32_t nColumn = 0; nColumn < m_signal.GetColumns(); ++nColumn) {
        m_signal.GetLine(nLine)[nColumn] -= m_dark.At(nColumn, nLine);
      }
    }
    m_dDarkLimit = std::max(1.0, stLimits.dDarkDeviations * GetRobustDeviation(m_dark));
    m_dSignalNoise = NOISE_TIMES * GetRobustDeviation(m_signal);
    if (HasNoise(stBright) && HasNoise(stDark)) {
      m_listVariances = {ReadVariances(stBright, stChannel), ReadVariances(stDark, stChannel)};
      for (const CPlaneImage &variances : m_listVariances) {
        std::vector<double> listCopy = variances.GetValues();
        m_listMedians.push_back(TakeMedian(listCopy));
      }
    }
  }

  void Judge(std::vector<SDefect> &listDefects) const
  {
    for (uint32_t nLine = 0; nLine < m_signal.GetLines(); ++nLine) {
      for (uint32_t nColumn = 0; nColumn < m_signal.GetColumns(); ++nColumn) {
        const SDefect stDefect = JudgePixel(nColumn, nLine);
        if (stDefect.nKinds != 0) {
          listDefects.push_back(stDefect);
        }
      }
    }
  }

private:
  /// Without a median, which takes long: whatever the medians are, they are near enough.
  bool IsSurelyGood(uint32_t nColumn, uint32_t nLine, double dSignal) const
  {
    const double dShare = m_stLimits.dBrightPercent / 100.0;
    return m_listVariances.empty() && dSignal > 0 &&
           m_signal.IsMedianWithin(nColumn, nLine, dSignal * dShare / (1.0 + dShare)) &&
           m_dark.IsMedianWithin(nColumn, nLine, m_dDarkLimit);
  }

  SDefect JudgePixel(uint32_t nColumn, uint32_t nLine) const
  {
    SDefect stDefect;
    stDefect.nColumn = m_stChannel.nFirstColumn + nColumn * m_stChannel.nStep;
    stDefect.nLine = m_stChannel.nFirstLine + nLine * m_stChannel.nStep;
    const double dSignal = m_signal.At(nColumn, nLine);
    if (IsSurelyGood(nColumn, nLine, dSignal)) {
      return stDefect;
    }
    const double dAround = m_signal.GetMedianAround(nColumn, nLine);
    stDefect.dBrightPercent = dAround > 0 ? 100.0 * (dSignal / dAround - 1.0) : 0.0;
    stDefect.dDarkDn = m_dark.At(nColumn, nLine) - m_dark.GetMedianAround(nColumn, nLine);
    for (std::size_t n = 0; n < m_listVariances.size(); ++n) {
      stDefect.dNoiseTimes =
        std::max(stDefect.dNoiseTimes, std::sqrt(m_listVariances[n].At(nColumn, nLine) / m_listMedians[n]));
    }
    const bool bFar = std::abs(dSignal - dAround) > m_dSignalNoise;
    const bool bStuck = dAround > 0 && dSignal <= STUCK_SHARE * dAround;
    stDefect.nKinds |= bStuck ? DEFECT_STUCK : 0U;
    stDefect.nKinds |= !bStuck && bFar && stDefect.dBrightPercent < -m_stLimits.dBrightPercent ? DEFECT_DARK : 0U;
    stDefect.nKinds |= bFar && stDefect.dBrightPercent > m_stLimits.dBrightPercent ? DEFECT_BRIGHT : 0U;
    stDefect.nKinds |= stDefect.dDarkDn > m_dDarkLimit ? DEFECT_HOT : 0U;
    stDefect.nKinds |= stDefect.dNoiseTimes > m_stLimits.dNoiseTimes ? DEFECT_NOISY : 0U;
    return stDefect;
  }

  const SChannel &m_stChannel;
  const SDefectLimits &m_stLimits;
  CPlaneImage m_dark;
  CPlaneImage m_signal;
  double m_dDarkLimit = 0;                  ///< DN
  double m_dSignalNoise = 0;                ///< DN, what noise and common pattern can make of a signal
  std::vector<CPlaneImage> m_listVariances; ///< bright and dark, or none
  std::vector<double> m_listMedians;
};

} // namespace

std::vector<SDefect> FindDefects(const CFrameStack &stBright, const CFrameStack &stDark, EColorLayout eLayout,
                                 const SDefectLimits &stLimits)
{
  std::vector<SDefect> listDefects;
  if (stBright.GetFrameCount() == 0 || stDark.GetFrameCount() == 0 || stBright.GetWidth() != stDark.GetWidth() ||
      stBright.GetHeight() != stDark.GetHeight()) {
    return listDefects;
  }
  for (const SChannel &stChannel : GetChannels(eLayout)) {
    CChannelJudge(stBright, stDark, stChannel, stLimits).Judge(listDefects);
  }
  std::sort(listDefects.begin(), listDefects.end(), [](const SDefect &stOne, const SDefect &stOther) {
    return std::pair(stOne.nLine, stOne.nColumn) < std::pair(stOther.nLine, stOther.nColumn);
  });
  return listDefects;
}

QString GetKindNames(uint32_t nKinds)
{
  QStringList listNames;
  for (const auto &[nKind, pName] : KINDS) {
    if ((nKinds & nKind) != 0) {
      listNames << QLatin1String(pName);
    }
  }
  return listNames.join('+');
}

QString SummarizeDefects(const std::vector<SDefect> &listDefects)
{
  if (listDefects.empty()) {
    return QStringLiteral("no defect pixels");
  }
  QStringList listCounts;
  for (const auto &[nKind, pName] : KINDS) {
    const auto nCount =
      std::count_if(listDefects.begin(), listDefects.end(),
                    [nWanted = nKind](const SDefect &stDefect) { return (stDefect.nKinds & nWanted) != 0; });
    if (nCount > 0) {
      listCounts << QStringLiteral("%1 %2").arg(nCount).arg(QLatin1String(pName));
    }
  }
  return QStringLiteral("%1 defect %2: %3")
    .arg(QString::number(listDefects.size()),
         listDefects.size() == 1 ? QStringLiteral("pixel") : QStringLiteral("pixels"),
         listCounts.join(QStringLiteral(", ")));
}

} // namespace ffc::quality
