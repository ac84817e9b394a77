/// \file
/// A box that stands in front while the host works, with a way to end it.
#pragma once

#include <cstdint>

#include <QPointer>
#include <QProgressDialog>

namespace ffc::host {

/// Takes all input of the program, so that nothing else can be pressed meanwhile. Shown at once.
///
/// It is not modal: the toolkit drops what the title bar of a blocked window asks for, and the user would never learn
/// why that window stays. Closing it is put off until the box is gone. A modal box that comes up meanwhile has the
/// input.
class CWaitBox : public QProgressDialog {
  Q_OBJECT

public:
  /// \param pWindow that the box stands over
  CWaitBox(const QString &strTitle, QWidget *pWindow);
  ~CWaitBox() override;

  /// What is said to a user who closes the window meanwhile: why it waits. Without it, closing the window cancels.
  void SetClosingText(const QString &strText) { m_strClosing = strText; }
  /// \param nTotal 0: nobody knows how long it takes
  void ShowProgress(const QString &strStep, uint32_t nDone, uint32_t nTotal);
  bool IsCancelled() const { return wasCanceled(); }
  /// Lets events pass for a moment.
  static void LetPass();

protected:
  bool eventFilter(QObject *pObject, QEvent *pEvent) override;

private:
  bool IsMine(const QObject *pObject) const;
  void PutOffClosing();
  void ShowText();

  QPointer<QWidget> m_pWindow;
  QString m_strStep;
  QString m_strClosing;
  bool m_bClosing = false; ///< the user has closed the window
};

} // namespace ffc::host
