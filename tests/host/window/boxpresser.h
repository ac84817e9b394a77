/// \file
/// Presses buttons of boxes that hold up whoever opened them.
#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QObject>
#include <QString>

namespace ffc::host {

/// Presses a button of the modal box of that name as soon as it is there.
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
    QWidget *pBox = QApplication::activeModalWidget();
    if (pBox == nullptr || pBox->objectName() != m_strBox) {
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

} // namespace ffc::host
