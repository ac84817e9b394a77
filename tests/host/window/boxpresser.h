/// \file
/// What a user does with boxes that hold up whoever opened them.
#pragma once

#include <functional>
#include <optional>
#include <utility>

#include <QAbstractButton>
#include <QApplication>
#include <QFileDialog>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
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

/// Does something as soon as the box of that name is there, once, and presses a button of the box then.
class CInterrupter : public QObject {
public:
  CInterrupter(const char *pBox, std::function<void()> fnAction, const char *pButton = "&Cancel")
    : m_pBox(pBox), m_pButton(pButton), m_fnAction(std::move(fnAction)), m_nTimer(startTimer(10))
  {
  }
  bool HasActed() const { return m_presser.has_value(); }

protected:
  void timerEvent(QTimerEvent *) override
  {
    if (FindBox(QLatin1String(m_pBox)) != nullptr) {
      killTimer(m_nTimer);
      m_fnAction();
      m_presser.emplace(m_pBox, m_pButton);
    }
  }

private:
  const char *m_pBox;
  const char *m_pButton;
  std::function<void()> m_fnAction;
  std::optional<CBoxPresser> m_presser;
  int m_nTimer;
};

/// Types a name into the first file box, answers the question whether a file is replaced, and leaves the second box.
class CReplacingUser : public QObject {
public:
  CReplacingUser(const QString &strName, const char *pAnswer) : m_strName(strName), m_presser("ReplaceFile", pAnswer)
  {
    startTimer(10);
  }
  int GetQuestions() const { return m_presser.GetPressed(); }

protected:
  void timerEvent(QTimerEvent *) override
  {
    if (auto *pInput = qobject_cast<QInputDialog *>(QApplication::activeModalWidget())) {
      pInput->accept();
    }
    auto *pBox = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
    if (pBox != nullptr && m_strName.isEmpty()) {
      pBox->reject();
    } else if (pBox != nullptr) {
      pBox->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(m_strName);
      m_strName.clear();
      QMetaObject::invokeMethod(pBox, "accept");
    }
  }

private:
  QString m_strName;
  CBoxPresser m_presser;
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
