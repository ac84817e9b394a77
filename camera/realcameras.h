/// \file
/// The real cameras that can be reached.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "camera/icamera.h"

namespace ffc::camera {

struct SRealCameraInfo {
  std::string strId;       ///< opens this camera and no other
  std::string strProtocol; ///< "GigEVision" or "USB3Vision"
  std::string strAddress;  ///< IP address, or the number of a USB device
  std::string strVendor;
  std::string strModel;
  std::string strSerial;

  /// "Maker Model (serial)".
  std::string GetDisplayName() const { return strVendor + " " + strModel + " (" + strSerial + ")"; }
};

/// Whether this program was built with support for real cameras; without, there are none.
bool AreRealCamerasSupported();

/// Asks all networks and USB ports; takes about a second. Any thread, one at a time.
std::vector<SRealCameraInfo> ListRealCameras();

/// Looks for the camera and takes control of it. Any thread; what comes back is for one thread at a time.
/// \param strId id, IP address, serial number or "Maker-serial number"; empty: the first camera there is
/// \return why not: the camera does not answer, or cannot be controlled or used
Result<std::unique_ptr<ICamera>> OpenRealCamera(const std::string &strId);

} // namespace ffc::camera
