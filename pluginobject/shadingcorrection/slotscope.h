/// \file
/// Slots that are on the stack, for windows that may have to go while one of them runs, and what long ones show.
#pragma once

#include <memory>
#include <optional>

#include <QPointer>
#include <QWidget>

namespace ffc::dialog {

/// A wait cursor and, if asked, a disabled button, until the end of a scope. User-interface thread only.
///
/// A button that has the focus has it again afterwards, unless the user gave it to another widget.
class CBusyScope {
public:
  /// \param pButton disabled meanwhile; null for none. May go away before the scope ends.
  explicit CBusyScope(QWidget *pButton = nullptr);
  ~CBusyScope();
  CBusyScope(const CBusyScope &) = delete;
  CBusyScope &operator=(const CBusyScope &) = delete;

  /// Lets what is pending run once, so that the change is painted. What the user does stays queued: it
  /// must not start a second operation within the first.
  static void Paint();
  /// Takes the cursor back before the scope ends, for a message.
  void PopCursor();
  /// Lets the queued input run while the button is still disabled, so that clicks on it are lost. Input for other
  /// widgets does what it does. Nothing without a button.
  void DropInput();

private:
  QPointer<QWidget> m_pButton;
  bool m_bFocused = false;
  bool m_bCursor = true;
};

/// What the user sees of a slot that takes long.
enum class EBusy {
  No,
  Cursor, ///< a wait cursor
  Button, ///< a wait cursor, and the slot's button out of use
};

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

  /// Until the end of the scope. Once. Opens an event loop when a button is disabled, so that it is painted so.
  /// \param pButton for EBusy::Button
  void BeBusy(EBusy eBusy, QWidget *pButton = nullptr);
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
