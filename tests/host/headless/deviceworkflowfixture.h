/// \file
/// Runs with the real module, in this process, on a camera that corrects itself.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "camera/software/simulated/simulatedcamera.h"
#include "genapi/softwarenodemap/softwarenodemap.h"
#include "host/headless/headlessrun.h"

namespace ffc::host {

/// A quick camera of 256 x 192 pixels, which a test may change each time it gets power.
class DeviceWorkflowFixture : public testing::Test {
protected:
  DeviceWorkflowFixture()
  {
    m_stOptions.stPlugin.strModule = PLUGIN_MODULE;
    m_stOptions.stWorkflow.strOutFolder = m_dir.filePath("out").toStdString();
    m_stOptions.stCamera.strPixelFormat = "Mono8";
    m_stOptions.stCamera.nWidth = 256;
    m_stOptions.stCamera.nHeight = 192;
    m_stOptions.stWorkflow.nFrames = 4;
    m_stOptions.stCamera.eMode = camera::ECorrectionMode::FlatField;
  }

  /// \return the run's error
  std::string Run()
  {
    m_nPowerOns = 0;
    CProgressLine progress(nullptr);
    CHeadlessRun run(
      m_stOptions, [this](const SCameraOptions &stOptions) { return OpenFast(stOptions); }, progress);
    const Result<> result = run.Run();
    m_stReport = run.GetReport();
    m_strSummary = result ? run.GetSummary() : QString();
    return result.GetError();
  }

  OpenedCamera OpenFast(const SCameraOptions &stOptions)
  {
    ++m_nPowerOns;
    camera::SSimulatedCameraOptions stCamera;
    stCamera.strPixelFormat = stOptions.strPixelFormat;
    stCamera.nWidth = stOptions.nWidth;
    stCamera.nHeight = stOptions.nHeight;
    stCamera.dFrameRate = 200;
    stCamera.eMode = stOptions.eMode;
    stCamera.strFlashFile = stOptions.strFlashFile;
    if (m_fnBuild) {
      m_fnBuild(stCamera);
    }
    OpenedCamera created = camera::CreateSimulatedCamera(stCamera);
    if (!created) {
      return created;
    }
    if (m_fnAdapt) {
      m_fnAdapt(dynamic_cast<genapi::CSoftwareNodeMap &>(*created.GetValue()->GetDeviceNodeMap()));
    }
    return created;
  }

  bool IsFirstPowerOn() const { return m_nPowerOns == 1; }
  QString GetPath(const char *pFile) const { return m_dir.filePath("out/" + QLatin1String(pFile)); }
  double GetShading(const quality::SUniformity &stUniformity) const { return stUniformity.stOverall.dShadingPercent; }

  /// Change the camera to be made, and the features of the one that was made.
  std::function<void(camera::SSimulatedCameraOptions &)> m_fnBuild;
  std::function<void(genapi::CSoftwareNodeMap &)> m_fnAdapt;
  int m_nPowerOns = 0;
  QTemporaryDir m_dir;
  SHeadlessOptions m_stOptions;
  quality::SReport m_stReport;
  QString m_strSummary;
};

} // namespace ffc::host
