/// \file
/// What stands with a frame that is kept: how it was taken, and what was done to it.
#pragma once

#include <GenApi/GenApi.h>
#include <QJsonObject>
#include <QString>

#include "frames/frameinfo.h"
#include "host/recording/framerecorder.h"

namespace ffc::host {

/// What the camera is and how it is set, as far as it says so: "camera", "serial", "pixelFormat", "exposureTime" and so
/// on. User-interface thread.
QJsonObject ReadFrameSettings(GenApi::INodeMap &deviceMap);

/// The settings and what is the frame's own: "corrected", "frameId", "time".
QJsonObject DescribeFrame(QJsonObject settings, const SRecordedFrame &stFrame);

/// For the frame's file.
/// \param frame of DescribeFrame
/// \param strMark of the correction, a JSON object; kept where the frame is corrected
frames::Texts MakeFrameTexts(const QJsonObject &frame, const QString &strMark);

} // namespace ffc::host
