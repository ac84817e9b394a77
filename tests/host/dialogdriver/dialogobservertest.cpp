#include "host/dialogdriver/dialogobserver.h"

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QProgressDialog>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QVBoxLayout>

#include <gtest/gtest.h>

using namespace ffc::host;

namespace {

/// A dialog with one of the buttons that are observed, which opens what a test wants.
class DialogObserver : public testing::Test {
protected:
  DialogObserver()
  {
    m_pButton->setObjectName("LoadPC_Button");
    m_observer.Observe(m_dialog);
    QObject::connect(&m_observer, &CDialogObserver::SigDone,
                     [this](const SDialogOutcome &stOutcome) { m_listOutcomes.push_back(stOutcome); });
  }

  /// Shows it and hides it, while the button is down.
  void ShowWhilePressed(QDialog &box, bool bModal = true)
  {
    m_pButton->pressed();
    m_pButton->released();
    EXPECT_EQ(m_observer.GetAction(), EDialogAction::LoadFile);
    box.setModal(bModal);
    box.show();
    box.hide();
    m_pButton->clicked();
  }

  static void AddText(QDialog &box) { (new QVBoxLayout(&box))->addWidget(new QLabel("It went wrong.")); }

  static void PrepareFileBox(QFileDialog &box, const char *pFilter)
  {
    box.setOption(QFileDialog::DontUseNativeDialog);
    box.setNameFilter(QLatin1String(pFilter));
  }

  QDialog m_dialog;
  QPushButton *m_pButton = new QPushButton(&m_dialog);
  CDialogObserver m_observer{nullptr};
  QSignalSpy m_spyBox{&m_observer, &CDialogObserver::SigBox};
  QSignalSpy m_spyOpening{&m_observer, &CDialogObserver::SigOpening};
  std::vector<SDialogOutcome> m_listOutcomes;
};

} // namespace

TEST_F(DialogObserver, ABoxWhileAButtonIsDownIsTheErrorOfItsOutcomeAndTheNextPressBeginsAnew)
{
  QDialog box;
  AddText(box);
  ShowWhilePressed(box);
  m_pButton->click();
  ASSERT_EQ(m_listOutcomes.size(), 2U);
  EXPECT_EQ(m_listOutcomes[0].eAction, EDialogAction::LoadFile);
  EXPECT_EQ(m_listOutcomes[0].strError, "It went wrong.");
  EXPECT_EQ(m_listOutcomes[1].strError, "");
  EXPECT_FALSE(m_observer.GetAction().has_value());
  ASSERT_EQ(m_spyBox.size(), 1);
  EXPECT_EQ(m_spyBox[0].at(1).toString(), "It went wrong.");
}

TEST_F(DialogObserver, ProgressAndWindowsThatWaitForNobodyAndTheHostsOwnBoxesAreNoErrors)
{
  QProgressDialog progress("It works.", "Cancel", 0, 0);
  ShowWhilePressed(progress);
  QDialog window;
  AddText(window);
  ShowWhilePressed(window, false);
  QDialog own(&m_dialog);
  AddText(own);
  ShowWhilePressed(own);
  ASSERT_EQ(m_listOutcomes.size(), 3U);
  for (const SDialogOutcome &stOutcome : m_listOutcomes) {
    EXPECT_EQ(stOutcome.strError, "");
  }
  EXPECT_TRUE(m_spyBox.isEmpty());
}

TEST_F(DialogObserver, ABoxForCoefficientsBeginsAtTheLastFileAndAnotherFileBoxIsLeftAsItIs)
{
  const QTemporaryDir dir;
  QFile file(dir.filePath("last.ffc"));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.close();
  m_observer.SetLastFile(file.fileName());
  QFileDialog coefficients;
  PrepareFileBox(coefficients, "Coefficients (*.ffc)");
  ShowWhilePressed(coefficients);
  EXPECT_TRUE(m_observer.IsFileBoxOpen());
  EXPECT_EQ(coefficients.directory(), QDir(dir.path()));
  EXPECT_EQ(coefficients.selectedFiles(), QStringList(dir.filePath("last.ffc")));
  const QTemporaryDir elsewhere;
  coefficients.setDirectory(elsewhere.path());
  ShowWhilePressed(coefficients);
  EXPECT_EQ(coefficients.directory(), QDir(elsewhere.path())) << "where the user went";
  coefficients.fileSelected(file.fileName());
  EXPECT_EQ(m_spyOpening.size(), 1) << "connected once";

  QFileDialog pictures;
  PrepareFileBox(pictures, "Pictures (*.png)");
  pictures.setDirectory(elsewhere.path());
  ShowWhilePressed(pictures);
  EXPECT_EQ(pictures.directory(), QDir(elsewhere.path()));
  EXPECT_TRUE(m_spyBox.isEmpty());
}

TEST_F(DialogObserver, ALastFileWhoseFolderIsGoneLeavesTheBoxWhereItIs)
{
  const QTemporaryDir elsewhere;
  m_observer.SetLastFile(elsewhere.filePath("gone/last.ffc"));
  QFileDialog box;
  PrepareFileBox(box, "Coefficients (*.ffc)");
  box.setAcceptMode(QFileDialog::AcceptSave);
  box.setDirectory(elsewhere.path());
  ShowWhilePressed(box);
  EXPECT_EQ(box.directory(), QDir(elsewhere.path()));
  EXPECT_EQ(box.defaultSuffix(), "ffc") << "for a name without ending";
}
