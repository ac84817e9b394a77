/// \file
/// Saving what the window shows: one frame, or a sequence as it comes.
#pragma once

#include <QString>

#include "camera/icamera.h"
#include "frames/frameinfo.h"
#include "host/viewer/framepipeline.h"
#include "platform/result.h"

class QWidget;

namespace ffc::host {

/// The camera's settings, as they stand in the files that have a place for texts.
/// \param bCorrected whether the frames are corrected by the plug-in
frames::Texts DescribeSettings(camera::ICamera &camera, bool bCorrected);

/// Asks where to, with the kinds of files that there are.
/// \return empty: the user has cancelled; else with a known ending
QString AskFramePath(QWidget *pParent, const QString &strTitle);

/// Samples as they are: never what the display makes of them.
Result<> SaveFrameCopy(const QString &strPath, const SFrameCopy &stFrame, const frames::Texts &mapTexts);

/// Saves the next frames of the stream, as they are shown, corrected where the plug-in corrects. A kind of file that
/// takes one frame gets one file for each: NAME-0001.png. Shows how far it is; the user may cancel, and nothing is left
/// of an unfinished file then.
/// \param strPath as AskFramePath gives it
/// \return how many were saved
Result<uint32_t> SaveSequence(const QString &strPath, uint32_t nFrames, CFramePipeline &pipeline,
                              const frames::Texts &mapTexts, QWidget *pParent);

} // namespace ffc::host
