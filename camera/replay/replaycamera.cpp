#include "camera/replay/replaycamera.h"

#include <new>
#include <utility>

#include <QDir>

#include "camera/replay/framereplay.h"
#include "camera/softwarecamera.h"

namespace {

SCameraDescription Describe(const SReplayCameraOptions &stOptions, const ffc::frames::SRecordedFrames &stFrames)
{
  SCameraDescription stDescription;
  stDescription.strVendor = "Replay";
  stDescription.strModel = stFrames.stFormat.strName;
  stDescription.strSerial = QDir(QString::fromStdString(stOptions.strFolder)).dirName().toStdString();
  stDescription.listFormats = {stFrames.stFormat};
  stDescription.strPixelFormat = stFrames.stFormat.strName;
  stDescription.nSensorWidth = stFrames.nWidth;
  stDescription.nSensorHeight = stFrames.nHeight;
  stDescription.dFrameRate = stOptions.dFrameRate;
  return stDescription;
}

} // namespace

std::unique_ptr<ICamera> CreateReplayCamera(const SReplayCameraOptions &stOptions, std::string *pstrError)
{
  if (!(stOptions.dFrameRate >= MIN_FRAME_RATE && stOptions.dFrameRate <= MAX_FRAME_RATE)) {
    *pstrError = "The frame rate of a replay must lie between 0.1 and 10000.";
    return nullptr;
  }
  try {
    auto frames = ffc::frames::LoadRecordedFrames(stOptions.strFolder, stOptions.strPixelFormat);
    if (!frames) {
      *pstrError = frames.GetError();
      return nullptr;
    }
    const SCameraDescription stDescription = Describe(stOptions, frames.GetValue());
    return std::make_unique<CSoftwareCamera>(stDescription,
                                             std::make_unique<CFrameReplay>(std::move(frames).GetValue()));
  } catch (const std::bad_alloc &) {
    *pstrError = "There is not enough memory for the recorded frames.";
    return nullptr;
  }
}
