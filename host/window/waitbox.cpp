#include "host/window/waitbox.h"

#include <algorithm>
#include <array>

#include <QApplication>
#include <QEvent>
#include <QEventLoop>
#include <QTimer>
#include <QWindow>

namespace ffc::host {
namespace {

constexpr int BOX_WIDTH = 360; ///< wide enough for every step, so that the box does not jump
constexpr int PASS_MS = 20;

/// What a user does with a window, as it comes from the desktop.
constexpr std::array INPUT = {QEvent::MouseButtonPress,
                              QEvent::MouseButtonRelease,
                              QEvent::MouseButtonDblClick,
                              QEvent::MouseMove,
                              QEvent::Wheel,
                              QEvent::KeyPress,
                              QEvent::KeyRelease,
                              QEvent::ContextMenu,
                              QEvent::TouchBegin,
                              QEvent::TouchUpdate,
                              QEvent::TouchEnd,
                              QEvent::NativeGesture,
                              QEvent::TabletPress,
                              QEvent::TabletMove,
                              QEvent::TabletRelease,
                              QEvent::DragEnter,
                              QEvent::Drop,
                              QEvent::Close};

bool IsInput(QEvent::Type eType)
{
  return std::find(INPUT.begin(), INPUT.end(), eType) != INPUT.end();
}

} // namespace

CWaitBox::CWaitBox(const QString &strTitle, QWidget *pWindow) : QProgressDialog(pWindow), m_pWindow(pWindow)
{
  setObjectName(QStringLiteral("WaitBox"));
  setWindowTitle(strTitle);
  setCancelButtonText(tr("&Cancel"));
  setMinimumDuration(0);
  setMinimumWidth(BOX_WIDTH);
  setAutoReset(false);
  setAutoClose(false);
  qApp->installEventFilter(this);
  show();
}

CWaitBox::~CWaitBox()
{
  if (m_bClosing && m_pWindow != nullptr) {
    QTimer::singleShot(0, m_pWindow, &QWidget::close);
  }
}

void CWaitBox::ShowProgress(const QString &strStep, uint32_t nDone, uint32_t nTotal)
{
  if (wasCanceled()) {
    return;
  }
  m_strStep = strStep;
  ShowText();
  setMaximum(static_cast<int>(nTotal));
  setValue(static_cast<int>(nDone));
}

void CWaitBox::LetPass()
{
  QEventLoop loop;
  QTimer::singleShot(PASS_MS, &loop, &QEventLoop::quit);
  loop.exec();
}

/// Input reaches a widget through its window; keys of menus and buttons go to these at once.
bool CWaitBox::eventFilter(QObject *pObject, QEvent *pEvent)
{
  const QEvent::Type eType = pEvent->type();
  if (pObject == m_pWindow && eType == QEvent::Close) {
    pEvent->ignore();
    PutOffClosing();
    return true;
  }
  const bool bInput = eType == QEvent::Shortcut || (pObject->isWindowType() && IsInput(eType));
  const bool bClosesWindow =
    eType == QEvent::Close && m_pWindow != nullptr && pObject == m_pWindow->windowHandle(); // who passes it on
  if (!bInput || bClosesWindow || IsMine(pObject) || QApplication::activeModalWidget() != nullptr) {
    return false;
  }
  pEvent->ignore();
  return true;
}

bool CWaitBox::IsMine(const QObject *pObject) const
{
  const QObject *pOwner = pObject;
  while (pOwner != nullptr && pOwner != this) {
    pOwner = pOwner->parent();
  }
  return pOwner == this || pObject == windowHandle();
}

void CWaitBox::PutOffClosing()
{
  m_bClosing = true;
  if (m_strClosing.isEmpty()) {
    cancel();
  } else {
    ShowText();
  }
}

void CWaitBox::ShowText()
{
  setLabelText(m_bClosing ? m_strStep + QLatin1Char('\n') + m_strClosing : m_strStep);
}

} // namespace ffc::host
