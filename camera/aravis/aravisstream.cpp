#include "camera/aravis/aravisstream.h"

#include <algorithm>
#include <new>
#include <system_error>
#include <utility>

#include "camera/aravis/releasethread.h"

namespace ffc::camera {

namespace {

constexpr std::size_t MAX_BUFFERS = 16;
constexpr std::size_t MIN_BUFFERS = 3;
constexpr std::size_t BUFFER_MEMORY = std::size_t{512} << 20U; ///< bytes that the buffers together should not exceed
constexpr gint SOCKET_BUFFER = 32 << 20; ///< bytes; the system gives what it allows a program (net.core.rmem_max)

std::size_t GetBufferCount(std::size_t nPayload)
{
  return std::clamp(BUFFER_MEMORY / nPayload, MIN_BUFFERS, MAX_BUFFERS);
}

/// A program with the right to it would get packet sockets, which receive what comes for all others too until their
/// filter is set: frames of another camera would be taken for this one's, or take its buffers.
void DisablePacketSocket(ArvDevice *pDevice)
{
  if (ARV_IS_GV_DEVICE(pDevice)) {
    arv_gv_device_set_stream_options(ARV_GV_DEVICE(pDevice), ARV_GV_STREAM_OPTION_PACKET_SOCKET_DISABLED);
  }
}

/// By itself the library makes the socket's buffer as large as a frame, which is little for small ones.
void EnlargeSocketBuffer(ArvStream *pStream)
{
  if (ARV_IS_GV_STREAM(pStream)) {
    g_object_set(pStream, "socket-buffer", ARV_GV_STREAM_SOCKET_BUFFER_FIXED, "socket-buffer-size", SOCKET_BUFFER,
                 nullptr);
  }
}

/// Each kind of stream has counters of its own; 0 for one that it has not got.
uint64_t ReadCounter(ArvStream *pStream, const char *pName)
{
  const guint nInfos = arv_stream_get_n_infos(pStream);
  for (guint nInfo = 0; nInfo < nInfos; ++nInfo) {
    if (g_strcmp0(arv_stream_get_info_name(pStream, nInfo), pName) == 0) {
      return arv_stream_get_info_uint64(pStream, nInfo);
    }
  }
  return 0;
}

} // namespace

CAravisStream::CAravisStream(std::shared_ptr<CCameraLink> pLink, Delivery fnDeliver)
  : m_pLink(std::move(pLink)), m_fnDeliver(std::move(fnDeliver))
{
}

CAravisStream::~CAravisStream()
{
  Stop();
}

Result<> CAravisStream::Start(ArvDevice *pDevice, std::size_t nPayload)
{
  m_pNews = std::make_shared<SNews>();
  m_numbers.BeginStream();
  m_stLosses = {};
  m_nSkipped = 0;
  m_pLink->BeginStream();
  DisablePacketSocket(pDevice);
  CErrorSlot error;
  m_pStream.reset(arv_device_create_stream_full(
    pDevice, OnStreamEvent, new std::shared_ptr<SNews>(m_pNews),
    [](void *pNews) { delete static_cast<std::shared_ptr<SNews> *>(pNews); }, error.Out()));
  if (m_pStream == nullptr) {
    return Failure(std::string("The camera's stream cannot be opened: ") + error.GetMessage());
  }
  EnlargeSocketBuffer(m_pStream.get());
  Result<> result = PushBuffers(nPayload);
  if (result) {
    try {
      m_thread = std::thread([this] { Run(); });
    } catch (const std::system_error &e) {
      result = Failure(std::string("The stream's thread cannot be started: ") + e.what());
    }
  }
  if (!result) {
    m_pStream.reset();
  }
  m_bRunning = result.IsOk();
  return result;
}

/// With memory of our own: the library ends the program when it has none.
Result<> CAravisStream::PushBuffers(std::size_t nPayload)
{
  m_nBuffers = GetBufferCount(nPayload);
  for (std::size_t nBuffer = 0; nBuffer < m_nBuffers; ++nBuffer) {
    auto *pMemory = new (std::nothrow) uint8_t[nPayload];
    if (pMemory == nullptr) {
      return Failure("There is not enough memory for the camera's frames.");
    }
    arv_stream_push_buffer(m_pStream.get(), arv_buffer_new_full(nPayload, pMemory, pMemory, [](void *pOld) {
                             delete[] static_cast<uint8_t *>(pOld);
                           }));
  }
  return {};
}

void CAravisStream::Stop()
{
  if (!IsRunning()) {
    return;
  }
  {
    const std::lock_guard lock(m_pNews->mutex);
    m_pNews->bStop = true;
  }
  m_pNews->condition.notify_one();
  m_thread.join();
  m_listWaiting.clear();
  if (m_pLink->IsLost()) {
    ReleaseElsewhere(CObjectPointer<GObject>(G_OBJECT(m_pStream.release())));
  }
  m_pStream.reset(); // ends the receiving thread
  m_bRunning = false;
}

void CAravisStream::OnStreamEvent(void *pData, ArvStreamCallbackType eType, ArvBuffer *)
{
  if (eType != ARV_STREAM_CALLBACK_TYPE_BUFFER_DONE) {
    return;
  }
  SNews &stNews = **static_cast<std::shared_ptr<SNews> *>(pData);
  {
    const std::lock_guard lock(stNews.mutex);
    stNews.bNews = true;
  }
  stNews.condition.notify_one();
}

void CAravisStream::Run()
{
  while (WaitForFrames()) {
    CollectFrames();
    DeliverFrames();
  }
}

bool CAravisStream::WaitForFrames()
{
  std::unique_lock lock(m_pNews->mutex);
  m_pNews->condition.wait(lock, [this] { return m_pNews->bStop || m_pNews->bNews; });
  m_pNews->bNews = false;
  return !m_pNews->bStop;
}

/// Moves what the receiving thread has filled to the waiting ones and drops the oldest of those that are too many.
void CAravisStream::CollectFrames()
{
  while (ArvBuffer *pFilled = arv_stream_try_pop_buffer(m_pStream.get())) {
    TakeFrame(Buffer(pFilled));
  }
  while (m_listWaiting.size() > GetKeptFrames(m_eHandling, m_nBuffers)) {
    ++m_stLosses.nOverwritten;
    GiveBack(std::move(m_listWaiting.front().pBuffer));
    m_listWaiting.pop_front();
  }
  CountLosses();
}

void CAravisStream::TakeFrame(Buffer pBuffer)
{
  const bool bComplete = arv_buffer_get_status(pBuffer.get()) == ARV_BUFFER_STATUS_SUCCESS;
  const uint64_t nId = arv_buffer_get_frame_id(pBuffer.get()); // stands in the first packet, which may be missing
  const CFrameNumbers::SNumber stNumber = m_numbers.Next(bComplete || nId > 0 ? std::optional(nId) : std::nullopt);
  m_nSkipped += stNumber.nSkipped;
  if (bComplete) {
    m_listWaiting.push_back({std::move(pBuffer), stNumber.nNumber});
  } else {
    ++m_stLosses.nIncomplete;
    GiveBack(std::move(pBuffer));
  }
}

/// A frame for which the library had no buffer leaves a gap in the numbers too.
void CAravisStream::CountLosses()
{
  guint64 nUnderruns = 0;
  arv_stream_get_statistics(m_pStream.get(), nullptr, nullptr, &nUnderruns);
  m_stLosses.nWithoutRoom = nUnderruns;
  m_stLosses.nNeverSeen = m_nSkipped - std::min<uint64_t>(m_nSkipped, nUnderruns);
  m_stLosses.nMissingPackets = ReadCounter(m_pStream.get(), "n_missing_packets");
  m_stLosses.nResentPackets = ReadCounter(m_pStream.get(), "n_resent_packets");
  m_pLink->SetStreamLosses(m_stLosses);
}

/// One frame at a time, so that those which come meanwhile count for what is dropped.
void CAravisStream::DeliverFrames()
{
  while (!m_listWaiting.empty()) {
    {
      const std::lock_guard lock(m_pNews->mutex);
      if (m_pNews->bStop) {
        return;
      }
    }
    SWaiting stFrame = std::move(m_listWaiting.front());
    m_listWaiting.pop_front();
    if (!m_fnDeliver(*stFrame.pBuffer, stFrame.nNumber)) {
      ++m_stLosses.nUnusable;
    }
    GiveBack(std::move(stFrame.pBuffer));
    CollectFrames();
  }
}

void CAravisStream::GiveBack(Buffer pBuffer)
{
  arv_stream_push_buffer(m_pStream.get(), pBuffer.release());
}

} // namespace ffc::camera
