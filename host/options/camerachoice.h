/// \file
/// The cameras that a user can choose from.
#pragma once

#include <vector>

#include <QString>

#include "camera/realcameras.h"
#include "host/options/hostoptions.h"

namespace ffc::host {

struct SCameraChoice {
  QString strName;          ///< in the language of the program
  SCameraOptions stCamera;  ///< what opens it
  bool bAsksFolder = false; ///< the user has to name the folder of recorded frames first
};

/// First the camera of the command line, then the real ones, the simulated ones, and recorded frames at the end.
/// \param listRealCameras those that answered when they were looked for
std::vector<SCameraChoice> ListCameraChoices(const SCameraOptions &stCamera,
                                             const std::vector<camera::SRealCameraInfo> &listRealCameras = {});

/// Puts the choice that is open where it stood in a list that was made anew, with all that the user has chosen of it;
/// behind the first one where the list has it no more.
/// \return its index
int KeepChoice(std::vector<SCameraChoice> &listChoices, const SCameraChoice &stOpen);

} // namespace ffc::host
