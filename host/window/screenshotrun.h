/// \file
/// The workflow of a flat field in the window, without a person, for pictures of it.
#pragma once

#include <optional>

#include <QString>

#include "host/dialogdriver/dialogdriver.h"
#include "host/viewer/framecollector.h"
#include "host/window/mainwindow.h"

namespace ffc::host {

/// Raw image, dark field, bright field, corrected image, split view, figures; after each a picture of the window with
/// the plug-in's dialog before it. For a camera whose scene software can arrange. User-interface thread.
class CScreenshotRun {
public:
  /// Status and plots follow the frames some times a second.
  static constexpr int SETTLE_MS = 1500;

  /// \param window shown, with a camera
  /// \param nSettleMs waited before each picture, and after each change of the scene
  CScreenshotRun(CMainWindow &window, const QString &strFolder, int nSettleMs = SETTLE_MS);

  Result<> Run();

private:
  Result<> Prepare();
  Result<> AcquireDark();
  Result<> AcquireBright();
  Result<> Execute();
  Result<> HideDialog();
  Result<> SplitView();
  Result<> Measure();
  Result<> SavePicture(const char *pName);
  QPoint FindPlace(const QDialog &dialog) const;
  void Settle();

  CMainWindow &m_window;
  QString m_strFolder;
  int m_nSettleMs;
  std::optional<CDialogDriver> m_driver;
};

} // namespace ffc::host
