/// \file
/// A camera's flash as a file: a mark, a version, the content and its checksum.
#pragma once

#include <string>

#include "camera/software/selfcorrection/cameraflash.h"
#include "platform/result.h"

namespace ffc::camera {

/// Also true for a folder or a device of that name.
bool FlashFileExists(const std::string &strFile);

/// \param strCamera the camera that the file must be of
/// \return why not: what makes the file of no use
Result<SFlashContent> ReadFlashFile(const std::string &strFile, const std::string &strCamera);

/// \return why not; then the file is as it was
Result<> WriteFlashFile(const std::string &strFile, const std::string &strCamera, const SFlashContent &stContent);

} // namespace ffc::camera
