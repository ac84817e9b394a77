/// \file
/// The camera that is open, from opening it to closing it.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QStringList>

#include "host/viewer/cameraworker.h"
#include "host/viewer/featurestate.h"
#include "host/viewer/viewer.h"
#include "platform/result.h"

namespace ffc::host {

/// Opens a camera with the plug-in on it, watches it, and opens it again when it was lost. One camera at a time.
/// User-interface thread; a worker opens and destroys cameras, starts their stream and reads them while they are
/// watched, so that one that does not answer keeps nobody waiting. The plug-in is used on the user-interface thread.
class CCameraSession : public QObject {
  Q_OBJECT

public:
  /// What is opened together, now and when a lost camera is back.
  struct SSetup {
    std::function<Result<std::unique_ptr<camera::ICamera>>()> fnOpenCamera; ///< on the worker's thread
    uint32_t nBlockSize = 0; ///< of a self-correcting camera's coefficients, pixels; 0: the camera's own choice
    QString strModule;       ///< of the plug-in
    ELanguage eLanguage = ELanguage::English;
    QWidget *pWindow = nullptr;           ///< the plug-in's dialog stands over it; outlives the session; null for none
    std::vector<std::string> listWatched; ///< features that SigRead tells of
  };

  /// \param pObserver of the plug-in's acquisitions; outlives the session; null for none
  CCameraSession(IAcquisitionObserver *pObserver, QObject *pParent);
  /// Does not emit a signal any more: close the session before where somebody needs them.
  ~CCameraSession() override;

  /// Opens the camera, binds the plug-in and starts the stream; the camera that was open goes first. A camera without
  /// plug-in stays open and streams uncorrected. All events but the user's input pass meanwhile.
  Result<> Open(const SSetup &stSetup);
  /// Waits until the camera is gone; no event passes.
  void Close();
  /// Looks for cameras or the like on the worker's thread. All events but the user's input pass meanwhile.
  void RunLive(const std::function<void()> &fnWork) { m_worker.RunLive(fnWork); }

  /// Null while no camera is open.
  CViewer *GetViewer() { return m_pViewer.get(); }
  /// Why there is no plug-in; empty when there is one.
  const QString &GetPluginError() const { return m_strPluginError; }
  bool IsLost();

  void StartOrStop();
  /// Loads the settings that an interrupted acquisition left in the camera's "UserSet0", with the stream stopped.
  /// \return what that changed, one line for each feature
  Result<QStringList> RestoreSettings();
  /// A frame has come.
  void NoteFrame() { m_nFrameMs = m_clock.elapsed(); }
  /// The user has changed the camera: what is being read of it is old.
  void NoteWritten() { ++m_nEpoch; }
  /// To be called about once a second. The watched features are read; a camera that is lost is opened again when it
  /// answers, and one that streams and delivers nothing is reported.
  /// \param bMayReopen false while a question to the user is open, which refers to the camera that is there
  /// \return false when the camera is lost, or was opened again just now
  bool Watch(bool bMayReopen);

signals:
  /// A camera is open, with the plug-in on it; its stream stands still yet.
  void SigOpened();
  /// The viewer is about to go.
  void SigClosing();
  /// The stream has started or stopped, or settings of the camera have changed.
  void SigChanged();
  /// What is wrong with the camera; empty: nothing any more.
  void SigError(const QString &strError);
  /// The watched features have been read.
  void SigRead(const ffc::host::CFeatureStates &mapStates);

private:
  using Camera = std::unique_ptr<camera::ICamera>;

  void Forget();
  void CloseLive();
  void Destroy(Camera pCamera);
  void Adopt(Camera pCamera);
  Result<> StartLive();
  void Reopen(bool bMayReopen);
  void LookForLost();
  void ReadWatched();
  void TakeStates(const CFeatureStates &mapStates, int64_t nBegunMs);
  void CheckStall();

  IAcquisitionObserver *m_pObserver;
  SSetup m_stSetup;
  std::unique_ptr<CViewer> m_pViewer;
  QString m_strPluginError;
  QElapsedTimer m_clock;
  int64_t m_nFrameMs = 0;    ///< when the last frame came or was to be expected
  int64_t m_nReadMs = 0;     ///< when the camera was last asked for what it then answered
  int64_t m_nReopenedMs = 0; ///< when a lost camera was last asked for; 0: not yet
  Camera m_pFound;           ///< the lost camera, back; not in use yet
  uint64_t m_nEpoch = 0;     ///< counts what makes work under way useless
  bool m_bReading = false;
  bool m_bLooking = false;   ///< for a lost camera
  bool m_bSwitching = false; ///< the worker has the camera's stream
  double m_dExposureMs = 0;
  uint64_t m_nUnusable = 0; ///< frames that came and could not be used, when that was last looked at
  bool m_bStalled = false;
  QString m_strTriggers;  ///< that were on when the frames ceased
  CCameraWorker m_worker; ///< last: its work is done before the rest goes
};

} // namespace ffc::host
