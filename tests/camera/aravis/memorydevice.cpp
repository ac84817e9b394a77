#include "tests/camera/aravis/memorydevice.h"

#include <cstring>

namespace ffc::test {

namespace {

struct SDevice {
  ArvDevice stParent;
  SDeviceMemory *pMemory;
};

/// The bytes of an access; null, with an error, when there are none.
uint8_t *Access(ArvDevice *pDevice, guint64 nAddress, guint32 nSize, GError **ppError)
{
  SDeviceMemory &stMemory = *reinterpret_cast<SDevice *>(pDevice)->pMemory;
  ++stMemory.nAccesses;
  if (stMemory.bSilent) {
    g_set_error(ppError, ARV_DEVICE_ERROR, ARV_DEVICE_ERROR_TIMEOUT, "silence");
    return nullptr;
  }
  if (stMemory.eRefusal) {
    g_set_error(ppError, ARV_DEVICE_ERROR, *stMemory.eRefusal, "refused");
    return nullptr;
  }
  const std::size_t nBytes = stMemory.listBytes.size();
  if (stMemory.bRepeats && nBytes > nSize) {
    nAddress %= nBytes - nSize;
  }
  if (nAddress > nBytes || nSize > nBytes - nAddress) {
    g_set_error(ppError, ARV_DEVICE_ERROR, ARV_DEVICE_ERROR_PROTOCOL_ERROR_INVALID_ADDRESS, "no such address");
    return nullptr;
  }
  return stMemory.listBytes.data() + nAddress;
}

gboolean ReadMemory(ArvDevice *pDevice, guint64 nAddress, guint32 nSize, void *pBuffer, GError **ppError)
{
  const uint8_t *pBytes = Access(pDevice, nAddress, nSize, ppError);
  if (pBytes != nullptr) {
    std::memcpy(pBuffer, pBytes, nSize);
  }
  return pBytes != nullptr ? TRUE : FALSE;
}

/// The library's later versions have the buffer const.
template <class TBuffer>
gboolean WriteMemory(ArvDevice *pDevice, guint64 nAddress, guint32 nSize, TBuffer pBuffer, GError **ppError)
{
  uint8_t *pBytes = Access(pDevice, nAddress, nSize, ppError);
  if (pBytes != nullptr) {
    std::memcpy(pBytes, pBuffer, nSize);
  }
  return pBytes != nullptr ? TRUE : FALSE;
}

gboolean ReadRegister(ArvDevice *pDevice, guint64 nAddress, guint32 *pnValue, GError **ppError)
{
  return ReadMemory(pDevice, nAddress, sizeof *pnValue, pnValue, ppError);
}

gboolean WriteRegister(ArvDevice *pDevice, guint64 nAddress, guint32 nValue, GError **ppError)
{
  return WriteMemory<const void *>(pDevice, nAddress, sizeof nValue, &nValue, ppError);
}

void DoNothing(ArvStream *) {}

void InitStreamClass(void *pClass, void *)
{
  ARV_STREAM_CLASS(pClass)->start_thread = DoNothing;
  ARV_STREAM_CLASS(pClass)->stop_thread = DoNothing;
}

GType GetStreamType()
{
  static const GType TYPE = g_type_register_static_simple(ARV_TYPE_STREAM, "FfcMemoryStream", sizeof(ArvStreamClass),
                                                          InitStreamClass, sizeof(ArvStream), nullptr, GTypeFlags(0));
  return TYPE;
}

ArvStream *CreateStream(ArvDevice *pDevice, ArvStreamCallback fnCallback, void *pData, GDestroyNotify fnDestroy,
                        GError **ppError)
{
  auto *pStream = ARV_STREAM(g_object_new(GetStreamType(), "device", pDevice, "callback", fnCallback, "callback-data",
                                          pData, "destroy-notify", fnDestroy, nullptr));
  if (reinterpret_cast<SDevice *>(pDevice)->pMemory->bNoStream) {
    g_object_unref(pStream);
    g_set_error(ppError, ARV_DEVICE_ERROR, ARV_DEVICE_ERROR_UNKNOWN, "no channel is free");
    return nullptr;
  }
  return pStream;
}

ArvGc *GetGenicam(ArvDevice *pDevice)
{
  return reinterpret_cast<SDevice *>(pDevice)->pMemory->pGenicam;
}

void InitClass(void *pClass, void *)
{
  ArvDeviceClass *pDeviceClass = ARV_DEVICE_CLASS(pClass);
  pDeviceClass->read_memory = ReadMemory;
  pDeviceClass->write_memory = WriteMemory;
  pDeviceClass->read_register = ReadRegister;
  pDeviceClass->write_register = WriteRegister;
  pDeviceClass->create_stream = CreateStream;
  pDeviceClass->get_genicam = GetGenicam;
}

GType GetDeviceType()
{
  static const GType TYPE = g_type_register_static_simple(ARV_TYPE_DEVICE, "FfcMemoryDevice", sizeof(ArvDeviceClass),
                                                          InitClass, sizeof(SDevice), nullptr, GTypeFlags(0));
  return TYPE;
}

} // namespace

CMemoryDevice::CMemoryDevice(const std::string &strXml, std::vector<uint8_t> listBytes)
  : m_pMemory(std::make_unique<SDeviceMemory>()), m_pDevice(ARV_DEVICE(g_object_new(GetDeviceType(), nullptr)))
{
  m_pMemory->listBytes = std::move(listBytes);
  reinterpret_cast<SDevice *>(m_pDevice.get())->pMemory = m_pMemory.get();
  m_pGenicam.reset(arv_gc_new(m_pDevice.get(), strXml.data(), strXml.size()));
  m_pMemory->pGenicam = m_pGenicam.get();
  if (m_pGenicam != nullptr) {
    m_pMap = std::make_unique<camera::CAravisNodeMap>(m_pGenicam.get(), m_pLink);
  }
}

void CMemoryDevice::Poke(std::size_t nAddress, uint32_t nValue)
{
  for (std::size_t nByte = 0; nByte < 4; ++nByte) {
    m_pMemory->listBytes[nAddress + nByte] = static_cast<uint8_t>(nValue >> (24 - 8 * nByte));
  }
}

uint32_t CMemoryDevice::Peek(std::size_t nAddress) const
{
  uint32_t nValue = 0;
  for (std::size_t nByte = 0; nByte < 4; ++nByte) {
    nValue = nValue << 8U | m_pMemory->listBytes[nAddress + nByte];
  }
  return nValue;
}

std::string MakeRegister(const std::string &strName, int nAddress, const std::string &strAccess)
{
  return "<IntReg Name=\"" + strName + "\"><Address>" + std::to_string(nAddress) +
         "</Address><Length>4</Length><AccessMode>" + strAccess +
         "</AccessMode><pPort>Device</pPort><Sign>Unsigned</Sign><Endianess>BigEndian</Endianess></IntReg>\n";
}

std::string MakeDescription(const std::string &strNodes)
{
  return R"(<?xml version="1.0" encoding="utf-8"?>
<RegisterDescription ModelName="Model" VendorName="Vendor" StandardNameSpace="None" SchemaMajorVersion="1"
  SchemaMinorVersion="1" SchemaSubMinorVersion="0" MajorVersion="1" MinorVersion="0" SubMinorVersion="0"
  ProductGuid="00000000-0000-0000-0000-000000000000" VersionGuid="00000000-0000-0000-0000-000000000001">
)" + strNodes +
         "<Port Name=\"Device\"/>\n</RegisterDescription>\n";
}

} // namespace ffc::test
