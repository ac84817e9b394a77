/// \file
/// Whether a coefficient file that the user chooses is for the camera that is open.
#pragma once

#include <QString>

#include <GenApi/GenApi.h>

namespace ffc::host {

/// What the side file says of a coefficient file that does not fit the camera, as sentences; empty when it fits and
/// where there is no side file.
QString DescribeMisfit(const QString &strFile, GenApi::INodeMap &deviceMap);

} // namespace ffc::host
