/// \file
/// Drives the correction dialog as a user would, widget by widget.
#pragma once

#include <QImage>
#include <QString>
#include <QStringList>

#include "host/dialogdriver/modalanswerer.h"

class QDialog;
class QWidget;

namespace ffc::host {

/// What a user saw after one action.
struct SDialogAnswer {
  QString strBox;           ///< text of the message boxes that came up; empty when none did
  QString strPrompt;        ///< the prompt line afterwards
  bool bWarning = false;    ///< the prompt line is red
  bool bFileChosen = false; ///< a file dialog came up and was answered
};

/// The dialog that the plug-in shows. Reads states, never words, so it works in every language.
///
/// Used on the user-interface thread. Actions on a widget that is missing, hidden or disabled answer with
/// a box text that says so.
class CDialogDriver {
public:
  /// The visible top-level window named "ShadingCorrectionDlg"; null when there is none.
  static QDialog *FindDialog();
  /// The same, hidden or not.
  static QDialog *FindAnyDialog();

  /// \param dialog outlives the driver
  explicit CDialogDriver(QDialog &dialog) : m_dialog(dialog) {}

  SDialogAnswer AcquireDark();
  SDialogAnswer AcquireBright();
  SDialogAnswer Execute();
  /// Of a camera that corrects itself.
  SDialogAnswer LoadFlash();
  SDialogAnswer SaveFlash();
  SDialogAnswer LoadFile(const QString &strPath);
  SDialogAnswer SaveFile(const QString &strPath);
  /// \param nFrames 1, 2, 4, 8 or 16
  SDialogAnswer SetFrameCount(int nFrames);
  /// \param nGray 0 to 255
  SDialogAnswer SetExpectGray(int nGray);
  /// Ticks or unticks the preview, unless it is so already.
  SDialogAnswer SetPreview(bool bOn);

  int GetFrameCount() const;
  int GetExpectGray() const;
  bool IsExecuteEnabled() const;
  /// The bright acquisition's button is disabled because it runs.
  bool IsAcquiringBright() const;
  /// Enabled and checked: frames are being corrected.
  bool IsPreviewOn() const;
  /// There are coefficients that the preview can use.
  bool IsPreviewOffered() const;
  /// Names of the controls that a user could operate now, the title bar's apart.
  QStringList ListEnabledControls() const;
  /// The prompt line as it stands.
  SDialogAnswer ReadPrompt() const;
  QImage GrabPicture();

private:
  SDialogAnswer Click(const char *pName, const QString &strFile = QString());
  /// \param fnAction gets the widget, when it is a TWidget that can be operated
  template <class TWidget, class TAction>
  SDialogAnswer Act(const char *pName, const QString &strFile, TAction fnAction);

  QDialog &m_dialog;
};

} // namespace ffc::host
