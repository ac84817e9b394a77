// Where the library for real cameras is missing.
#include "camera/realcameras.h"

namespace ffc::camera {

bool AreRealCamerasSupported()
{
  return false;
}

std::vector<SRealCameraInfo> ListRealCameras()
{
  return {};
}

Result<std::unique_ptr<ICamera>> OpenRealCamera(const std::string &)
{
  return Failure("this program was built without support for real cameras");
}

} // namespace ffc::camera
