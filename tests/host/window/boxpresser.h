/// \file
/// What a user does with boxes that hold up whoever opened them.
#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QObject>
#include <QString>
#include <QWindow>

namespace ffc::host {

/// \return the box of that name that is shown; null: none is
inline QWidget *FindBox(const QString &strName)
{
  for (QWidget *pWidget : QApplication::topLevelWidgets()) {
    if (pWidget->objectName() == strName && pWidget->isVisible()) {
      return pWidget;
    }
  }
  return nullptr;
}

/// Presses a button of the box of that name as soon as it is there.
class CBoxPresser : public QObject {
public:
  CBoxPresser(const char *pBox, const char *pButton)
    : m_strBox(QLatin1String(pBox)), m_strButton(QLatin1String(pButton))
  {
    startTimer(10);
  }
  int GetPressed() const { return m_nPressed; }

protected:
  void timerEvent(QTimerEvent *) override
  {
    const QWidget *pBox = FindBox(m_strBox);
    if (pBox == nullptr) {
      return;
    }
    for (QAbstractButton *pButton : pBox->findChildren<QAbstractButton *>()) {
      if (pButton->text() == m_strButton) {
        ++m_nPressed;
        pButton->click();
        return;
      }
    }
  }

private:
  QString m_strBox;
  QString m_strButton;
  int m_nPressed = 0;
};

/// Closes a window by its title bar, once, while a box of that name is shown, and keeps what the box says then.
class CCloser : public QObject {
public:
  CCloser(QWidget &window, const char *pBox) : m_window(window), m_strBox(QLatin1String(pBox)) { startTimer(10); }
  bool HasClosed() const { return m_bClosed; }
  QString GetBoxText() const { return m_strText; }

protected:
  void timerEvent(QTimerEvent *) override
  {
    const QWidget *pBox = FindBox(m_strBox);
    if (!m_bClosed && pBox != nullptr) {
      m_bClosed = true;
      m_window.windowHandle()->close();
      m_strText = pBox->findChild<QLabel *>()->text();
    }
  }

private:
  QWidget &m_window;
  QString m_strBox;
  QString m_strText;
  bool m_bClosed = false;
};

} // namespace ffc::host
