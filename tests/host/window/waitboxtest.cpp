/// \file
/// A box that takes all input, over a window that can be closed all the same.

#include <optional>

#include <QAction>
#include <QMessageBox>
#include <QPushButton>
#include <QShortcutEvent>
#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>

#include "host/window/waitbox.h"
#include "tests/host/window/boxpresser.h"

using namespace ffc::host;

namespace {

/// A window with a button and a key, and a dialog beside it.
class WaitBox : public testing::Test {
protected:
  WaitBox() : m_button(QStringLiteral("Press"), &m_window), m_action(&m_window), m_dialog(&m_window, Qt::Dialog)
  {
    m_window.resize(200, 100);
    m_action.setShortcut(KEY);
    m_window.addAction(&m_action);
    QObject::connect(&m_button, &QPushButton::clicked, [this] { ++m_nPressed; });
    QObject::connect(&m_action, &QAction::triggered, [this] { ++m_nPressed; });
    m_window.show();
    m_dialog.show();
  }
  /// As the desktop does: by the window.
  void PressBoth()
  {
    QTest::mouseClick(m_window.windowHandle(), Qt::LeftButton, Qt::NoModifier, m_button.geometry().center());
    QShortcutEvent event(KEY, 1);
    QApplication::sendEvent(&m_action, &event);
  }

  const QKeySequence KEY = QKeySequence(Qt::Key_F5);
  QWidget m_window;
  QPushButton m_button;
  QAction m_action;
  QWidget m_dialog;
  int m_nPressed = 0;
};

} // namespace

TEST_F(WaitBox, TakesMouseAndKeysFromAllOtherWindowsWhileItIsThere)
{
  {
    const CWaitBox box(QStringLiteral("Box"), &m_window);
    PressBoth();
    m_dialog.windowHandle()->close();
    EXPECT_EQ(m_nPressed, 0);
    EXPECT_TRUE(m_dialog.isVisible());
    auto *pCancel = box.findChild<QPushButton *>();
    QTest::mouseClick(box.windowHandle(), Qt::LeftButton, Qt::NoModifier, pCancel->geometry().center());
    EXPECT_TRUE(box.IsCancelled());
  }
  PressBoth();
  EXPECT_EQ(m_nPressed, 2);
  m_dialog.windowHandle()->close();
  EXPECT_FALSE(m_dialog.isVisible());
}

TEST_F(WaitBox, LeavesTheInputToAModalBoxThatComesUpLater)
{
  const CWaitBox box(QStringLiteral("Box"), &m_window);
  QMessageBox question(QMessageBox::Question, QString(), QStringLiteral("Really?"), QMessageBox::Yes);
  question.setModal(true);
  question.show();
  QAbstractButton *pYes = question.button(QMessageBox::Yes);
  QTest::mouseClick(question.windowHandle(), Qt::LeftButton, Qt::NoModifier,
                    pYes->mapTo(&question, pYes->rect().center()));
  EXPECT_FALSE(question.isVisible());
}

TEST_F(WaitBox, PutsOffClosingTheWindowAndSaysWhy)
{
  std::optional<CWaitBox> box;
  box.emplace(QStringLiteral("Box"), &m_window);
  box->SetClosingText(QStringLiteral("It closes when all is done."));
  box->ShowProgress(QStringLiteral("Working"), 1, 3);
  m_window.windowHandle()->close();
  EXPECT_TRUE(m_window.isVisible());
  EXPECT_FALSE(box->IsCancelled());
  EXPECT_EQ(box->labelText().toStdString(), "Working\nIt closes when all is done.");
  box->ShowProgress(QStringLiteral("Still working"), 2, 3);
  EXPECT_EQ(box->labelText().toStdString(), "Still working\nIt closes when all is done.");
  box.reset();
  EXPECT_TRUE(QTest::qWaitFor([this] { return !m_window.isVisible(); }));
}

TEST_F(WaitBox, WithNothingToSayClosingTheWindowCancels)
{
  {
    const CWaitBox box(QStringLiteral("Box"), &m_window);
    m_window.close();
    EXPECT_TRUE(box.IsCancelled());
    EXPECT_TRUE(m_window.isVisible()) << "until the work has ended";
  }
  EXPECT_TRUE(QTest::qWaitFor([this] { return !m_window.isVisible(); }));
}
