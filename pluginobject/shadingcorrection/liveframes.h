/// \file
/// What the thread that delivers frames may touch. No widget.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>

#include "pluginobject/pluginrecords.h"

class IShadingCorrectionProcess;

namespace ffc::dialog {

/// Counts the frames that are being processed, without a lock.
///
/// Open and Close belong to the user-interface thread; a CPass may be taken on any other thread.
class CFrameGate {
public:
  /// The leave to process one frame.
  class CPass {
  public:
    explicit CPass(CFrameGate &gate);
    ~CPass();
    CPass(const CPass &) = delete;
    CPass &operator=(const CPass &) = delete;
    /// False while the gate is closed: the frame must be left alone.
    bool IsGranted() const { return m_bGranted; }

  private:
    CFrameGate &m_gate;
    bool m_bGranted = false;
  };

  void Open() { m_bOpen = true; }
  /// Turns new frames away and waits until those within are done.
  void Close();

private:
  std::atomic<bool> m_bOpen{false};
  std::atomic<int> m_nWithin{0};
};

/// The way of every frame to the process of the dialog in service, and the flags of the host-side preview.
///
/// The plug-in object has one for its life; the dialog in service has a share of it. ProcessFrame lets itself in at the
/// gate. What else the frame thread calls it calls between the dialog's successful InitDialog and its ReleaseProcess.
class CLiveFrames {
public:
  /// Told, on the frame thread, whether a frame was corrected. May throw: it is told of the next frame then.
  using FnReport = std::function<void(bool bCorrected)>;

  // User-interface thread.

  /// Frames come in until the gate is closed.
  void Open() { m_gate.Open(); }
  /// Turns new frames away and waits until those within are done.
  void Close() { m_gate.Close(); }

  /// A dialog begins its service: without process, with the preview off.
  void Attach(FnReport fnReport);
  /// It ends: closes the gate and forgets process and dialog.
  void Detach();
  /// While no frame is under way.
  /// \param pProcess not owned; null for none
  /// \param bCorrects whether it corrects frames itself, not its camera
  void SetProcess(IShadingCorrectionProcess *pProcess, bool bCorrects);

  /// Switches the correction of frames. The first frame after it is on is reported.
  void SetPreview(bool bOn);
  /// Frames stay uncorrected from now on. \return whether they were to be corrected
  bool StopPreview() { return m_bApplyCorrection.exchange(false); }
  /// Goes on with a preview that was stopped.
  void ResumePreview() { m_bApplyCorrection = true; }
  bool IsPreviewOn() const { return m_bApplyCorrection; }

  // Frame thread.

  /// Hands a frame to the process that asked for one, and offers any other for correction.
  /// \param stInput, stOutput with their buffers; a frame of fewer bytes than its pixels take is not corrected
  /// \param bCorrected true when the output holds a corrected image; else as it was
  /// \return -3 for a pixel format that a colour camera's correction cannot use; else 0
  [[nodiscard]] int32_t ProcessFrame(const PLUGIN_IMAGE_INFO &stInput, const PLUGIN_IMAGE_INFO &stOutput,
                                     bool &bCorrected);
  /// Corrects a frame while the host-side preview is on.
  /// \param bCorrected true when pDestination holds a corrected image; else as it was
  /// \return -3 for a missing buffer or process; else the process's status, 0 when there was nothing to do
  [[nodiscard]] int32_t CorrectFrame(const void *pSource, void *pDestination, uint32_t nWidth, int32_t nHeight,
                                     uint32_t nPixelFormat, bool &bCorrected);

  // Straight to the process, for the frame thread too; without one they do nothing.
  void ReceiveImage(const void *pFrame, uint32_t nSize);
  void SetImageReady();
  /// \return the process's answer; 258 without a process
  [[nodiscard]] uint32_t WaitImageRequest();
  void SetStopFlag(bool bStop);
  [[nodiscard]] bool IsColorCamera();

private:
  void Report(std::atomic<bool> &bFlag, bool bCorrected) const;

  // Open while the dialog and its process can take frames.
  CFrameGate m_gate;
  IShadingCorrectionProcess *m_pProcess = nullptr;
  bool m_bCorrects = false;
  FnReport m_fnReport;
  // Set by the dialog, read and cleared on the frame thread.
  std::atomic<bool> m_bApplyCorrection{false};
  std::atomic<bool> m_bReportSuccess{false};
};

} // namespace ffc::dialog
