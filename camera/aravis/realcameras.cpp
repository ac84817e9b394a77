#include "camera/realcameras.h"

#include <algorithm>
#include <mutex>
#include <new>

#include "camera/aravis/araviscamera.h"

namespace ffc::camera {

namespace {

/// The library has null for what it does not know.
std::string MakeString(const char *pText)
{
  return pText == nullptr ? std::string() : std::string(pText);
}

bool IsMeant(const SRealCameraInfo &stInfo, const std::string &strId)
{
  return strId.empty() || strId == stInfo.strId || strId == stInfo.strAddress || strId == stInfo.strSerial ||
         strId == stInfo.strVendor + "-" + stInfo.strSerial;
}

/// The answer to a name that no camera has.
std::string DescribeMissing(const std::string &strId, const std::vector<SRealCameraInfo> &listCameras)
{
  std::string strText = strId.empty() ? "no camera answers" : "no camera '" + strId + "' answers";
  const char *pSeparator = "; there are: ";
  for (const SRealCameraInfo &stInfo : listCameras) {
    strText += pSeparator + stInfo.strId;
    pSeparator = ", ";
  }
  return strText;
}

} // namespace

bool AreRealCamerasSupported()
{
  return true;
}

std::vector<SRealCameraInfo> ListRealCameras()
{
  static std::mutex s_mutex; // the library hands out texts of a list that the next update replaces
  const std::lock_guard lock(s_mutex);
  arv_update_device_list();
  std::vector<SRealCameraInfo> listCameras;
  const unsigned nCameras = arv_get_n_devices();
  for (unsigned nCamera = 0; nCamera < nCameras; ++nCamera) {
    SRealCameraInfo stInfo;
    stInfo.strId = MakeString(arv_get_device_id(nCamera));
    stInfo.strProtocol = MakeString(arv_get_device_protocol(nCamera));
    stInfo.strAddress = MakeString(arv_get_device_address(nCamera));
    stInfo.strVendor = MakeString(arv_get_device_vendor(nCamera));
    stInfo.strModel = MakeString(arv_get_device_model(nCamera));
    stInfo.strSerial = MakeString(arv_get_device_serial_nbr(nCamera));
    listCameras.push_back(stInfo);
  }
  return listCameras;
}

Result<std::unique_ptr<ICamera>> OpenRealCamera(const std::string &strId)
{
  const std::vector<SRealCameraInfo> listCameras = ListRealCameras();
  const auto itInfo = std::find_if(listCameras.begin(), listCameras.end(),
                                   [&](const SRealCameraInfo &stInfo) { return IsMeant(stInfo, strId); });
  if (itInfo == listCameras.end()) {
    return Failure(DescribeMissing(strId, listCameras));
  }
  CErrorSlot error;
  CObjectPointer<ArvDevice> pDevice(arv_open_device(itInfo->strId.c_str(), error.Out()));
  if (pDevice == nullptr) {
    return Failure(itInfo->GetDisplayName() + " cannot be opened: " + error.GetMessage());
  }
  if (ARV_IS_GV_DEVICE(pDevice.get()) && !arv_gv_device_is_controller(ARV_GV_DEVICE(pDevice.get()))) {
    return Failure(itInfo->GetDisplayName() + " is in use by another program, or was until a moment ago");
  }
  try {
    Result<std::unique_ptr<CAravisCamera>> camera = CAravisCamera::Create(std::move(pDevice), itInfo->GetDisplayName());
    if (!camera) {
      return camera.GetFailure();
    }
    return std::move(camera).GetValue();
  } catch (const std::bad_alloc &) {
    return Failure("There is not enough memory for the camera.");
  }
}

} // namespace ffc::camera
