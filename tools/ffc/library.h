/// \file
/// Flats of many conditions, kept in one folder.
#pragma once

#include <optional>
#include <vector>

#include <QString>

#include "frames/frameinfo.h"
#include "frames/sidefile.h"
#include "platform/result.h"
#include "tools/ffc/options.h"
#include "tools/ffc/report.h"

namespace ffc::tool {

/// How far a flat's conditions may lie from those asked for.
constexpr double LARGEST_EXPOSURE_RATIO = 1.5;
constexpr double LARGEST_GAIN_DISTANCE = 1.0; ///< dB

struct SLibraryFlat {
  QString strPath; ///< of the .ffc file
  frames::SSideFile stSide;
};

/// All flats of a folder that have a side file, by name.
/// \return a failure for a folder that is not there, or a side file that cannot be read
Result<std::vector<SLibraryFlat>> ListLibrary(const QString &strFolder);

/// Copies a flat and its side file into the folder, which is made where it is missing, under a name made of its
/// conditions.
std::optional<STrouble> AddToLibrary(const QString &strFolder, const QString &strFlat, bool bForce);

/// "Mono12 640 x 480, camera A 7, 10000 us, 3 dB"
QString DescribeConditions(const frames::SSideFile &stSide);

/// Chooses the flat for frames: camera, size and format are equal, exposure and gain the nearest within the limits; of
/// several, the newest. What is not stated must be the same for all that are left.
/// \return a failure that says what was asked for, and what there is
Result<SLibraryFlat> ChooseFlat(const std::vector<SLibraryFlat> &listFlats, const frames::SFrameInfo &stInfo,
                                const std::string &strPixelFormat, const SOrigin &stOrigin);

} // namespace ffc::tool
