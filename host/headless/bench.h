/// \file
/// The camera on the bench: what every headless story does with it.
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include <QString>

#include "host/dialogdriver/dialogdriver.h"
#include "host/headless/progressline.h"
#include "host/headless/resultfolder.h"
#include "host/options/cameraopening.h"
#include "host/options/commandline.h"
#include "host/viewer/framecollector.h"
#include "host/viewer/viewer.h"
#include "quality/report.h"

namespace ffc::host {

/// Fresh frames that a figure is taken on.
constexpr uint32_t MEASURED_FRAMES = 16;

/// A camera in the viewer, the plug-in's dialog, and the common steps of the stories. Each step returns
/// empty or why it failed. User-interface thread.
class CBench {
public:
  /// \param fnOpenCamera called by Open and PowerCycle
  CBench(const SHostOptions &stOptions, CameraFactory fnOpenCamera, CProgressLine &progress);
  ~CBench();
  CBench(const CBench &) = delete;
  CBench &operator=(const CBench &) = delete;

  /// Makes the folder, the camera and the plug-in's binding to it. A camera that corrects itself gets a
  /// fresh flash in that folder, unless the user named one.
  QString Open();
  /// Shows the dialog.
  QString OpenDialog();
  /// Binds the plug-in anew and shows its dialog, as after closing and opening the camera. The stream stops.
  QString ReopenDialog();
  /// Takes the power from the camera and gives it back: the old camera is gone before the new one is made,
  /// and only its flash is the same. The stream is stopped then, and no dialog open.
  QString PowerCycle();
  void StopStream();

  /// Sets what stands before the lens, with the stream stopped meanwhile, so that no frame of the old scene is
  /// under way.
  QString SetScene(bool bLensCap, ISceneControl::EPurpose ePurpose);
  /// Fills the report's format and size from a frame of the running stream.
  QString ReadFormat();

  /// Presses the button for the dark field. The scene is set, the stream runs.
  QString AcquireDark();
  QString SelectFrameCount();
  /// Presses the button for the bright field. The scene is set, the format known, the stream runs.
  QString AcquireBright();
  /// Sets the expected grey of the command line, if it names one, and fills the report's.
  QString SelectExpectGray();

  /// Empty when the action had no error box; a red prompt becomes a note.
  QString Judge(const SDialogAnswer &stAnswer);

  const SHostOptions &GetOptions() const { return m_stOptions; }
  CProgressLine &GetProgress() { return m_progress; }
  CViewer &GetViewer() { return *m_pViewer; }
  ffc::host::CFrameCollector &GetCollector() { return *m_collector; }
  /// Only with a dialog.
  CDialogDriver &GetDriver() { return *m_driver; }
  CResultFolder &GetFolder() { return m_folder; }
  /// Null before ReadFormat.
  const SSensorFormat *GetFormat() const { return m_pFormat; }
  quality::SReport &GetReport() { return m_stReport; }
  const quality::SReport &GetReport() const { return m_stReport; }

private:
  QString PrepareFlash();
  QString OpenCameraInViewer();

  SHostOptions m_stOptions;
  CameraFactory m_fnOpenCamera;
  CProgressLine &m_progress;
  CResultFolder m_folder;
  std::unique_ptr<CViewer> m_pViewer;
  std::optional<ffc::host::CFrameCollector> m_collector;
  std::optional<CDialogDriver> m_driver;
  const SSensorFormat *m_pFormat = nullptr;
  quality::SReport m_stReport;
};

} // namespace ffc::host
