/// \file
/// Answers modal windows while the call that opened them is blocked.
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

class QDialog;
class QFileDialog;
class QWidget;

namespace ffc::host {

/// Whether a widget belongs to the title bar that a dialog of the plug-in draws itself.
bool IsInTitleBar(const QWidget &widget, const QDialog &dialog);

/// Every text in a message box but its title, on one line.
QString ReadMessage(const QDialog &dialog);

/// Made around one call that may open message boxes or a file dialog. Boxes are read and confirmed, the
/// file dialog gets the given file, anything else is read and rejected. So no modal window can hold up a
/// run that nobody watches. Progress boxes are left alone: they close by themselves.
///
/// File dialogs must not be native (Qt::AA_DontUseNativeDialogs).
class CModalAnswerer : public QObject {
  Q_OBJECT

public:
  /// \param strFile what to choose in a file dialog; empty cancels it
  explicit CModalAnswerer(const QString &strFile = QString());

  /// Texts of the boxes that were answered, oldest first.
  const QStringList &GetMessages() const { return m_listMessages; }
  bool HasAnsweredFileDialog() const { return m_bFileDialogAnswered; }

private:
  void Arm();
  void Look();
  void AnswerFileDialog(QFileDialog &dialog);
  void AnswerBox(QDialog &dialog);

  QString m_strFile;
  QStringList m_listMessages;
  bool m_bFileDialogAnswered = false;
};

} // namespace ffc::host
