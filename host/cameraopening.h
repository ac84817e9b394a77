/// \file
/// Makes the camera that the command line asks for.
#pragma once

#include <memory>

#include <QString>

#include "camera/icamera.h"
#include "host/commandline.h"

struct SOpenedCamera {
  std::unique_ptr<ICamera> pCamera; ///< null when it failed
  QString strError;                 ///< one line then
};

SOpenedCamera OpenCamera(const SHostOptions &stOptions);
