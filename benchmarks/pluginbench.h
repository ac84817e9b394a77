/// \file
/// The plug-in object with a camera, as a host has them, correcting on the host.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "pluginobject/shadingcorrectionplugin.h"
#include "tests/support/testcamera.h"

/// A plug-in that the dialog's own buttons bring to correcting. User-interface thread only but for Process.
class CPluginBench {
public:
  CPluginBench(const std::string &strPixelFormat, int32_t nWidth, int32_t nHeight);
  ~CPluginBench();

  /// Takes nFrameCount bright frames, as "Acquisition bright" does. \return whether all came
  bool AcquireBright(int32_t nFrameCount);
  /// Computes the coefficients; frames are corrected from then on. \return whether they are
  bool Execute();
  /// Passes the camera's frame through the plug-in, into the output. \return whether it was corrected
  bool Process();

  const void *GetFrame() const { return m_listFrame.data(); }
  void *GetOutput() { return m_listOutput.data(); }
  std::size_t GetFrameBytes() const { return m_listFrame.size(); }

private:
  template <class TWidget>
  TWidget *Find(const char *pName);

  ffc::test::CTestCamera m_camera;
  std::vector<uint8_t> m_listFrame;
  std::vector<uint8_t> m_listOutput;
  PLUGIN_INIT_PARAM m_stInitParam;
  PLUGIN_IMAGE_INFO m_stInput;
  PLUGIN_IMAGE_INFO m_stOutput;
  CShadingCorrectionPlugin m_plugin;
  CShadingCorrectionDlg *m_pDialog = nullptr; // the plug-in's
};
