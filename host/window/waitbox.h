/// \file
/// A box that stands in front while the host works, with a way to end it.
#pragma once

#include <cstdint>

#include <QProgressDialog>

namespace ffc::host {

/// Modal to the whole program, so that nothing else can be pressed meanwhile. Shown at once.
class CWaitBox : public QProgressDialog {
  Q_OBJECT

public:
  CWaitBox(const QString &strTitle, QWidget *pParent);

  /// \param nTotal 0: nobody knows how long it takes
  void ShowProgress(const QString &strStep, uint32_t nDone, uint32_t nTotal);
  bool IsCancelled() const { return wasCanceled(); }
  /// Lets events pass for a moment.
  static void LetPass();
};

} // namespace ffc::host
