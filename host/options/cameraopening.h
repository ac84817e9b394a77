/// \file
/// Makes the camera that the command line asks for.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include <QString>

#include "camera/icamera.h"
#include "host/options/commandline.h"

namespace ffc::host {

struct SOpenedCamera {
  std::unique_ptr<ICamera> pCamera; ///< null when it failed
  QString strError;                 ///< one line then
};

using CameraFactory = std::function<SOpenedCamera(const SHostOptions &)>;

SOpenedCamera OpenCamera(const SHostOptions &stOptions);

/// One line per real camera that answers: id, protocol, address and display name with tabs between them; a line that
/// says so when there is none. Takes about a second.
std::string DescribeRealCameras();

/// Selects the side of a self-correcting camera's coefficient blocks. Only while it does not stream.
/// \param nSide pixels; 0 leaves the camera's own choice
/// \return empty, or one line that says why not
QString SelectBlockSize(ICamera &camera, uint32_t nSide);

/// Side of the coefficient blocks in pixels; 0 for a camera that has none.
uint32_t ReadBlockSize(ICamera &camera);

} // namespace ffc::host
