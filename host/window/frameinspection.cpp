#include "host/window/frameinspection.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <tuple>

#include <QCoreApplication>
#include <QStringList>

#include "host/window/displaypicture.h"

namespace ffc::host {

using genapi::SPixelFormat;

namespace {

QString Translate(const char *pText)
{
  return QCoreApplication::translate("FrameInspection", pText);
}

/// Sums over the samples of one colour, about its first one: squares of small numbers keep their digits.
class CSampleSums {
public:
  void Add(double dSample)
  {
    m_dOrigin = m_nSamples == 0 ? dSample : m_dOrigin;
    ++m_nSamples;
    m_dSum += dSample - m_dOrigin;
    m_dSquares += (dSample - m_dOrigin) * (dSample - m_dOrigin);
  }
  uint64_t GetCount() const { return m_nSamples; }
  double GetMean() const { return m_dOrigin + m_dSum / GetCountAsNumber(); }
  double GetVariance() const
  {
    const double dMean = m_dSum / GetCountAsNumber();
    return std::max(0.0, m_dSquares / GetCountAsNumber() - dMean * dMean);
  }

private:
  double GetCountAsNumber() const { return static_cast<double>(m_nSamples); }

  double m_dOrigin = 0;
  double m_dSum = 0;
  double m_dSquares = 0;
  uint64_t m_nSamples = 0;
};

bool AreAlike(const SFrameCopy &stFirst, const SFrameCopy &stSecond)
{
  const auto GetShape = [](const SFrameCopy &stFrame) {
    return std::tuple(stFrame.nWidth, stFrame.nHeight, stFrame.nPixelFormat, stFrame.bCorrected,
                      stFrame.listBytes.size());
  };
  return GetShape(stFirst) == GetShape(stSecond);
}

/// Index of the plane that a place belongs to, in the order of GetColorPlanes.
std::size_t FindPlane(const std::vector<quality::SColorPlane> &listPlanes, uint32_t nColumn, uint32_t nLine)
{
  const std::size_t nSite = (nLine & 1U) * 2U + (nColumn & 1U);
  const auto it = std::find_if(listPlanes.begin(), listPlanes.end(),
                               [&](const quality::SColorPlane &stPlane) { return stPlane.abSites[nSite]; });
  return static_cast<std::size_t>(it - listPlanes.begin());
}

template <class TSample>
uint64_t CountFrom(const SFrameCopy &stFrame, uint32_t nLeast)
{
  const TSample *pSamples = reinterpret_cast<const TSample *>(stFrame.listBytes.data());
  const TSample *pEnd = pSamples + stFrame.listBytes.size() / sizeof(TSample);
  return static_cast<uint64_t>(std::count_if(pSamples, pEnd, [nLeast](TSample nSample) { return nSample >= nLeast; }));
}

QString DescribeFigures(const SRegionFigures &stFigures)
{
  const QString strName =
    stFigures.strPlane == QLatin1String("Mono") ? QString() : stFigures.strPlane + QStringLiteral(": ");
  return strName +
         Translate("mean %1 DN, noise %2, deviation %3 DN")
           .arg(stFigures.dMean, 0, 'f', 1)
           .arg(stFigures.dNoise ? QStringLiteral("%1 DN").arg(*stFigures.dNoise, 0, 'f', 2) : Translate("not known"))
           .arg(stFigures.dDeviation, 0, 'f', 2);
}

} // namespace

const SFrameCopy &GetSamples(const SFrameCopy &stFrame)
{
  return stFrame.pRaw == nullptr ? stFrame : *stFrame.pRaw;
}

std::optional<double> GetOverexposedPercent(const SFrameCopy &stFrame, double dThreshold)
{
  const SPixelFormat *pFormat = GetShownFormat(stFrame);
  if (pFormat == nullptr) {
    return std::nullopt;
  }
  const uint32_t nLeast = GetOverexposedGrey(*pFormat, dThreshold);
  const uint64_t nCount =
    pFormat->GetBytesPerPixel() == 1 ? CountFrom<uint8_t>(stFrame, nLeast) : CountFrom<uint16_t>(stFrame, nLeast);
  return 100.0 * static_cast<double>(nCount) / (static_cast<double>(stFrame.nWidth) * stFrame.nHeight);
}

std::vector<SRegionFigures> MeasureRegion(const SFrameCopy &stFrame, const QRect &rcRegion, const SFrameCopy *pPrevious)
{
  const SPixelFormat *pFormat = GetShownFormat(stFrame);
  const QRect rcFrame(0, 0, static_cast<int>(stFrame.nWidth), static_cast<int>(stFrame.nHeight));
  if (pFormat == nullptr || rcRegion.isEmpty() || !rcFrame.contains(rcRegion)) {
    return {};
  }
  const bool bNoise = pPrevious != nullptr && AreAlike(stFrame, *pPrevious);
  const std::vector<quality::SColorPlane> listPlanes = quality::GetColorPlanes(pFormat->eLayout);
  std::vector<CSampleSums> listSamples(listPlanes.size());
  std::vector<CSampleSums> listSteps(listPlanes.size());
  for (int nLine = rcRegion.top(); nLine <= rcRegion.bottom(); ++nLine) {
    for (int nColumn = rcRegion.left(); nColumn <= rcRegion.right(); ++nColumn) {
      const uint32_t nX = static_cast<uint32_t>(nColumn);
      const uint32_t nY = static_cast<uint32_t>(nLine);
      const std::size_t nPlane = FindPlane(listPlanes, nX, nY);
      const double dSample = GetSample(stFrame, *pFormat, nX, nY);
      listSamples[nPlane].Add(dSample);
      if (bNoise) {
        listSteps[nPlane].Add(dSample - GetSample(*pPrevious, *pFormat, nX, nY));
      }
    }
  }
  std::vector<SRegionFigures> listFigures;
  for (std::size_t nPlane = 0; nPlane < listPlanes.size(); ++nPlane) {
    if (listSamples[nPlane].GetCount() > 0) {
      SRegionFigures stFigures{QString::fromStdString(listPlanes[nPlane].strName), listSamples[nPlane].GetCount(),
                               listSamples[nPlane].GetMean(), std::sqrt(listSamples[nPlane].GetVariance()),
                               std::nullopt};
      if (bNoise) {
        stFigures.dNoise = std::sqrt(listSteps[nPlane].GetVariance() / 2); // both frames have it
      }
      listFigures.push_back(stFigures);
    }
  }
  return listFigures;
}

QString DescribeRegion(const std::vector<SRegionFigures> &listFigures, const QRect &rcRegion)
{
  if (listFigures.empty()) {
    return {};
  }
  QStringList listTexts;
  for (const SRegionFigures &stFigures : listFigures) {
    listTexts << DescribeFigures(stFigures);
  }
  return Translate("Region %1 x %2 px at %3, %4: ")
           .arg(rcRegion.width())
           .arg(rcRegion.height())
           .arg(rcRegion.left())
           .arg(rcRegion.top()) +
         listTexts.join(QStringLiteral("; "));
}

std::vector<SLineProfile> MakeLineProfiles(const SFrameCopy &stFrame, const QLine &line)
{
  const SPixelFormat *pFormat = GetShownFormat(stFrame);
  const QRect rcFrame(0, 0, static_cast<int>(stFrame.nWidth), static_cast<int>(stFrame.nHeight));
  if (pFormat == nullptr || !rcFrame.contains(line.p1()) || !rcFrame.contains(line.p2())) {
    return {};
  }
  const std::vector<quality::SColorPlane> listPlanes = quality::GetColorPlanes(pFormat->eLayout);
  std::vector<SLineProfile> listProfiles;
  listProfiles.reserve(listPlanes.size());
  for (const quality::SColorPlane &stPlane : listPlanes) {
    listProfiles.push_back({QString::fromStdString(stPlane.strName), {}});
  }
  const int nSteps = std::max({std::abs(line.dx()), std::abs(line.dy()), 1});
  const double dLength = std::hypot(line.dx(), line.dy());
  for (int nStep = 0; nStep <= nSteps; ++nStep) {
    const double dShare = static_cast<double>(nStep) / nSteps;
    const uint32_t nX = static_cast<uint32_t>(std::lround(line.x1() + line.dx() * dShare));
    const uint32_t nY = static_cast<uint32_t>(std::lround(line.y1() + line.dy() * dShare));
    quality::SProfile &stProfile = listProfiles[FindPlane(listPlanes, nX, nY)].stProfile;
    stProfile.listPositions << dShare * dLength;
    stProfile.listGrays << GetSample(stFrame, *pFormat, nX, nY);
  }
  return listProfiles;
}

} // namespace ffc::host
