/// \file
/// Where the plug-in's dialog stands.
#pragma once

#include <QPoint>
#include <QRect>

namespace ffc::host {

/// The place beside the window, or else within the screen, that covers the live image least. All in global coordinates,
/// pixels.
/// \param rcScreen what is free of it; the dialog is kept inside
/// \param rcWindow the main window with its frame
/// \param rcImage the live image in it
/// \return of the dialog's upper left corner
QPoint FindDialogPlace(const QRect &rcScreen, const QRect &rcWindow, const QRect &rcImage, const QSize &szDialog);

} // namespace ffc::host
