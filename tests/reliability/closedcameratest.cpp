// A host that closes the camera, loses its window or destroys the plug-in while something of the plug-in is on the
// stack: a message box, a file dialog, an acquisition, the widget that was clicked.
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <QApplication>
#include <QEventLoop>
#include <QFile>
#include <QFileDialog>
#include <QMouseEvent>
#include <QPointer>
#include <QSpinBox>
#include <QStyle>
#include <QStyleOptionSlider>
#include <QStyleOptionSpinBox>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/reliability/modulerig.h"

using ffc::genapi::CSoftwareInteger;
using ffc::pluginobject::MakePluginMsg;
using namespace ffc::test;

namespace {

enum class EEnd { Uninitialise, UninitialiseAndParent, Parent, Reopen, Destroy };

constexpr const char *END_NAMES[] = {"Uninitialised", "UninitialisedAndItsParentDestroyed", "WithoutItsParent",
                                     "ReopenedAtOnce", "Destroyed"};

/// When the host ends it.
enum class EMoment {
  Box,        ///< while a message box is open
  FileDialog, ///< while a file dialog is open
  Event,      ///< at the first event that is let through
  Message     ///< within a message of the plug-in's
};

/// What the user does, and what comes of it.
struct SSituation {
  std::string strName;
  EMoment eMoment = EMoment::Box;
  std::function<void(CModuleRig &)> fnPrepare = [](CModuleRig &) {};
  std::function<void(CModuleRig &, bool bKey)> fnDo;
  bool bCorrected = false; ///< begins with coefficients in force
  bool bAllInputs = true;  ///< by key and by mouse
  int32_t nMessage = 0;    ///< at EMoment::Message
};

using FnDo = std::function<void(CModuleRig &, bool)>;

FnDo Button(const char *pName)
{
  return [pName](CModuleRig &rig, bool bKey) {
    auto *pButton = rig.Find<QWidget>(pName);
    ASSERT_NE(pButton, nullptr) << pName;
    ASSERT_TRUE(pButton->isEnabled()) << pName;
    if (bKey) {
      pButton->setFocus();
      QTest::keyClick(pButton, Qt::Key_Space);
    } else {
      // A check box is clicked on its indicator.
      QTest::mouseClick(pButton, Qt::LeftButton, {}, QPoint(8, pButton->height() / 2));
    }
  };
}

FnDo Slider(const char *pName)
{
  return [pName](CModuleRig &rig, bool bKey) {
    const QPointer<QSlider> pSlider = rig.Find<QSlider>(pName);
    if (bKey) {
      QTest::keyClick(pSlider, Qt::Key_Right);
      return;
    }
    QStyleOptionSlider option;
    option.initFrom(pSlider);
    option.minimum = pSlider->minimum();
    option.maximum = pSlider->maximum();
    option.sliderPosition = option.sliderValue = pSlider->value();
    const QPoint grab =
      pSlider->style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, pSlider).center();
    const QPoint away(grab.x() < pSlider->width() / 2 ? pSlider->width() - 5 : 5, grab.y());
    QTest::mousePress(pSlider, Qt::LeftButton, {}, grab);
    QMouseEvent move(QEvent::MouseMove, away, Qt::NoButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(pSlider, &move);
    if (pSlider != nullptr) {
      QTest::mouseRelease(pSlider, Qt::LeftButton, {}, away);
    }
  };
}

void StepSpinBox(CModuleRig &rig, bool bKey)
{
  const QPointer<QSpinBox> pBox = rig.Find<QSpinBox>("ExpectGrayspinBox");
  if (bKey) {
    QTest::keyClick(pBox, Qt::Key_Up);
    return;
  }
  QStyleOptionSpinBox option;
  option.initFrom(pBox);
  option.subControls = QStyle::SC_All;
  const QRect up = pBox->style()->subControlRect(QStyle::CC_SpinBox, &option, QStyle::SC_SpinBoxUp, pBox);
  QTest::mousePress(pBox, Qt::LeftButton, {}, up.center());
  if (pBox != nullptr) {
    QTest::mouseRelease(pBox, Qt::LeftButton, {}, up.center());
  }
}

void TypeIntoSpinBox(CModuleRig &rig, bool /*bKey*/)
{
  auto *pBox = rig.Find<QSpinBox>("ExpectGrayspinBox");
  pBox->selectAll();
  QTest::keyClick(pBox, Qt::Key_7);
}

void RefuseAll(CModuleRig &rig)
{
  rig.Fault().Arm(1, CAccessFault::FOR_EVER, EAccessFailure::Access);
}

// Refuses accesses from the middle of an operation on.
std::function<void(CModuleRig &)> RefuseAmid(EOperation eOperation)
{
  return [eOperation](CModuleRig &rig) {
    rig.Fault().Disarm();
    (void)rig.Do(eOperation);
    const uint64_t nMiddle = rig.Fault().GetCount() / 2;
    rig.Fault().Arm(nMiddle, CAccessFault::FOR_EVER, EAccessFailure::Access);
  };
}

void ConvertImages(CModuleRig &rig)
{
  rig.Camera().Output().Find<CSoftwareInteger>("OutputWidth")->OnRead([] { return 1; });
}

void ThrowOnMessage(CModuleRig &rig)
{
  rig.SetMessageHook([bThrown = false](int32_t nCode) mutable {
    if (nCode == PLUGIN_MSG_ACQUISITION_OFF && !std::exchange(bThrown, true)) {
      throw std::runtime_error("the host's own");
    }
  });
}

std::function<void(CModuleRig &)> Choose(const char *pFile)
{
  return [pFile](CModuleRig &rig) { rig.Answer().ChooseFile(*pFile == '\0' ? QString() : rig.Path(pFile)); };
}

void ChooseBrokenFile(CModuleRig &rig)
{
  QFile file(rig.Path("broken.ffc"));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("no table");
  rig.Answer().ChooseFile(file.fileName());
}

void Append(std::vector<SSituation> &listTo, std::vector<SSituation> listFrom)
{
  for (SSituation &stSituation : listFrom) {
    listTo.push_back(std::move(stSituation));
  }
}

std::vector<SSituation> ListEverywhere()
{
  using M = EMoment;
  const FnDo fnBright = Button("AcquisitionBrightFrame_Button");
  const FnDo fnLoad = Button("LoadPC_Button");
  const FnDo fnSave = Button("SavePC_Button");
  return {
    {"bright fails", M::Box, RefuseAmid(EOperation::Bright), fnBright},
    {"bright of a converted image", M::Box, ConvertImages, fnBright},
    {"an event before a bright field", M::Event, [](CModuleRig &) {}, fnBright},
    {"execution fails", M::Box, RefuseAll, Button("ExecuteShadingCorrection_Button"), true},
    {"loading a file", M::FileDialog, Choose("table.ffc"), fnLoad, true},
    {"loading no file", M::FileDialog, Choose(""), fnLoad},
    {"loading a broken file", M::Box, ChooseBrokenFile, fnLoad},
    {"saving a file", M::FileDialog, Choose("saved.ffc"), fnSave, true},
    {"saving over a file", M::FileDialog, Choose("table.ffc"), fnSave, true},
    {"saving no file", M::FileDialog, Choose(""), fnSave, true},
    {"hiding", M::Message, [](CModuleRig &) {},
     [](CModuleRig &rig, bool) { rig.Plugin().SlotProcessDemoMsg(MakePluginMsg(PLUGIN_MSG_HIDE_DIALOG)); }, false,
     false, PLUGIN_MSG_DIALOG_HIDDEN},
    {"showing", M::Message, [](CModuleRig &rig) { rig.Dialog()->hide(); },
     [](CModuleRig &rig, bool) { rig.Plugin().SlotProcessDemoMsg(MakePluginMsg(PLUGIN_MSG_SHOW_DIALOG)); }, false,
     false, PLUGIN_MSG_DIALOG_SHOWN},
    {"closing by the title bar", M::Message, [](CModuleRig &) {}, Button("ButtonClose"), false, false,
     PLUGIN_MSG_DIALOG_HIDDEN},
  };
}

std::vector<SSituation> ListSituations(EMode eMode)
{
  using M = EMoment;
  const FnDo fnDark = Button("AcquisitionDarkFrame_Button");
  const FnDo fnBright = Button("AcquisitionBrightFrame_Button");
  std::vector<SSituation> listAll = ListEverywhere();
  if (eMode != EMode::Vignetting) {
    Append(listAll, {
                      {"dark fails", M::Box, RefuseAmid(EOperation::Dark), fnDark},
                      {"dark of a converted image", M::Box, ConvertImages, fnDark},
                      {"an event before a dark field", M::Event, [](CModuleRig &) {}, fnDark},
                      {"the host throws in a dark field", M::Box, ThrowOnMessage, fnDark},
                      {"the host throws in a bright field", M::Box, ThrowOnMessage, fnBright},
                      {"within a bright field", M::Message, [](CModuleRig &) {}, fnBright, false, false,
                       PLUGIN_MSG_ACQUISITION_ON},
                    });
  }
  if (eMode != EMode::Host) {
    Append(listAll, {
                      {"frame count refused", M::Box, RefuseAll, Slider("AcquisitionFrame_Slider")},
                      {"preview refused", M::Box, RefuseAll, Button("PreviewcheckBox"), true},
                      {"loading flash fails", M::Box, RefuseAll, Button("LoadFlash_Button")},
                      {"saving flash fails", M::Box, RefuseAll, Button("SaveFlash_Button")},
                      {"saving a file fails", M::Box, RefuseAmid(EOperation::SaveFile), Button("SavePC_Button")},
                    });
  }
  if (eMode == EMode::FlatField) {
    Append(listAll, {
                      {"expected gray refused", M::Box, RefuseAll, Slider("ExpectGrayValue_Slider")},
                      {"expected gray stepped", M::Box, RefuseAll, StepSpinBox},
                      {"expected gray typed", M::Box, RefuseAll, TypeIntoSpinBox},
                    });
  }
  return listAll;
}

/// One camera, opened, and ended in the middle of a situation.
class CClosing {
public:
  CClosing(EMode eMode, EEnd eEnd, const SSituation &stSituation)
    : m_eEnd(eEnd), m_stSituation(stSituation), m_pParent(std::make_unique<QWidget>()), m_rig(eMode)
  {
    m_pParent->show();
    m_rig.SetParent(m_pParent.get());
  }

  void Run(bool bKey)
  {
    if (m_stSituation.bCorrected) {
      ASSERT_EQ(m_rig.Correct(), "");
    } else {
      ASSERT_EQ(m_rig.Open(), PLUGIN_STATUS_SUCCESS);
    }
    ASSERT_NO_FATAL_FAILURE(m_stSituation.fnPrepare(m_rig));
    const QPointer<QWidget> pDialog = m_rig.Dialog();
    ASSERT_NE(pDialog, nullptr);
    Watch();
    QEventLoop loop;
    QTimer::singleShot(0, [&] {
      m_stSituation.fnDo(m_rig, bKey);
      loop.quit();
    });
    loop.exec();
    EXPECT_TRUE(m_bEnded) << "the moment never came";
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    if (m_eEnd != EEnd::Reopen) {
      EXPECT_EQ(m_rig.Fault().GetCount(), 0U) << "the closed camera was touched";
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(pDialog, nullptr) << "the dialog is still there";
    if (m_eEnd == EEnd::Reopen) {
      ExpectThatItWorks();
    }
  }

private:
  void Watch()
  {
    switch (m_stSituation.eMoment) {
    case EMoment::Message:
      m_rig.SetMessageHook([this](int32_t nCode) {
        if (nCode == m_stSituation.nMessage) {
          End();
        }
      });
      break;
    case EMoment::Event: QTimer::singleShot(0, qApp, [this] { QTimer::singleShot(0, qApp, [this] { End(); }); }); break;
    default:
      m_rig.Answer().BeforeAnswer([this](QDialog &dialog) {
        const bool bFileDialog = qobject_cast<QFileDialog *>(&dialog) != nullptr;
        if (bFileDialog == (m_stSituation.eMoment == EMoment::FileDialog)) {
          End();
        }
      });
    }
  }

  void End()
  {
    if (std::exchange(m_bEnded, true)) {
      return;
    }
    m_rig.Fault().Disarm();
    switch (m_eEnd) {
    case EEnd::Uninitialise: m_rig.Close(); break;
    case EEnd::UninitialiseAndParent:
      m_rig.Close();
      m_pParent.reset();
      break;
    case EEnd::Parent: m_pParent.reset(); break;
    case EEnd::Reopen:
      m_rig.Close();
      EXPECT_EQ(m_rig.Open(), PLUGIN_STATUS_SUCCESS);
      break;
    case EEnd::Destroy: m_rig.Destroy(); break;
    }
    m_rig.Fault().Disarm();
  }

  void ExpectThatItWorks()
  {
    m_rig.SetMessageHook(nullptr);
    m_rig.Camera().Output().Find<CSoftwareInteger>("OutputWidth")->OnRead([this] {
      return m_rig.Camera().Integer("Width").Peek();
    });
    m_rig.SetStreaming(true); // which a host does for a camera that it opens
    EXPECT_EQ(m_rig.FindTrouble(), "");
    for (const EOperation eStep : {EOperation::Bright, EOperation::Execute}) {
      const SOutcome stOutcome = m_rig.Do(eStep);
      EXPECT_TRUE(stOutcome.listBoxes.empty()) << GetName(eStep) << ": " << stOutcome.Describe();
    }
  }

  const EEnd m_eEnd;
  const SSituation &m_stSituation;
  std::unique_ptr<QWidget> m_pParent;
  CModuleRig m_rig;
  bool m_bEnded = false;
};

class ClosedCamera : public testing::TestWithParam<std::tuple<EMode, EEnd>> {};

} // namespace

TEST_P(ClosedCamera, DoesNoHarmWhateverIsOnTheStack)
{
  const auto [eMode, eEnd] = GetParam();
  for (const SSituation &stSituation : ListSituations(eMode)) {
    for (const bool bKey : {false, true}) {
      if (bKey && !stSituation.bAllInputs) {
        continue;
      }
      SCOPED_TRACE(stSituation.strName + (bKey ? ", by key" : ", by mouse"));
      CClosing(eMode, eEnd, stSituation).Run(bKey);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Modes, ClosedCamera,
                         testing::Combine(testing::Values(EMode::Host, EMode::FlatField, EMode::Vignetting),
                                          testing::Values(EEnd::Uninitialise, EEnd::UninitialiseAndParent, EEnd::Parent,
                                                          EEnd::Reopen, EEnd::Destroy)),
                         [](const auto &stInfo) {
                           return std::string(GetName(std::get<0>(stInfo.param))) +
                                  END_NAMES[static_cast<std::size_t>(std::get<1>(stInfo.param))];
                         });
