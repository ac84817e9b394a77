/// \file
/// Answers modal windows that a test makes appear.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include <QObject>
#include <QPointer>
#include <QString>

class QDialog;
class QFileDialog;
class QWidget;

namespace ffc::test {

/// While alive, answers every modal dialog as soon as its event loop runs, so that the call under test
/// returns: message boxes by their accepting button unless told otherwise, file dialogs by choosing the file
/// that was set, else by cancelling, and any other dialog by rejecting it. Lives on the user-interface
/// thread. File dialogs must not be native (Qt::AA_DontUseNativeDialogs).
///
///     CModalAnswer answer;
///     QTest::mouseClick(pButton, Qt::LeftButton);
///     ASSERT_EQ(answer.GetBoxes().size(), 1U);
///     EXPECT_EQ(answer.GetBoxes()[0].strMessage, "Get buffer time out");
class CModalAnswer : public QObject {
  Q_OBJECT

public:
  struct SBox {
    std::string strTitle;
    std::string strMessage; ///< as shown, trailing blanks too
    std::string strPressed; ///< text of the pressed button; empty when there was none to press
  };
  struct SFileDialog {
    std::string strTitle;
    std::string strDirectory; ///< absolute
    std::string strFilter;    ///< the name filters, joined by ";;"
    std::string strProposed;  ///< the name that stood in the dialog
    bool bAccepted = false;   ///< false also when the dialog refused the file
  };

  CModalAnswer();
  ~CModalAnswer() override;

  /// Presses the button with this text in message boxes; an empty text closes them without a button.
  CModalAnswer &PressButton(const QString &strText);
  /// Chooses this file in file dialogs; an empty name cancels them. An existing file is overwritten.
  CModalAnswer &ChooseFile(const QString &strFile);
  /// Called within the event loop of each modal dialog, before it is answered.
  CModalAnswer &BeforeAnswer(std::function<void(QDialog &)> fnBefore);

  /// In the order of their appearance.
  const std::vector<SBox> &GetBoxes() const { return m_listBoxes; }
  const std::vector<SFileDialog> &GetFileDialogs() const { return m_listFileDialogs; }

protected:
  bool eventFilter(QObject *pWatched, QEvent *pEvent) override;

private:
  void Answer(QDialog &dialog);
  void AnswerFileDialog(QFileDialog &dialog);
  void AnswerBox(QDialog &dialog);

  QString m_strButton;
  bool m_bAnyButton = true;
  QString m_strFile;
  std::function<void(QDialog &)> m_fnBefore;
  std::vector<SBox> m_listBoxes;
  std::vector<SFileDialog> m_listFileDialogs;
};

} // namespace ffc::test
