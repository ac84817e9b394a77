/// \file
/// Keys of the window's menus, wherever the focus is.
#pragma once

#include <QMainWindow>

class QKeyEvent;

namespace ffc::host {

/// A number field takes Ctrl with some letters for itself (to the end of the line, delete to there); where a menu entry
/// has such a key, it is the menu's.
class CWindowKeys final : public QObject {
  Q_OBJECT

public:
  /// \param window has its fields and its menus; owns this
  explicit CWindowKeys(QMainWindow &window);

  bool eventFilter(QObject *pWatched, QEvent *pEvent) override;

private:
  bool IsMenuKey(const QKeyEvent &event) const;
};

} // namespace ffc::host
