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

QString DescribeUsedFrames(const SNoise &stNoise, const SFrameCountAdvice &stAdvice, const SReferenceFacts &stFacts)
{
  const int nFrames = stFacts.nFrames;
  if (nFrames >= stAdvice.nAdvised) {
    return nFrames == 1 ? Translate("1 frame was used, which is as advised.")
                        : Translate("%1 frames were used, which is as advised.").arg(nFrames);
  }
  const QString strPercent = QString::number(100.0 * GetReferenceNoise(stNoise, stFacts) / stNoise.dMean, 'f', 2);
  return nFrames == 1 ? Translate("1 frame was used: its noise leaves %1 % in every image.").arg(strPercent)
                      : Translate("%1 frames were used: their noise leaves %2 % in every image.")
                          .arg(QString::number(nFrames), strPercent);
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
    return {(stFacts.nFrames == 1
               ? Translate("The reference of 1 frame is weighted by what stands out of its noise: it makes no image "
                           "worse, and more frames bring more of the pixel pattern.")
               : Translate("The reference of %1 frames is weighted by what stands out of their noise: it makes no "
                           "image worse, and more frames bring more of the pixel pattern.")
                   .arg(stFacts.nFrames))};
  }
  QStringList listAdvice{DescribeAdvice(stAdvice)};
  if (stFacts.nFrames > 0 && stAdvice.eVerdict != SFrameCountAdvice::EVerdict::Unknown) {
    listAdvice << DescribeUsedFrames(listNoise.front(), stAdvice, stFacts);
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
