/// \file
/// A device of the camera library without a wire: its registers are bytes in memory.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "camera/aravis/cameralink.h"
#include "camera/aravis/gobject.h"
#include "camera/aravis/nodemap/aravisnodemap.h"

namespace ffc::test {

/// What stands behind the device's registers.
struct SDeviceMemory {
  std::vector<uint8_t> listBytes;         ///< address 0 onwards; an access beyond is a protocol error
  bool bSilent = false;                   ///< every access times out
  std::optional<ArvDeviceError> eRefusal; ///< what every access is answered with
  bool bRepeats = false;                  ///< addresses beyond start again from 0
  uint64_t nAccesses = 0;                 ///< so far, those that fail included
  bool bNoStream = false;                 ///< a stream cannot be opened; else one is, without frames
  ArvGc *pGenicam = nullptr;              ///< of the description; null: none that can be read
};

/// A description file on such a device, and the node map on both.
class CMemoryDevice {
public:
  /// \param strXml a whole description file
  explicit CMemoryDevice(const std::string &strXml, std::vector<uint8_t> listBytes = std::vector<uint8_t>(0x1000));
  CMemoryDevice(const CMemoryDevice &) = delete;
  CMemoryDevice &operator=(const CMemoryDevice &) = delete;

  /// Null when the library cannot read the description.
  camera::CAravisNodeMap *GetMap() const { return m_pMap.get(); }
  SDeviceMemory &Memory() { return *m_pMemory; }
  /// What a register of MakeRegister has.
  void Poke(std::size_t nAddress, uint32_t nValue);
  uint32_t Peek(std::size_t nAddress) const;
  camera::CCameraLink &Link() { return *m_pLink; }
  /// For a camera, which ends before this.
  camera::CObjectPointer<ArvDevice> ShareDevice() { return camera::ShareObject(m_pDevice.get()); }

private:
  std::shared_ptr<camera::CCameraLink> m_pLink = std::make_shared<camera::CCameraLink>();
  std::unique_ptr<SDeviceMemory> m_pMemory;
  camera::CObjectPointer<ArvDevice> m_pDevice;
  camera::CObjectPointer<ArvGc> m_pGenicam;
  std::unique_ptr<camera::CAravisNodeMap> m_pMap;
};

/// A description file with these nodes between its first and last lines, and a port called "Device".
std::string MakeDescription(const std::string &strNodes);
/// One register of 4 bytes, unsigned, most significant byte first.
/// \param strAccess "RO", "WO" or "RW"
std::string MakeRegister(const std::string &strName, int nAddress, const std::string &strAccess = "RW");

} // namespace ffc::test
