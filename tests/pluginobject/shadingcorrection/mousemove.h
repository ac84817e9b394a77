/// \file
/// Mouse moves for tests of dragging.
#pragma once

#include <QApplication>
#include <QMouseEvent>
#include <QWidget>

/// Moves the mouse with the left button down, as the system reports it to the widget that was pressed.
///
/// The toolkit's own test function moves the real cursor, which not every platform reports back.
inline void DragMouseTo(QWidget &widget, const QPoint &posGlobal)
{
  QMouseEvent event(QEvent::MouseMove, widget.mapFromGlobal(posGlobal), posGlobal, Qt::NoButton, Qt::LeftButton,
                    Qt::NoModifier);
  QApplication::sendEvent(&widget, &event);
}
