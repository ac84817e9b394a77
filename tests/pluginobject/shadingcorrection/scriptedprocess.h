/// \file
/// A correction process that does what a test tells it.
#pragma once

#include <atomic>
#include <functional>
#include <string>
#include <vector>

#include "platform/event.h"
#include "pluginobject/shadingcorrection/process/ishadingcorrectionprocess.h"
#include "pluginobject/statuscode.h"

/// What a scripted process answers, and what it was asked. Outlives the process.
struct SProcessScript {
  int32_t nInitStatus = PLUGIN_STATUS_SUCCESS;
  int32_t nDarkStatus = PLUGIN_STATUS_SUCCESS;
  int32_t nBrightStatus = PLUGIN_STATUS_SUCCESS;
  int32_t nExecuteStatus = PLUGIN_STATUS_SUCCESS;
  int32_t nFrameCountStatus = PLUGIN_STATUS_SUCCESS;
  int32_t nExpectGrayStatus = PLUGIN_STATUS_SUCCESS;
  int32_t nFlashStatus = PLUGIN_STATUS_SUCCESS;
  int32_t nFileStatus = PLUGIN_STATUS_SUCCESS;
  std::atomic<int32_t> nCorrectStatus{PLUGIN_STATUS_SUCCESS};
  FFCInfo stInfo;
  double dMaxGray = 0.0;
  double dGrayDiff = 0.0;
  bool bBlackLevelDefault = true;
  bool bPixelFormatSupported = true;
  bool bColor = false;
  uint32_t nWaitResult = ffc::platform::WAIT_RESULT_TIMEOUT;
  /// Runs within the acquisitions, the execution and the file operations, for what happens meanwhile; may throw.
  std::function<void()> fnMeanwhile = [] {};
  /// Runs within each call that is noted; may throw.
  std::function<void(const std::string &strCall)> fnNoted = [](const std::string &) {};

  std::vector<std::string> listCalls; ///< operations that were called, in order
  std::vector<bool> listStopFlags;
  bool bDestroyed = false;
};

/// Answers from its script and notes every call.
class CScriptedProcess : public IShadingCorrectionProcess {
  Q_OBJECT

public:
  explicit CScriptedProcess(SProcessScript &stScript) : m_stScript(stScript) {}
  ~CScriptedProcess() override { m_stScript.bDestroyed = true; }

  int32_t InitProcess() override { return Note("init", m_stScript.nInitStatus); }
  int32_t PrepareDeviceParam() override { return PLUGIN_STATUS_SUCCESS; }
  int32_t RestoreDeviceParam() override { return Note("restore", PLUGIN_STATUS_SUCCESS); }
  int32_t AcquireDarkImage() override { return NoteLong("dark", m_stScript.nDarkStatus); }
  int32_t AcquireBrightImage() override { return NoteLong("bright", m_stScript.nBrightStatus); }
  int32_t ExecuteCorrection() override { return NoteLong("execute", m_stScript.nExecuteStatus); }
  int32_t SetFrameCount(std::string strEntry) override { return Note(strEntry, m_stScript.nFrameCountStatus); }
  int32_t SetExpectGray(int64_t nExpectGray) override
  {
    return Note("gray " + std::to_string(nExpectGray), m_stScript.nExpectGrayStatus);
  }
  int32_t LoadFromFlash() override { return Note("load flash", m_stScript.nFlashStatus); }
  int32_t SaveToFlash() override { return Note("save flash", m_stScript.nFlashStatus); }
  int32_t LoadFromFile() override { return NoteLong("load file", m_stScript.nFileStatus); }
  int32_t SaveToFile() override { return NoteLong("save file", m_stScript.nFileStatus); }
  void ReceiveImage(const void *, uint32_t nSize) override
  {
    Note("receive " + std::to_string(nSize), PLUGIN_STATUS_SUCCESS);
  }
  void SetImageReady() override { Note("ready", PLUGIN_STATUS_SUCCESS); }
  uint32_t WaitImageRequest() override { return m_stScript.nWaitResult; }
  FFCInfo GetCorrectionInfo() override { return m_stScript.stInfo; }
  double GetImageMaxGray() override { return m_stScript.dMaxGray; }
  double GetImageGrayDiff() override { return m_stScript.dGrayDiff; }
  bool IsBlackLevelDefault() override { return m_stScript.bBlackLevelDefault; }
  int32_t CorrectImage(const void *, void *, uint32_t, int32_t, uint32_t) override { return m_stScript.nCorrectStatus; }
  bool IsPixelFormatSupported() override { return m_stScript.bPixelFormatSupported; }
  void SetStopFlag(bool bStop) override { m_stScript.listStopFlags.push_back(bStop); }
  bool IsColorCamera() override { return m_stScript.bColor; }

private:
  int32_t Note(const std::string &strCall, int32_t nStatus)
  {
    m_stScript.listCalls.push_back(strCall);
    m_stScript.fnNoted(strCall);
    return nStatus;
  }
  int32_t NoteLong(const std::string &strCall, int32_t nStatus)
  {
    Note(strCall, nStatus);
    m_stScript.fnMeanwhile();
    return nStatus;
  }

  SProcessScript &m_stScript;
};
