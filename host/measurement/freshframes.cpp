#include "host/measurement/freshframes.h"

#include <QCoreApplication>

namespace ffc::host {

using camera::SCameraFrame;
using genapi::FindSensorFormat;
using genapi::SSensorFormat;

namespace {

using EWanted = CFramePipeline::EWanted;

QString Translate(const char *pText)
{
  return QCoreApplication::translate("FreshFrames", pText);
}

} // namespace

Result<SStreamFormat> ReadStreamFormat(CFrameCollector &collector, EWanted eWanted)
{
  SCameraFrame stFrame;
  const Result<> collected = collector.Collect(1, eWanted, [&stFrame](const SProcessedFrame &stProcessed) {
    stFrame = *stProcessed.pRaw;
    return true;
  });
  if (!collected) {
    return collected.GetFailure();
  }
  const SSensorFormat *pFormat = FindSensorFormat(stFrame.nPixelFormat);
  if (pFormat == nullptr) {
    return Failure(Translate("Frames of the pixel format 0x%1 cannot be measured.")
                     .arg(stFrame.nPixelFormat, 8, 16, QLatin1Char('0')));
  }
  return SStreamFormat{pFormat, stFrame.nWidth, stFrame.nHeight};
}

Result<> TakePairs(CFrameCollector &collector, const SStreamFormat &stFormat, quality::CPairedStacks &stStacks,
                   EWanted eWanted)
{
  if (!stStacks.Prepare(stFormat.nWidth, stFormat.nHeight, *stFormat.pFormat)) {
    return Failure(Translate("There is not enough memory."));
  }
  return collector.Collect(MEASURED_FRAMES, eWanted, [&stStacks](const SProcessedFrame &stFrame) {
    const void *pRaw = stFrame.pRaw->pBuffer;
    return stStacks.Add(pRaw, stFrame.pCorrected == nullptr ? pRaw : stFrame.pCorrected, stFrame.pRaw->nSize);
  });
}

Result<> TakeFrames(CFrameCollector &collector, const SStreamFormat &stFormat, EWanted eWanted,
                    quality::CFrameStack &stStack)
{
  if (!stStack.Prepare(stFormat.nWidth, stFormat.nHeight, stFormat.pFormat->nBitDepth)) {
    return Failure(Translate("There is not enough memory."));
  }
  stStack.AlsoFilter(stFormat.pFormat->eLayout);
  return collector.Collect(MEASURED_FRAMES, eWanted, [&](const SProcessedFrame &stFrame) {
    return stStack.Add(eWanted == EWanted::Corrected ? stFrame.pCorrected : stFrame.pRaw->pBuffer, stFrame.pRaw->nSize);
  });
}

Result<> SkipFrames(CFrameCollector &collector, uint32_t nFrames)
{
  return collector.Collect(nFrames, EWanted::Any, [](const SProcessedFrame &) { return true; });
}

} // namespace ffc::host
