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

std::unique_ptr<ICamera> OpenRealCamera(const std::string &, std::string *pstrError)
{
  *pstrError = "this program was built without support for real cameras";
  return nullptr;
}

} // namespace ffc::camera
