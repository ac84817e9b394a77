/// \file
/// A GigE Vision camera in a process of its own.
#pragma once

#include <cstdint>
#include <string>

#include <QProcess>

namespace ffc::test {

/// Starts the camera and ends it. Test's thread, unless said otherwise.
class CGigeCameraProcess {
public:
  struct SOptions {
    uint32_t nPixelFormat = 0x01080001; ///< PFNC code: Mono8, 12, 12Packed, 16, BayerRG8, 16
    uint32_t nWidth = 128;              ///< pixels
    uint32_t nHeight = 96;
    uint32_t nFramePeriod = 10000;        ///< microseconds
    uint32_t nLostPackets = 0;            ///< of a thousand packets of the frames
    std::string strAddress = "127.0.0.1"; ///< of this machine
    bool bStock = false; ///< the fake camera of the camera library's tools, which is as it is; see IsStockThere
  };

  /// Whether the camera library's tools are installed on this machine.
  static bool IsStockThere();

  /// A second address of this machine, where a second camera can be; empty when it has none.
  static std::string FindSecondAddress();

  /// Waits until the camera answers; the stock one is only started. There is one at a time at an address: the others
  /// wait for it to end. A camera at the second address comes after one at the first.
  explicit CGigeCameraProcess(const SOptions &stOptions);
  ~CGigeCameraProcess();
  CGigeCameraProcess(const CGigeCameraProcess &) = delete;
  CGigeCameraProcess &operator=(const CGigeCameraProcess &) = delete;

  /// Whether it answers.
  bool IsRunning() const { return m_process.state() == QProcess::Running; }
  /// No other camera has it.
  const std::string &GetSerial() const { return m_strSerial; }

  /// Effective for the next exposed frame when it returns.
  void SetLensCap(bool bCovered);
  /// Pulls the plug. From any thread.
  void Kill() const;
  /// The same camera again, with the settings that it had at first. Only after Kill.
  void Restart();

private:
  void Start();
  void End();
  bool WaitForLine(const QByteArray &byteLine);

  SOptions m_stOptions;
  std::string m_strSerial;
  QProcess m_process;
  qint64 m_nProcessId = 0;
};

} // namespace ffc::test
