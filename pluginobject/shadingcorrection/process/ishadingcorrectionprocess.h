/// \file
/// What the correction dialog needs of a correction, whatever does the arithmetic.
#pragma once

#include <cstdint>
#include <string>

#include <QObject>

#include "pluginobject/pluginrecords.h"
#include "pluginobject/shadingcorrection/process/coefficients/ffcinfo.h"

/// A correction process. It owns its frames and coefficients; it shows no message.
///
/// Operations run on the user-interface thread, inside the dialog slot that started them, and may wait
/// there for frames. ReceiveImage, SetImageReady, WaitImageRequest, CorrectImage, SetStopFlag and
/// IsColorCamera are called on the thread that delivers frames, from InitProcess until the destructor.
/// Status results are the codes of pluginobject/statuscode.h. None throws.
class IShadingCorrectionProcess : public QObject {
  Q_OBJECT

public:
  using QObject::QObject;

signals:
  /// Asks the host to start (PLUGIN_MSG_ACQUISITION_ON) or stop (PLUGIN_MSG_ACQUISITION_OFF) its stream.
  /// Emitted on the user-interface thread.
  void SigAcquisitionStatusChanged(const PLUGIN_MSG &stPluginMsg);

public:
  /// Reads the camera's correction settings. Called once, before all else.
  virtual int32_t InitProcess() = 0;
  /// Puts the camera into the state that an acquisition needs.
  virtual int32_t PrepareDeviceParam() = 0;
  /// Undoes PrepareDeviceParam as far as the camera answers; always 0.
  virtual int32_t RestoreDeviceParam() = 0;
  /// Takes one frame with the lens covered and keeps it.
  virtual int32_t AcquireDarkImage() = 0;
  /// Takes frame-count frames of an evenly lit target and keeps their average.
  virtual int32_t AcquireBrightImage() = 0;
  /// Computes the coefficients from the kept frames and puts them to use.
  virtual int32_t ExecuteCorrection() = 0;
  /// \param strEntry an entry of FFCFrameCount, such as "FFCFrameCount_4"
  virtual int32_t SetFrameCount(std::string strEntry) = 0;
  /// \param nExpectGray 0 to 255
  virtual int32_t SetExpectGray(int64_t nExpectGray) = 0;
  virtual int32_t LoadFromFlash() = 0;
  virtual int32_t SaveToFlash() = 0;
  /// Asks the user for a file; -1014 when they cancel.
  virtual int32_t LoadFromFile() = 0;
  virtual int32_t SaveToFile() = 0;
  /// Copies a frame of nSize bytes into the acquisition buffer; without a buffer does nothing.
  virtual void ReceiveImage(const void *pFrame, uint32_t nSize) = 0;
  /// Tells the waiting operation that the requested frame is there.
  virtual void SetImageReady() = 0;
  /// Polls, and consumes, the request for a frame: 0 when one is wanted, 258 when not.
  virtual uint32_t WaitImageRequest() = 0;
  virtual FFCInfo GetCorrectionInfo() = 0;
  /// Largest block mean of the last analysed frame, on an 8-bit scale.
  virtual double GetImageMaxGray() = 0;
  /// Largest minus smallest block mean of the last analysed frame, on an 8-bit scale.
  virtual double GetImageGrayDiff() = 0;
  /// Whether the user's black level is the camera's default one.
  virtual bool IsBlackLevelDefault() = 0;
  /// Corrects one frame on the host. A process whose camera corrects returns 0 and touches nothing.
  /// \param pSource, pDestination nWidth x nHeight pixels of nPixelFormat (PFNC code); may be the same
  virtual int32_t CorrectImage(const void *pSource, void *pDestination, uint32_t nWidth, int32_t nHeight,
                               uint32_t nPixelFormat) = 0;
  /// Whether the camera delivers, or is set to, a format that the correction can use.
  virtual bool IsPixelFormatSupported() = 0;
  /// Makes a waiting acquisition end with -1017 when it wakes.
  virtual void SetStopFlag(bool bStop) = 0;
  virtual bool IsColorCamera() = 0;
};
