#include "pluginobject/shadingcorrection/slotscope.h"

#include <utility>

#include <QApplication>
#include <QElapsedTimer>

namespace ffc::dialog {

CBusyScope::CBusyScope(QWidget *pButton) : m_pButton(pButton)
{
  if (m_pButton != nullptr) {
    QWidget *pWindow = m_pButton->window();
    m_bFocused = pWindow->focusWidget() == m_pButton;
    if (m_bFocused) {
      // A disabled button's focus would go to its neighbour, and the user's next key with it.
      pWindow->setFocus();
    }
    m_pButton->setEnabled(false);
  }
  QApplication::setOverrideCursor(Qt::WaitCursor);
}

CBusyScope::~CBusyScope()
{
  PopCursor();
  if (m_pButton == nullptr) {
    return;
  }
  m_pButton->setEnabled(true);
  const QWidget *pFocused = m_pButton->window()->focusWidget();
  if (m_bFocused && (pFocused == nullptr || pFocused == m_pButton->window())) {
    m_pButton->setFocus();
  }
}

void CBusyScope::Paint()
{
  QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void CBusyScope::PopCursor()
{
  if (m_bCursor) {
    m_bCursor = false;
    QApplication::restoreOverrideCursor();
  }
}

void CBusyScope::DropInput()
{
  if (m_pButton == nullptr) {
    return;
  }
  // Input reaches a widget through up to three queues, one per round. A host that never runs out of events does not
  // keep the button disabled.
  constexpr int LEAST_ROUNDS = 3;
  constexpr qint64 LONGEST = 50; // milliseconds
  QElapsedTimer timer;
  timer.start();
  QEventLoop loop;
  int nRound = 0;
  while (timer.elapsed() < LONGEST && (loop.processEvents(QEventLoop::AllEvents) || nRound < LEAST_ROUNDS)) {
    ++nRound;
  }
}

void CSlotStack::PopCursors() const
{
  for (CSlotScope *pScope = m_pTop; pScope != nullptr; pScope = pScope->m_pOuter) {
    pScope->PopCursor();
  }
}

CSlotScope::CSlotScope(CSlotStack &stack, std::shared_ptr<const QObject> pUsed)
  : m_stack(stack), m_pOuter(stack.m_pTop), m_pUsed(std::move(pUsed))
{
  m_stack.m_pTop = this;
}

CSlotScope::~CSlotScope()
{
  m_busy.reset();
  m_stack.m_pTop = m_pOuter;
  if (m_stack.IsEmpty() && m_stack.m_pWindow != nullptr) {
    m_stack.m_pWindow->deleteLater();
  }
}

void CSlotScope::BeBusy(EBusy eBusy, QWidget *pButton)
{
  if (eBusy != EBusy::No) {
    m_busy.emplace(pButton);
  }
  if (eBusy == EBusy::Button) {
    CBusyScope::Paint();
  }
}

void CSlotScope::PopCursor()
{
  if (m_busy.has_value()) {
    m_busy->PopCursor();
  }
}

void CSlotScope::EndBusy()
{
  if (m_busy.has_value()) {
    m_busy->DropInput();
    m_busy.reset();
  }
}

} // namespace ffc::dialog
