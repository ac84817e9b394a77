/// \file
/// Texts about a camera, in the language of the program.
#pragma once

#include <vector>

#include <QString>
#include <QStringList>

#include "camera/framelosses.h"
#include "camera/icamera.h"

namespace ffc::host {

/// Features that are not as the plug-in needs them, one sentence each.
QStringList DescribeFeatureNotes(const std::vector<camera::SFeatureNote> &listNotes);

/// Which triggers are on, "FrameStart (Line1), ..."; empty when none is. Asks the camera; see ListActiveTriggers.
QString DescribeTriggers(camera::ICamera &camera);

/// How many frames were lost and why; empty when none was and no packet was missing.
QString DescribeLosses(const camera::SFrameLosses &stLosses);

} // namespace ffc::host
