#include "camera/aravis/araviscamera.h"

#include <new>
#include <utility>

#include "camera/aravis/frameunpacker.h"
#include "camera/aravis/releasethread.h"

namespace ffc::camera {

namespace {

using LinkPointer = std::shared_ptr<CCameraLink>;

/// For a description without it: the camera object sets it, as the library does not.
const char LOCK_NODE[] =
  R"(<Integer Name="TLParamsLocked"><Visibility>Invisible</Visibility><Value>0</Value><Min>0</Min><Max>1</Max></Integer>)";

ArvGc *PrepareGenicam(ArvDevice *pDevice)
{
  ArvGc *pGenicam = arv_device_get_genicam(pDevice);
  arv_gc_set_default_node_data(pGenicam, "TLParamsLocked", LOCK_NODE, nullptr);
  return pGenicam;
}

/// On the library's thread that keeps the control of the camera alive.
void OnControlLost(ArvDevice *, void *pLink)
{
  (*static_cast<LinkPointer *>(pLink))->MarkLost();
}

void ReleaseLink(void *pLink, GClosure *)
{
  delete static_cast<LinkPointer *>(pLink);
}

/// Bytes of a frame as it comes.
uint64_t GetFrameSize(uint32_t nPixelFormat, uint64_t nPixels)
{
  return (nPixels * genapi::GetBitsPerPixel(nPixelFormat) + 7) / 8;
}

} // namespace

Result<std::unique_ptr<CAravisCamera>> CAravisCamera::Create(CObjectPointer<ArvDevice> pDevice,
                                                             const std::string &strDisplayName)
{
  if (arv_device_get_genicam(pDevice.get()) == nullptr) {
    return Failure(strDisplayName + " has no description of its features that can be read");
  }
  std::unique_ptr<CAravisCamera> pCamera(new CAravisCamera(std::move(pDevice), strDisplayName));
  for (const char *pNeeded : {"Width", "Height", "PixelFormat", "PayloadSize", "AcquisitionStart", "AcquisitionStop"}) {
    if (pCamera->m_deviceMap.GetNode(pNeeded) == nullptr) {
      return Failure(strDisplayName + " has no feature " + pNeeded);
    }
  }
  pCamera->SelectContinuous();
  return pCamera;
}

CAravisCamera::CAravisCamera(CObjectPointer<ArvDevice> pDevice, const std::string &strDisplayName)
  : m_strDisplayName(strDisplayName), m_pDevice(std::move(pDevice)),
    m_deviceMap(PrepareGenicam(m_pDevice.get()), m_pLink), m_overlay(m_deviceMap),
    m_stream(m_pLink, [this](ArvBuffer &buffer, uint64_t nNumber) { return DeliverFrame(buffer, nNumber); }),
    m_features(m_overlay, strDisplayName, [this](EBufferHandling eHandling) { m_stream.SetHandling(eHandling); })
{
  WatchControl();
}

CAravisCamera::~CAravisCamera()
{
  Stop();
  g_signal_handler_disconnect(m_pDevice.get(), m_nControlHandler);
  if (m_pLink->IsLost()) {
    ReleaseElsewhere(CObjectPointer<GObject>(G_OBJECT(m_pDevice.release())));
  }
}

/// The signal comes on a thread of the library's, perhaps while this object goes: it holds the link only.
void CAravisCamera::WatchControl()
{
  m_nControlHandler = g_signal_connect_data(m_pDevice.get(), "control-lost", G_CALLBACK(OnControlLost),
                                            new LinkPointer(m_pLink), ReleaseLink, GConnectFlags(0));
}

/// A stream goes on until it is stopped. A camera that has no other mode need not have the feature.
void CAravisCamera::SelectContinuous()
{
  try {
    auto *pMode = dynamic_cast<GenApi::IEnumeration *>(m_deviceMap.GetNode("AcquisitionMode"));
    if (GenApi::IsWritable(pMode)) {
      pMode->FromString("Continuous");
    }
  } catch (const GenICam::GenericException &) {
    return; // it stays in the mode that its user has set
  }
}

Result<> CAravisCamera::Start()
{
  if (IsStreaming()) {
    return {};
  }
  Result<> result;
  try {
    result = Begin();
  } catch (const GenICam::GenericException &exception) {
    result = Failure(exception.GetDescription());
  } catch (const std::bad_alloc &) {
    result = Failure("There is not enough memory for the camera's frames.");
  }
  if (!result) {
    End();
  }
  return m_pLink->IsLost() ? Failure("The camera does not answer any more.") : result;
}

Result<> CAravisCamera::Begin()
{
  const auto lock = m_deviceMap.Lock();
  if (m_pLink->IsLost()) {
    return Failure("lost");
  }
  auto *pPayload = dynamic_cast<GenApi::IInteger *>(m_deviceMap.GetNode("PayloadSize"));
  const int64_t nPayload = pPayload == nullptr ? 0 : pPayload->GetValue();
  if (nPayload <= 0 || nPayload > INT32_MAX) {
    return Failure("A frame of " + std::to_string(nPayload) + " bytes cannot be received.");
  }
  Result<> result = m_stream.Start(m_pDevice.get(), static_cast<std::size_t>(nPayload));
  if (result) {
    SetLocked(true); // first: the geometry stands still as long as frames can come
    Execute("AcquisitionStart");
  }
  return result;
}

void CAravisCamera::Stop()
{
  if (!IsStreaming()) {
    return;
  }
  try {
    Execute("AcquisitionStop");
  } catch (const GenICam::GenericException &) {
    // It may be gone; the stream ends all the same.
  }
  End();
}

void CAravisCamera::End()
{
  m_stream.Stop();
  SetLocked(false);
}

/// Past all checks: the node is the host's to write, whatever the description says.
void CAravisCamera::SetLocked(bool bLocked)
{
  const auto lock = m_deviceMap.Lock();
  ArvGcNode *pNode = arv_device_get_feature(m_pDevice.get(), "TLParamsLocked");
  if (ARV_IS_GC_INTEGER(pNode)) {
    CErrorSlot error; // of a description that keeps it in the camera, when that is gone
    arv_gc_integer_set_value(ARV_GC_INTEGER(pNode), bLocked ? 1 : 0, error.Out());
  }
}

void CAravisCamera::Execute(const char *pCommand)
{
  auto *pNode = dynamic_cast<GenApi::ICommand *>(m_deviceMap.GetNode(pCommand));
  if (pNode == nullptr) {
    throw GenICam::LogicalErrorException((std::string(pCommand) + " is no command").c_str(), __FILE__, __LINE__);
  }
  pNode->Execute();
}

bool CAravisCamera::DeliverFrame(ArvBuffer &buffer, uint64_t nNumber)
{
  SCameraFrame stFrame;
  bool bUsable = false;
  try {
    bUsable = DescribeFrame(buffer, &stFrame);
  } catch (const std::bad_alloc &) {
    bUsable = false;
  }
  stFrame.nFrameId = nNumber;
  if (bUsable && m_fnCallback) {
    m_fnCallback(stFrame);
  }
  return bUsable;
}

bool CAravisCamera::DescribeFrame(ArvBuffer &buffer, SCameraFrame *pstFrame)
{
  const ArvBufferPayloadType eType = arv_buffer_get_payload_type(&buffer);
  if (eType != ARV_BUFFER_PAYLOAD_TYPE_IMAGE && eType != ARV_BUFFER_PAYLOAD_TYPE_EXTENDED_CHUNK_DATA) {
    return false;
  }
  gint nPaddingX = 0;
  gint nPaddingY = 0;
  arv_buffer_get_image_padding(&buffer, &nPaddingX, &nPaddingY);
  const gint nWidth = arv_buffer_get_image_width(&buffer);
  const gint nHeight = arv_buffer_get_image_height(&buffer);
  std::size_t nReceived = 0;
  pstFrame->pBuffer = arv_buffer_get_image_data(&buffer, &nReceived);
  if (nWidth <= 0 || nHeight <= 0 || nPaddingX != 0) {
    return false;
  }
  // A pixel has a bit at least; beyond, what its lines would take cannot be counted.
  const uint64_t nPixels = static_cast<uint64_t>(nWidth) * static_cast<uint64_t>(nHeight);
  if (nPixels > uint64_t{nReceived} * 8) {
    return false;
  }
  pstFrame->nSize = static_cast<uint32_t>(nReceived); // the payload size that Begin lets through, at most
  pstFrame->nWidth = static_cast<uint32_t>(nWidth);
  pstFrame->nHeight = static_cast<uint32_t>(nHeight);
  pstFrame->nPixelFormat = arv_buffer_get_image_pixel_format(&buffer);
  const genapi::SPixelFormat *pPacked = FindPackedFormat(pstFrame->nPixelFormat);
  if (pPacked != nullptr) {
    return Unpack(*pPacked, nPixels, pstFrame);
  }
  const uint64_t nNeeded = GetFrameSize(pstFrame->nPixelFormat, nPixels);
  if (nNeeded == 0 || nNeeded > nReceived) {
    return false;
  }
  pstFrame->nSize = static_cast<uint32_t>(nNeeded);
  return true;
}

bool CAravisCamera::Unpack(const genapi::SPixelFormat &stFormat, std::size_t nSamples, SCameraFrame *pstFrame)
{
  const std::size_t nSize = GetUnpackedSize(stFormat, nSamples);
  if (GetPackedSize(stFormat, nSamples) > pstFrame->nSize || nSize > INT32_MAX) {
    return false;
  }
  m_listSamples.resize((nSize + 1) / 2);
  UnpackSamples(stFormat, static_cast<const uint8_t *>(pstFrame->pBuffer), nSamples, m_listSamples.data());
  pstFrame->pBuffer = m_listSamples.data();
  pstFrame->nSize = static_cast<uint32_t>(nSize);
  pstFrame->nPixelFormat = genapi::FindUnpackedFormat(stFormat)->nCode;
  return true;
}

} // namespace ffc::camera
