#include "quality/referenceadvice.h"

#include <algorithm>
#include <cmath>

#include <QCoreApplication>

namespace ffc::quality {

using camera::ECorrectionMode;

namespace {

const double ROUNDING = 1.0 / std::sqrt(12.0); ///< DN
constexpr uint32_t ENOUGH_BITS = 12;
constexpr double VISIBLE_PERCENT = 0.05;

QString Translate(const char *pText)
{
  return QCoreApplication::translate("ReferenceAdvice", pText);
}

/// DN that the reference's noise leaves in each pixel of a corrected image.
double GetReferenceNoise(const SNoise &stNoise, const SReferenceFacts &stFacts)
{
  const int nFrames = stFacts.nFrames > 0 ? stFacts.nFrames : AdviseFrameCount(stNoise).nAdvised;
  const double dPixels = stFacts.eMode == ECorrectionMode::None ? 1.0 : std::max(1U, stFacts.nBlockSize);
  return stNoise.dTemporal / (std::sqrt(static_cast<double>(nFrames)) * dPixels);
}

QStringList DescribeFrames(const std::vector<SNoise> &listNoise, const SReferenceFacts &stFacts)
{
  if (stFacts.eMode != ECorrectionMode::None) {
    return {Translate("The camera evens out blocks of %1 x %1 pixels: one frame is enough, and the pixels' own pattern "
                      "stays.")
              .arg(std::max(1U, stFacts.nBlockSize))};
  }
  const SFrameCountAdvice stAdvice = AdviseFrameCount(listNoise);
  if (stFacts.bWeighted) {
    return {
      Translate("The reference of %1 frame(s) is weighted by what stands out of their noise: it makes no image worse, "
                "and more frames bring more of the pixel pattern.")
        .arg(stFacts.nFrames)};
  }
  QStringList listAdvice{DescribeAdvice(stAdvice)};
  if (stFacts.nFrames > 0 && stAdvice.eVerdict != SFrameCountAdvice::EVerdict::Unknown) {
    listAdvice << (stFacts.nFrames >= stAdvice.nAdvised
                     ? Translate("%1 frame(s) were used, which is as advised.").arg(stFacts.nFrames)
                     : Translate("%1 frame(s) were used: their noise leaves %2 % in every image.")
                         .arg(stFacts.nFrames)
                         .arg(100.0 * GetReferenceNoise(listNoise.front(), stFacts) / listNoise.front().dMean, 0, 'f',
                              2));
  }
  return listAdvice;
}

} // namespace

double GetRoundingPercent(const SNoise &stNoise)
{
  return stNoise.dMean > 0 ? 100.0 * ROUNDING / stNoise.dMean : 0;
}

bool DoBitsSetTheFloor(const SNoise &stNoise, const SReferenceFacts &stFacts)
{
  return stFacts.nBitDepth > 0 && stFacts.nBitDepth < ENOUGH_BITS && GetRoundingPercent(stNoise) >= VISIBLE_PERCENT &&
         ROUNDING >= GetReferenceNoise(stNoise, stFacts);
}

QStringList AdviseReference(const std::vector<SNoise> &listNoise, const SReferenceFacts &stFacts)
{
  QStringList listAdvice = DescribeFrames(listNoise, stFacts);
  const auto itDarkest =
    std::min_element(listNoise.begin(), listNoise.end(),
                     [](const SNoise &stOne, const SNoise &stOther) { return stOne.dMean < stOther.dMean; });
  if (itDarkest != listNoise.end() && DoBitsSetTheFloor(*itDarkest, stFacts)) {
    listAdvice << Translate("Bits set the floor, not frames: take 12 bit; %1-bit rounding alone leaves %2 %.")
                    .arg(stFacts.nBitDepth)
                    .arg(GetRoundingPercent(*itDarkest), 0, 'f', 2);
  }
  return listAdvice;
}

} // namespace ffc::quality
