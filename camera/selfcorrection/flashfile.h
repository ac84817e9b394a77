/// \file
/// A camera's flash as a file: a mark, a version, the content and its checksum.
#pragma once

#include <string>

#include "camera/selfcorrection/cameraflash.h"

namespace ffc::camera {

/// Also true for a folder or a device of that name.
bool FlashFileExists(const std::string &strFile);

/// \param strCamera the camera that the file must be of
/// \return empty, or why the file is of no use; then *pstContent is as it was
std::string ReadFlashFile(const std::string &strFile, const std::string &strCamera, SFlashContent *pstContent);

/// \return empty, or why the file could not be written; then it is as it was
std::string WriteFlashFile(const std::string &strFile, const std::string &strCamera, const SFlashContent &stContent);

} // namespace ffc::camera
