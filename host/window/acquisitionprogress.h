/// \file
/// How far the plug-in's acquisition is, and a way to end it.
#pragma once

#include <functional>
#include <memory>

#include <QObject>
#include <QString>

#include "host/viewer/iacquisitionobserver.h"

class QWidget;

namespace ffc::host {

class CWaitBox;

/// While the plug-in acquires, nothing else runs on the user-interface thread. Between two frames this object lets
/// events pass, with a box in front, so that windows are painted and nothing but its "Cancel" can
/// be pressed. A single frame needs no box.
class CAcquisitionProgress : public QObject, public IAcquisitionObserver {
  Q_OBJECT

public:
  /// \param pWindow the box stands over it
  explicit CAcquisitionProgress(QWidget *pWindow);
  ~CAcquisitionProgress() override;

  /// \param fnTotal asked once per acquisition: frames that it takes; 0 when nobody knows
  void SetTotalQuery(std::function<uint32_t()> fnTotal) { m_fnTotal = std::move(fnTotal); }
  /// The plug-in takes frames right now.
  bool IsAcquiring() const { return m_bAcquiring; }
  /// The user has cancelled; the plug-in still waits for its next frame.
  bool IsCancelled() const { return m_bCancelled; }

  void ExpectAcquisition() override { emit SigExpected(); }
  void BeginAcquisition() override;
  void CountAcquiredFrame() override;
  void EndAcquisition() override;

signals:
  /// Before the first frame.
  void SigExpected();
  void SigBegun();
  /// The plug-in has one more frame.
  void SigCounted();
  /// Keep the frames from the plug-in: it gives up when none comes in time.
  void SigCancelled();
  /// The plug-in is back in the event loop, or has stopped taking frames.
  void SigEnded();

private:
  void ShowBox();
  void LetEventsPass();
  void ArmEndCheck();

  QWidget *m_pWindow;
  std::function<uint32_t()> m_fnTotal;
  std::unique_ptr<CWaitBox> m_pBox;
  uint32_t m_nFrames = 0;
  uint32_t m_nTotal = 0;
  bool m_bAcquiring = false;
  bool m_bCancelled = false;
  bool m_bPassing = false; ///< events pass within the acquisition
};

} // namespace ffc::host
