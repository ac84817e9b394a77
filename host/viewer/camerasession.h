/// \file
/// The camera that is open, from opening it to closing it.
#pragma once

#include <functional>
#include <memory>

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QStringList>

#include "host/viewer/viewer.h"
#include "platform/result.h"

namespace ffc::host {

/// Opens a camera with the plug-in on it, watches it, and opens it again when it was lost. One camera at a time.
/// User-interface thread.
class CCameraSession : public QObject {
  Q_OBJECT

public:
  /// What is opened together, now and when a lost camera is back.
  struct SSetup {
    std::function<Result<std::unique_ptr<camera::ICamera>>()> fnOpenCamera;
    uint32_t nBlockSize = 0; ///< of a self-correcting camera's coefficients, pixels; 0: the camera's own choice
    QString strModule;       ///< of the plug-in
    ELanguage eLanguage = ELanguage::English;
    QWidget *pWindow = nullptr; ///< the plug-in's dialog stands over it; outlives the session; null for none
  };

  /// \param pObserver of the plug-in's acquisitions; outlives the session; null for none
  CCameraSession(IAcquisitionObserver *pObserver, QObject *pParent);
  /// Whoever listens closes before.
  ~CCameraSession() override;

  /// Opens the camera, binds the plug-in and starts the stream; the camera that was open goes first. A camera without
  /// plug-in stays open and streams uncorrected.
  Result<> Open(const SSetup &stSetup);
  void Close();

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
  /// To be called about once a second. A camera that is lost is opened again when it answers; one that streams and
  /// delivers nothing is reported.
  /// \param bMayReopen false while something waits for the user's answer: nothing is taken from under it
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

private:
  void Adopt(std::unique_ptr<camera::ICamera> pCamera);
  void Reopen(bool bMayReopen);
  void CheckStall();

  IAcquisitionObserver *m_pObserver;
  SSetup m_stSetup;
  std::unique_ptr<CViewer> m_pViewer;
  QString m_strPluginError;
  QElapsedTimer m_clock;
  int64_t m_nFrameMs = 0;    ///< when the last frame came or was to be expected
  int64_t m_nReopenedMs = 0; ///< when a lost camera was last asked for; 0: not yet
  uint64_t m_nUnusable = 0;  ///< frames that came and could not be used, when that was last looked at
  bool m_bStalled = false;
  QString m_strTriggers; ///< that were on when the frames ceased
};

} // namespace ffc::host
