/// \file
/// Lets frames in, and holds the door while what serves them goes away.
#pragma once

#include <atomic>

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

} // namespace ffc::dialog
