/// \file
/// What is done in the correction dialog, by the user or by the host.
#pragma once

#include <optional>

#include <QDialog>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

class QAbstractButton;
class QFileDialog;

namespace ffc::host {

enum class EDialogAction { AcquireDark, AcquireBright, Execute, LoadFlash, SaveFlash, LoadFile, SaveFile };

/// How one press of a button ended.
struct SDialogOutcome {
  EDialogAction eAction = EDialogAction::AcquireDark;
  QString strError; ///< text of the message boxes that came up; empty when none did
  QString strFile;  ///< that was chosen in a file box; empty when none was
};

/// Watches the buttons of the dialog and the windows that the plug-in opens meanwhile; the dialog itself tells its host
/// nothing of what it loads and saves. A name that is chosen without ending for saving coefficients gets theirs.
/// User-interface thread.
class CDialogObserver : public QObject {
  Q_OBJECT

public:
  explicit CDialogObserver(QObject *pParent);
  ~CDialogObserver() override;

  /// \param dialog observed from now on, as long as it lives
  void Observe(QDialog &dialog);
  /// \param strFile where the boxes for files of coefficients begin, and what is to be loaded; empty: as they come
  void SetLastFile(const QString &strFile) { m_strLastFile = strFile; }
  /// Of the button that was released last; nothing when what it asked for is done.
  std::optional<EDialogAction> GetAction() const { return m_eAction; }
  /// The user chooses a file of coefficients right now.
  bool IsFileBoxOpen() const { return !m_pFileBox.isNull(); }

signals:
  /// A message box of the plug-in is about to be shown.
  void SigBox(QDialog *pBox, const QString &strText);
  /// A file of coefficients was chosen to be loaded.
  void SigOpening(const QString &strFile);
  /// The plug-in is done with what a button asked for.
  void SigDone(const ffc::host::SDialogOutcome &stOutcome);

protected:
  bool eventFilter(QObject *pObject, QEvent *pEvent) override;

private:
  void ObserveButton(QAbstractButton &button, EDialogAction eAction);
  void ObserveFileBox(QFileDialog &box);

  std::optional<EDialogAction> m_eAction;
  QPointer<QFileDialog> m_pFileBox;
  QStringList m_listErrors; ///< since a button was released
  QString m_strFile;
  QString m_strLastFile;
};

} // namespace ffc::host
