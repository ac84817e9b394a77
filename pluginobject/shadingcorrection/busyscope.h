/// \file
/// What a long operation shows while it runs.
#pragma once

#include <QPointer>
#include <QWidget>

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
