#include "pluginobject/shadingcorrection/slotscope.h"

#include <utility>

namespace ffc::dialog {

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
