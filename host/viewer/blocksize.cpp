#include "host/viewer/blocksize.h"

#include <cmath>
#include <cstdlib>
#include <string>

namespace ffc::host {

using camera::ICamera;

namespace {

/// Entries are named after the pixels of a block: "BlockSize_1024".
const std::string BLOCK_PREFIX = "BlockSize_";

GenApi::IEnumeration *FindBlockSize(ICamera &camera)
{
  return dynamic_cast<GenApi::IEnumeration *>(camera.GetDeviceNodeMap()->GetNode("FFCBlockSize"));
}

} // namespace

Result<> SelectBlockSize(ICamera &camera, uint32_t nSide)
{
  if (nSide == 0) {
    return {};
  }
  GenApi::IEnumeration *pBlockSize = FindBlockSize(camera);
  try {
    if (pBlockSize != nullptr) {
      pBlockSize->FromString((BLOCK_PREFIX + std::to_string(nSide * nSide)).c_str());
      return {};
    }
  } catch (const GenICam::GenericException &exception) {
    return Failure("block size " + std::to_string(nSide) + ": " + exception.GetDescription());
  }
  return Failure("this camera has no coefficient blocks");
}

uint32_t ReadBlockSize(ICamera &camera)
{
  GenApi::IEnumeration *pBlockSize = FindBlockSize(camera);
  if (pBlockSize == nullptr) {
    return 0;
  }
  try {
    const std::string strEntry = pBlockSize->ToString().c_str();
    const bool bKnown = strEntry.compare(0, BLOCK_PREFIX.size(), BLOCK_PREFIX) == 0;
    return bKnown ? static_cast<uint32_t>(std::lround(std::sqrt(std::atof(strEntry.c_str() + BLOCK_PREFIX.size()))))
                  : 0;
  } catch (const GenICam::GenericException &) {
    return 0;
  }
}

} // namespace ffc::host
