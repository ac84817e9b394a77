/// \file
/// The colours of the whole program.
#pragma once

#include <QPalette>
#include <QString>

class QActionGroup;
class QEvent;
class QLabel;
class QMenu;
class QWidget;

namespace ffc::host {

enum class ELook {
  AsDialog, ///< dark, as the plug-in's dialog is by its own style sheet
  Light,
  AsDesktop
};

/// Gives the program its look. Widgets that are there follow. User-interface thread.
void ApplyLook(ELook eLook);
ELook GetLook();

/// The look that was chosen last; AsDialog where none was.
ELook RestoreLook();
/// Entries of a menu that choose the look and remember it.
void AddLooks(QMenu &menu, QWidget *pParent);

/// Whether a widget's colours may have changed: those that it draws with itself are to be chosen anew.
bool IsNewLook(const QEvent &event);

/// Makes a label's text a warning that can be read on the palette's ground, or a plain text.
void SetWarning(QLabel &label, bool bWarning);

} // namespace ffc::host
