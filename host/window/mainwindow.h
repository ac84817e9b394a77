/// \file
/// The window of the reference host.
#pragma once

#include <array>
#include <memory>
#include <optional>
#include <vector>

#include <QElapsedTimer>
#include <QMainWindow>
#include <QPointer>

#include "host/dialogdriver/dialogobserver.h"
#include "host/measurement/acquiredframes.h"
#include "host/measurement/background.h"
#include "host/measurement/coefficientorigin.h"
#include "host/options/camerachoice.h"
#include "host/options/cameraopening.h"
#include "host/viewer/camerasession.h"
#include "host/window/acquisitionprogress.h"
#include "host/window/cameramemory.h"
#include "host/window/correctionstate.h"
#include "host/window/dialognote.h"
#include "host/window/exposurehelper.h"
#include "host/window/framerate.h"

class QAction;
class QDialog;
class QLabel;
class QMenu;
class QSplitter;
class QTabWidget;

namespace ffc::flat {
struct SWeightedFlat;
}

namespace ffc::host {

class CCameraPanel;
class CDialogDriver;
class CImageArea;
class CImageView;
class CPlotPanel;
class CQualityPanel;
class CRecordingPanel;
class CScenePanel;
class CStatusLine;

/// Live image, camera, scene, plots and quality of one camera with the plug-in on it. Closing it ends the program.
///
/// Frames are fetched at a rate of the window's own; analysis and figures are computed on other threads.
class CMainWindow : public QMainWindow {
  Q_OBJECT

public:
  /// \param stCamera of the command line: the first choice among the cameras
  CMainWindow(const SCameraOptions &stCamera, SPluginOptions stPlugin, CameraFactory fnOpenCamera);
  ~CMainWindow() override;

  /// Of the window when nothing is remembered.
  /// \param szScreen what is free of the screen
  static QSize GetFirstSize(const QSize &szScreen);
  /// \return why an exposure was not found; empty where nothing has gone wrong
  static QString DescribeExposure(const CExposureHelper::SStep &stStep);
  /// Before the dialog is shown.
  void SetPreset(const SDialogPreset &stPreset) { m_stPreset = stPreset; }
  /// See CCameraSession::Open.
  Result<> OpenCamera(const SCameraOptions &stCamera);
  /// Null while no camera is open.
  CViewer *GetViewer() { return m_session.GetViewer(); }
  const CAcquiredFrames &GetAcquiredFrames() const { return m_acquired; }
  bool IsRecorded() const { return !m_stOpenCamera.strReplayFolder.empty(); }

public slots:
  void SlotStartStop();
  void SlotChoose(int nChoice);
  /// Looks for real cameras, which takes about a second, and offers those that answer.
  void SlotLookForCameras();
  /// Loads the settings that an interrupted acquisition left in the camera's "UserSet0", with the stream stopped.
  void SlotRestoreSettings();
  void SlotShowDialog();
  /// Sets the exposure time so that the brightest part of the image is at 70 % of the format's maximum.
  void SlotExpose();
  /// The frame that is shown, into a file.
  void SlotSaveImage();
  void SlotSaveSequence();
  void SlotSavePreset();
  void SlotShowFeatures();
  void SlotLoadLastCoefficients();
  /// A weighted table out of the frames that the plug-in has acquired last, saved and loaded.
  void SlotMakeReference();
  void SlotMeasure();
  void SlotCheckDrift();
  void SlotSaveReport();

signals:
  /// The plots show a newer frame.
  void SigPlotted();

protected:
  void timerEvent(QTimerEvent *pEvent) override;
  void closeEvent(QCloseEvent *pEvent) override;

private:
  void MakeLayout();
  QWidget *MakeControls();
  void MakeActions();
  QAction *AddAction(QMenu *pMenu, const QString &strText, const QKeySequence &keys, std::function<void()> fnAction);
  void AddPresets(QMenu *pMenu);
  void AddHelp();
  void ConnectPanels();
  void ConnectDialog();
  void RestoreLayout();
  void SaveLayout() const;

  void ConnectSession();
  void ShowCamera();
  void ForgetCamera();
  void ShowStates(const CFeatureStates &mapStates);
  /// Opens the recording anew with samples of another kind; the former one where that cannot be.
  void ReplayAs(const QString &strPixelFormat, std::optional<frames::EAlignment> eAlignment);
  void TakeFrame();
  std::shared_ptr<SFrameCopy> FindFreeFrame();
  void ContinueExposure();
  void UpdateStatus();
  void UpdateSlowly();
  bool IsPreviewOn();
  void PlaceDialog(QWidget &dialog);
  void RaiseDialog();
  void PresetDialog(QDialog &dialog);
  void PresetGray(QDialog &dialog);
  void ObserveDialog();
  void ExpectAcquisition();
  void BeginAcquisition();
  void EndAcquisition();
  void AnswerBox(QDialog *pBox, const QString &strText);
  /// Says where coefficients that are about to be loaded are for another camera.
  void CheckSideFile(const QString &strFile);
  void NoteOutcome(const SDialogOutcome &stOutcome);
  /// Keeps beside coefficients that were saved for which frames they are, where that is known.
  void KeepSideFile(const SDialogOutcome &stOutcome);
  void ApplyPreset(const QString &strName);
  void OfferCoefficients();
  void LoadCoefficients(QString strFile);
  void OfferReference();
  QString ExplainNoReference() const;
  void NoteReferenceFrames(const SDialogOutcome &stOutcome);
  void ShowReference(const Result<flat::SWeightedFlat> &made, uint32_t nExpectGray);
  Result<> SaveReference(const flat::SWeightedFlat &stFlat, uint32_t nExpectGray, const QString &strFile);
  void MarkStale(const SDialogOutcome &stOutcome);
  void RecallCamera();
  void RememberCamera();
  void RememberOutcome(const SDialogOutcome &stOutcome, const CDialogDriver &driver);
  void ShowNote(const SDialogNote &stNote);
  uint32_t GetAcquisitionTotal() const;
  /// Whether something may begin: a camera is open, and neither the window nor the plug-in is at work with it.
  bool IsFree();
  void SetBusy(bool bBusy);
  void ShowError(const Failure &failure);
  /// \return whether it has failed
  template <class TValue>
  bool ShowIfFailed(const Result<TValue> &result)
  {
    if (!result) {
      ShowError(result.GetFailure());
    }
    return !result;
  }
  void ShowMessage(const QString &strText);
  void ShowBox(int nIcon, const QString &strText);

  SCameraOptions m_stFirstCamera;
  SCameraOptions m_stOpenCamera;
  SPluginOptions m_stPlugin;
  SDialogPreset m_stPreset;
  QString m_strCameraGroup; ///< whose memory follows; empty: none is open
  SCameraMemory m_stMemory;
  int m_nSuggestedGray = -1; ///< by the last bright field
  CameraFactory m_fnOpenCamera;
  std::vector<SCameraChoice> m_listChoices;
  int m_nChoice = 0;
  CAcquisitionProgress m_progress;
  CDialogObserver m_dialogObserver;
  CCoefficientWatch m_coefficients;
  CAcquiredFrames m_acquired; ///< before the session, whose frames go there
  CCameraSession m_session;
  CBackground m_referenceWork;

  CCameraPanel *m_pCameraPanel; // in the order of the Tab key
  CScenePanel *m_pScenePanel;
  CRecordingPanel *m_pRecordingPanel;
  CImageArea *m_pImageArea;
  CImageView *m_pView;
  CPlotPanel *m_pPlotPanel;
  CQualityPanel *m_pQualityPanel;
  CStatusLine *m_pStatusLine;
  QLabel *m_pNote;               ///< what was done in the plug-in's dialog last
  QPointer<QDialog> m_pFeatures; ///< of the camera that is open, while the user looks at them
  QAction *m_pLastCoefficients = nullptr;
  QAction *m_pMakeReference = nullptr;
  QWidget *m_pControls = nullptr;
  QTabWidget *m_pTabs = nullptr;
  QSplitter *m_pSplitter = nullptr;

  CExposureHelper m_exposure;
  std::array<std::shared_ptr<SFrameCopy>, 4> m_listFrames; ///< shown, the one before, and what an analysis still reads
  std::shared_ptr<SFrameCopy> m_pFrame;                    ///< the one that is shown
  SCoefficientOrigin m_stFrameOrigin; ///< of what the frame that is shown is corrected with, where it is
  std::optional<SFrameShape> m_stCorrectedShape;
  CFrameRate m_frameRate;
  QElapsedTimer m_clock;
  int64_t m_nFrameMs = 0; ///< when the last frame, plot, status and slow update were
  int64_t m_nPlotMs = 0;
  int64_t m_nStatusMs = 0;
  int64_t m_nSlowMs = 0;
  bool m_bByCamera = false;
  bool m_bDialogPlaced = false; ///< from then on it stands where the user leaves it
  bool m_bByCameraMode = false; ///< the plug-in works on the camera's own correction
  bool m_bCancelled = false;    ///< the user has cancelled the acquisition that runs or has just ended
  bool m_bQuiet = false;        ///< the plug-in's box about it was answered
  bool m_bOtherFrames = false;  ///< the acquired frames were dropped, for the stream's are of another kind
  bool m_bCloseWanted = false;  ///< as soon as the acquisition has ended
  bool m_bBusy = false;
};

} // namespace ffc::host
