#include "camera/software/replay/replaycamera.h"

#include <new>
#include <utility>

#include <QDir>

#include "camera/software/replay/framereplay.h"
#include "camera/software/softwarecamera.h"

namespace ffc::camera {

using genapi::FindSensorFormat;
using genapi::SSensorFormat;

namespace {

// The format that the frames are played in; null when there is none of that name.
const SSensorFormat *FindFormat(const SReplayCameraOptions &stOptions, const ffc::frames::SRecordedFrames &stFrames)
{
  return FindSensorFormat(stOptions.strPixelFormat.empty() ? stFrames.strStatedFormat : stOptions.strPixelFormat);
}

SCameraDescription Describe(const SReplayCameraOptions &stOptions, const SSensorFormat &stFormat,
                            const ffc::frames::SRecordedFrames &stFrames)
{
  SCameraDescription stDescription;
  stDescription.strVendor = "Replay";
  // Wherever the camera is named, people see that the samples were shifted.
  stDescription.strModel = std::string(stFormat.pName) + (stFrames.bLeftAligned ? ", left-aligned in its files" : "");
  stDescription.strSerial = QDir(QString::fromStdString(stOptions.strFolder)).dirName().toStdString();
  stDescription.listFormats = {stFormat};
  stDescription.strPixelFormat = stFormat.pName;
  stDescription.nSensorWidth = stFrames.stLayout.nWidth;
  stDescription.nSensorHeight = stFrames.stLayout.nHeight;
  stDescription.dFrameRate = stOptions.dFrameRate;
  stDescription.bCoverable = !stFrames.listDark.empty();
  if (!stFrames.strGuess.empty()) {
    stDescription.listNotes.push_back({SFeatureNote::EKind::Guessed, "PixelFormat", stFrames.strGuess});
  }
  return stDescription;
}

ffc::Result<ffc::frames::SRecordedFrames> Load(const SReplayCameraOptions &stOptions)
{
  if (stOptions.strPixelFormat.empty()) {
    return ffc::frames::LoadRecordedFrames(stOptions.strFolder, std::nullopt, stOptions.eAlignment);
  }
  const SSensorFormat *pFormat = FindSensorFormat(stOptions.strPixelFormat);
  if (pFormat == nullptr) {
    return ffc::Failure("The recording cannot be played: there is no pixel format \"" + stOptions.strPixelFormat +
                        "\".");
  }
  return ffc::frames::LoadRecordedFrames(
    stOptions.strFolder, ffc::frames::SSampleFormat{pFormat->pName, pFormat->nBitDepth}, stOptions.eAlignment);
}

} // namespace

Result<std::unique_ptr<ICamera>> CreateReplayCamera(const SReplayCameraOptions &stOptions)
{
  if (!(stOptions.dFrameRate >= MIN_FRAME_RATE && stOptions.dFrameRate <= MAX_FRAME_RATE)) {
    return Failure("The frame rate of a replay must lie between 0.1 and 10000.");
  }
  try {
    auto frames = Load(stOptions);
    if (!frames) {
      return frames.GetFailure();
    }
    const SSensorFormat *pFormat = FindFormat(stOptions, frames.GetValue());
    if (pFormat == nullptr) {
      return Failure("The recording cannot be played: there is no pixel format \"" + frames.GetValue().strStatedFormat +
                     "\".");
    }
    const SCameraDescription stDescription = Describe(stOptions, *pFormat, frames.GetValue());
    return std::make_unique<CSoftwareCamera>(stDescription,
                                             std::make_unique<CFrameReplay>(std::move(frames).GetValue()));
  } catch (const std::bad_alloc &) {
    return Failure("There is not enough memory for the recorded frames.");
  }
}

} // namespace ffc::camera
