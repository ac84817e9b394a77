/// \file
/// Tool bars within the window.
#pragma once

#include <QString>
#include <QToolBar>

namespace ffc::host {

/// One whose button for what has no room is readable in every look; the toolkit's own is black on black in a dark one.
class CToolBar : public QToolBar {
  Q_OBJECT

public:
  explicit CToolBar(QWidget *pParent);

protected:
  void changeEvent(QEvent *pEvent) override;

private:
  void PaintMore();
};

/// A menu entry's text for a tool bar: without the letter of its key, which some languages have behind the text in
/// brackets, and without the dots of a question.
QString GetToolBarText(const QString &strMenuText);

} // namespace ffc::host
