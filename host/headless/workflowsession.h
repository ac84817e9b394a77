/// \file
/// What every workflow without a person does with its camera.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include <QString>

#include "camera/iscenecontrol.h"
#include "host/dialogdriver/dialogdriver.h"
#include "host/headless/lensattendant.h"
#include "host/headless/progressline.h"
#include "host/headless/resultfolder.h"
#include "host/measurement/freshframes.h"
#include "host/options/cameraopening.h"
#include "host/options/hostoptions.h"
#include "host/viewer/framecollector.h"
#include "host/viewer/iacquisitionobserver.h"
#include "host/viewer/viewer.h"
#include "quality/report.h"
#include "quality/verdict.h"

namespace ffc::host {

/// A camera in the viewer, the plug-in's dialog, and the common steps of the workflows. User-interface thread.
///
/// Each frame that the plug-in takes while it acquires shows the noise of a moment of its own, whichever frame of the
/// stream it is: a simulated camera of one seed gives the same coefficients each time.
class CWorkflowSession final : public IAcquisitionObserver {
public:
  /// \param fnOpenCamera called by Open and PowerCycle
  CWorkflowSession(const SHeadlessOptions &stOptions, CameraFactory fnOpenCamera, CProgressLine &progress);
  ~CWorkflowSession() override;
  CWorkflowSession(const CWorkflowSession &) = delete;
  CWorkflowSession &operator=(const CWorkflowSession &) = delete;

  /// For a camera whose scene software cannot set. Before Open; without one, such a camera is not opened.
  void SetLensAttendant(LensAttendant fnAttend) { m_fnAttend = std::move(fnAttend); }

  /// Makes the folder, the camera and the plug-in's binding to it. A camera that corrects itself gets a
  /// fresh flash in that folder, unless the user named one.
  Result<> Open();
  /// Shows the dialog.
  Result<> OpenDialog();
  /// Binds the plug-in anew and shows its dialog, as after closing and opening the camera. The stream stops.
  Result<> ReopenDialog();
  /// Takes the power from the camera and gives it back: the old camera is gone before the new one is made,
  /// and only its flash is the same. The stream is stopped then, and no dialog open.
  Result<> PowerCycle();
  void StopStream();

  /// Sets what stands before the lens, with the stream stopped meanwhile, so that no frame of the old scene is
  /// under way.
  Result<> SetScene(bool bLensCap, camera::ISceneControl::EPurpose ePurpose);
  /// Fills the report's format and size from a frame of the running stream.
  Result<> ReadFormat();
  /// Sets the scene for figures, and shows progress.
  Result<> PrepareMeasurement(bool bLensCap);

  /// Presses the button for the dark field. The scene is set, the stream runs.
  Result<> AcquireDark();
  Result<> SelectFrameCount();
  /// Presses the button for the bright field. The scene is set, the format known, the stream runs.
  Result<> AcquireBright();
  /// Sets the expected grey of the command line, if it names one, and fills the report's.
  Result<> SelectExpectGray();

  /// Adds to the report's notes what is special about the camera's features, and how many frames it lost.
  void NoteCamera();
  /// What the frames before the correction say of the frame count.
  void Advise(const quality::CFrameStack &stBrightBefore);
  /// The report as JSON, and as a table to print; both with advice and verdict.
  QByteArray MakeJson() const;
  QString MakeSummary() const;
  /// Whether the figures keep the limits that were stated, also without any. Those of a bright field without light
  /// keep none.
  bool IsWithinLimit() const;

  /// Fails when the action had an error box; a red prompt becomes a note.
  Result<> Judge(const SDialogAnswer &stAnswer);

  void BeginAcquisition() override {} // the moment is held since the button was pressed
  void CountAcquiredFrame() override { HoldNextMoment(); }
  void EndAcquisition() override {}

  /// Whether there can be dark frames.
  bool CanCover() const;
  const SHeadlessOptions &GetOptions() const { return m_stOptions; }
  CProgressLine &GetProgress() { return m_progress; }
  CViewer &GetViewer() { return *m_pViewer; }
  ffc::host::CFrameCollector &GetCollector() { return *m_collector; }
  /// Only with a dialog.
  CDialogDriver &GetDriver() { return *m_driver; }
  CResultFolder &GetFolder() { return m_folder; }
  /// Known after ReadFormat.
  const SStreamFormat &GetFormat() const { return m_stFormat; }
  quality::SReport &GetReport() { return m_stReport; }
  const quality::SReport &GetReport() const { return m_stReport; }

private:
  void HoldNextMoment();
  /// Of a scene that can be held; see ISceneControl.
  void HoldMoment(std::optional<uint64_t> nMoment);
  /// \param fnPress presses the button of an acquisition
  SDialogAnswer Acquire(const std::function<SDialogAnswer()> &fnPress);
  Result<> PrepareFlash();
  Result<> OpenCameraInViewer();
  Result<> OpenPlugin();
  void NoteBrightFrames(uint32_t nDifferent);
  quality::SVerdict GetVerdict() const;

  SHeadlessOptions m_stOptions;
  CameraFactory m_fnOpenCamera;
  LensAttendant m_fnAttend;
  CProgressLine &m_progress;
  CResultFolder m_folder;
  std::unique_ptr<CViewer> m_pViewer;
  std::optional<ffc::host::CFrameCollector> m_collector;
  std::optional<CDialogDriver> m_driver;
  bool m_bHolding = false; ///< a button of an acquisition is pressed
  uint64_t m_nMoment = 0;
  SStreamFormat m_stFormat;
  quality::SReport m_stReport;
  QStringList m_listAdvice;
  QStringList m_listBrightRemarks; ///< reasons against using the bright field
  bool m_bTooDark = false;         ///< the bright field has no light to speak of
};

} // namespace ffc::host
