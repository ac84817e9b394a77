/// \file
/// Slots that are on the stack, for windows that may have to go while one of them runs.
#pragma once

#include <memory>
#include <optional>

#include <QObject>

#include "pluginobject/shadingcorrection/busyscope.h"

namespace ffc::dialog {

class CSlotScope;

/// The slots of one window that are on the stack. Whoever opens an event loop within one of them (a message box, a
/// file dialog, events let through) may find the window out of service afterwards. User-interface thread only.
class CSlotStack {
public:
  bool IsEmpty() const { return m_pTop == nullptr; }
  /// Takes all their wait cursors back, for a message.
  void PopCursors() const;
  /// The last slot that leaves hands the window to the event loop for deletion: widgets that called the slots are
  /// still on the stack then.
  void DeleteWhenEmpty(QObject *pWindow) { m_pWindow = pWindow; }

private:
  friend class CSlotScope;

  CSlotScope *m_pTop = nullptr;
  QObject *m_pWindow = nullptr;
};

/// One run of a slot.
class CSlotScope {
public:
  /// \param pUsed stays alive until the slot has left; null for nothing
  explicit CSlotScope(CSlotStack &stack, std::shared_ptr<const QObject> pUsed = nullptr);
  ~CSlotScope();
  CSlotScope(const CSlotScope &) = delete;
  CSlotScope &operator=(const CSlotScope &) = delete;

  /// Shows a wait cursor and disables a button, if one is given, until the end of the scope. Once.
  void BeBusy(QWidget *pButton = nullptr) { m_busy.emplace(pButton); }
  void PopCursor();
  /// The end of the scope, with what the disabled button got meanwhile dropped. Opens an event loop.
  void EndBusy();

private:
  friend class CSlotStack;

  CSlotStack &m_stack;
  CSlotScope *const m_pOuter;
  const std::shared_ptr<const QObject> m_pUsed;
  std::optional<CBusyScope> m_busy;
};

} // namespace ffc::dialog
