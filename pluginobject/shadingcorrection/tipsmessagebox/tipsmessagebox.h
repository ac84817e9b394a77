/// \file
/// The plug-in's own modal message box.
#pragma once

#include <QDialog>
#include <QMessageBox>
#include <QString>

class QLabel;
class QPushButton;
class QToolsTitleBar;

/// A frameless message box in the plug-in's style: title bar, icon, wrapped message and up to two
/// buttons.
///
/// Each static form builds a box, runs it modally and returns 1 when its accepting button was pressed
/// and 0 when its rejecting button was pressed or the box was closed otherwise. They differ in their
/// argument types:
/// - five arguments (parent, title, message, button set, default button), in the order of QMessageBox;
/// - three arguments (message, title, button set) as QString, or for Error and Tips as UTF-8 text.
///
/// Button sets, compared as whole numbers:
/// - 0x400 (Ok): "OK"
/// - 0x14000 (Yes | No): "Yes", "No"
/// - 0x14001: "continue", "Canel"
/// - 0x402000: "OK", "Canel"
/// - any other: no button; the box can only be closed
class CTipsMessageBox : public QDialog {
  Q_OBJECT

public:
  /// Chooses icon and default title. Any other value, Plain too, has neither.
  enum class EKind : qint32 { Plain = 0, Tips = 1, Warning = 2, Error = 3 };

  /// Builds the box hidden. An empty title gives way to the kind's own.
  CTipsMessageBox(const QString &strMessage, const QString &strTitle, EKind eKind,
                  QMessageBox::StandardButtons nButtons, QWidget *pParent = nullptr);

  /// The full forms. The parent and the default button are accepted and not used: the box has no
  /// parent and none of its buttons is made the default one.
  static int Warning(QWidget *pParent, const QString &strTitle, const QString &strMessage,
                     QMessageBox::StandardButtons nButtons = QMessageBox::Ok,
                     QMessageBox::StandardButton eDefaultButton = QMessageBox::NoButton);
  static int Tips(QWidget *pParent, const QString &strTitle, const QString &strMessage,
                  QMessageBox::StandardButtons nButtons = QMessageBox::Ok,
                  QMessageBox::StandardButton eDefaultButton = QMessageBox::NoButton);
  static int Error(QWidget *pParent, const QString &strTitle, const QString &strMessage,
                   QMessageBox::StandardButtons nButtons = QMessageBox::Ok,
                   QMessageBox::StandardButton eDefaultButton = QMessageBox::NoButton);

  /// The short forms.
  static int Warning(const QString &strMessage, const QString &strTitle, QMessageBox::StandardButtons nButtons);
  static int Tips(const QString &strMessage, const QString &strTitle, QMessageBox::StandardButtons nButtons);
  static int Error(const QString &strMessage, const QString &strTitle, QMessageBox::StandardButtons nButtons);
  static int Error(const char *pMessage, const char *pTitle, QMessageBox::StandardButtons nButtons);
  static int Tips(const char *pMessage, const char *pTitle, QMessageBox::StandardButtons nButtons);

private slots:
  void __SlotClickedOK();
  void __SlotClickedCancel();

private:
  void __Initialize();
  bool __InitUIModule();
  bool __CreateControls();
  bool __CreateTitleBar();
  bool __CreateLayouts();
  void __InitStyleSheet();
  void __InitConnections();
  void __SetMessage(const QString &strMessage);
  void __SetTitle(const QString &strTitle);
  void __ShowTitle(const QString &strTitle);
  void __SetButtons(QMessageBox::StandardButtons nButtons);
  void __SetKind(EKind eKind);

  QPushButton *m_pButtonOK = nullptr;
  QPushButton *m_pButtonCancel = nullptr;
  QToolsTitleBar *m_pTitleBar = nullptr;
  QLabel *m_pIconLabel = nullptr;
  QLabel *m_pMessageLabel = nullptr;
  QString m_strTitle;
};
