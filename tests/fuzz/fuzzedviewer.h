/// \file
/// A viewer with the plug-in open and its preview on.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <QApplication>
#include <QWidget>

#include "pluginobject/shadingcorrectionplugin.h"
#include "tests/support/testcamera.h"

/// Lives as long as the program: a dialog takes longer to build than a thousand frames to process.
class CFuzzedViewer {
public:
  static constexpr int32_t WIDTH = 24;
  static constexpr int32_t HEIGHT = 16;

  /// The one viewer of a camera; "Mono12" or "BayerRG12". Makes an application where there is none.
  static CFuzzedViewer &Get(bool bColour);
  ~CFuzzedViewer();

  CShadingCorrectionPlugin &Plugin() { return *m_pPlugin; }
  ffc::test::CTestCamera &Camera() { return m_camera; }
  /// What the title bar shows.
  QString GetTitle() const;
  /// Frames are offered to the correction again, whatever ended that.
  void StartPreview();
  /// Clicks a button of the dialog, with somebody to answer its boxes.
  void Click(const char *pButton);

private:
  explicit CFuzzedViewer(const std::string &strPixelFormat);
  class CPlugin;
  CShadingCorrectionDlg &Dialog() const;

  ffc::test::CTestCamera m_camera;
  QWidget m_parent;
  PLUGIN_INIT_PARAM m_stParam;
  std::unique_ptr<CShadingCorrectionPlugin> m_pPlugin;
};
