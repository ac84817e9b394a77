#include "host/window/windowkeys.h"

#include <algorithm>

#include <QAbstractSpinBox>
#include <QAction>
#include <QKeyEvent>

namespace ffc::host {

CWindowKeys::CWindowKeys(QMainWindow &window) : QObject(&window)
{
  for (QAbstractSpinBox *pField : window.findChildren<QAbstractSpinBox *>()) {
    pField->installEventFilter(this);
  }
}

/// The toolkit asks the field first whether it wants a key that is also a menu's.
bool CWindowKeys::eventFilter(QObject *pWatched, QEvent *pEvent)
{
  if (pEvent->type() == QEvent::ShortcutOverride && IsMenuKey(*static_cast<QKeyEvent *>(pEvent))) {
    pEvent->ignore();
    return true;
  }
  return QObject::eventFilter(pWatched, pEvent);
}

bool CWindowKeys::IsMenuKey(const QKeyEvent &event) const
{
  const QKeySequence keys(event.key() | static_cast<int>(event.modifiers() & ~Qt::KeypadModifier));
  const QList<QAction *> listActions = parent()->findChildren<QAction *>();
  return std::any_of(listActions.cbegin(), listActions.cend(), [&keys](const QAction *pAction) {
    return pAction->isEnabled() && pAction->shortcuts().contains(keys);
  });
}

} // namespace ffc::host
