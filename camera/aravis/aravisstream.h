/// \file
/// The frames of a real camera, on a thread of their own.
#pragma once

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include <arv.h>

#include "camera/aravis/cameralink.h"
#include "camera/aravis/framenumbers.h"
#include "camera/aravis/framequeue.h"
#include "camera/aravis/gobject.h"
#include "platform/result.h"

namespace ffc::camera {

/// Takes complete frames from the library's receiving thread and delivers them on another, so that a slow
/// receiver of frames costs no packets. The delivered buffer is the one that the frame was received into.
///
/// Start and Stop are called by one thread at a time; the rest may come from any.
class CAravisStream {
public:
  /// Runs on the stream's thread; the buffer is the receiver's until it returns.
  /// \param nNumber counts the camera's frames; a lost one leaves a gap
  /// \return false when the frame cannot be used, and so counts as lost
  using Delivery = std::function<bool(ArvBuffer &buffer, uint64_t nNumber)>;

  /// \param pLink hears of lost frames
  CAravisStream(std::shared_ptr<CCameraLink> pLink, Delivery fnDeliver);
  ~CAravisStream();
  CAravisStream(const CAravisStream &) = delete;
  CAravisStream &operator=(const CAravisStream &) = delete;

  /// Opens the stream, while there is none; the camera sends nothing yet. Whoever calls holds the lock of the device's
  /// node map.
  /// \param nPayload bytes of a frame
  /// \return why there is no stream
  Result<> Start(ArvDevice *pDevice, std::size_t nPayload);
  /// When it returns no delivery runs and none will. Does nothing when stopped.
  void Stop();
  bool IsRunning() const { return m_bRunning; }

  /// Takes effect with the next frame.
  void SetHandling(EBufferHandling eHandling) { m_eHandling = eHandling; }

private:
  using Buffer = CObjectPointer<ArvBuffer>;

  /// How the receiving thread wakes the stream's; shared, because that of a lost camera may outlive the stream.
  struct SNews {
    std::mutex mutex; ///< guards what follows
    std::condition_variable condition;
    bool bStop = false;
    bool bNews = false;
  };

  struct SWaiting {
    Buffer pBuffer;
    uint64_t nNumber;
  };

  static void OnStreamEvent(void *pData, ArvStreamCallbackType eType, ArvBuffer *pBuffer);
  Result<> PushBuffers(std::size_t nPayload);
  void Run();
  bool WaitForFrames();
  void CollectFrames();
  void TakeFrame(Buffer pBuffer);
  void CountLosses();
  void DeliverFrames();
  void GiveBack(Buffer pBuffer);

  std::shared_ptr<CCameraLink> m_pLink;
  Delivery m_fnDeliver;
  std::atomic<EBufferHandling> m_eHandling{EBufferHandling::OldestFirst};
  CObjectPointer<ArvStream> m_pStream;
  std::atomic<bool> m_bRunning{false};
  std::size_t m_nBuffers = 0;
  std::thread m_thread;
  std::deque<SWaiting> m_listWaiting; ///< the stream's thread's own, as are the next
  CFrameNumbers m_numbers;
  SFrameLosses m_stLosses; ///< of this stream
  uint64_t m_nSkipped = 0; ///< gaps in this stream's numbers
  std::shared_ptr<SNews> m_pNews;
};

} // namespace ffc::camera
