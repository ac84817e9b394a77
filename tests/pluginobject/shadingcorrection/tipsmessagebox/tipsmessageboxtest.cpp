#include "pluginobject/shadingcorrection/tipsmessagebox/tipsmessagebox.h"

#include <functional>

#include <QApplication>
#include <QGroupBox>
#include <QLabel>
#include <QMetaMethod>
#include <QPushButton>
#include <QTimer>
#include <QTranslator>
#include <QVBoxLayout>
#include <QtTest>

#include <gtest/gtest.h>

#include "pluginobject/shadingcorrection/toolstitlebar.h"
#include "tests/pluginobject/shadingcorrection/failingcreation.h"

static void ResourcesAway()
{
  Q_CLEANUP_RESOURCE(ffcresources);
}

static void ResourcesBack()
{
  Q_INIT_RESOURCE(ffcresources);
}

namespace {

using EKind = CTipsMessageBox::EKind;

constexpr int BUTTON_SETS[] = {0x400, 0x14000, 0x14001, 0x402000, 0, 0x4000, 0x401};

QMessageBox::StandardButtons ToButtons(int nButtons)
{
  return QMessageBox::StandardButtons(QFlag(nButtons));
}

// The parts of a complete box.
struct SParts {
  explicit SParts(const CTipsMessageBox &box)
    : pTitleBar(box.findChild<QToolsTitleBar *>()),
      pGroup(box.findChild<QGroupBox *>(QStringLiteral("GroupMessageBoxMain"))),
      pTitle(box.findChild<QLabel *>(QStringLiteral("TitleContent")))
  {
    QLayout *pUpper = pGroup->layout()->itemAt(0)->layout();
    QLayout *pLower = pGroup->layout()->itemAt(1)->layout();
    pIcon = qobject_cast<QLabel *>(pUpper->itemAt(0)->widget());
    pMessage = qobject_cast<QLabel *>(pUpper->itemAt(1)->widget());
    pOK = qobject_cast<QPushButton *>(pLower->itemAt(1)->widget());
    pCancel = qobject_cast<QPushButton *>(pLower->itemAt(2)->widget());
  }

  // The texts of the buttons that are not hidden.
  QString GetButtonTexts() const
  {
    QStringList listTexts;
    for (const QPushButton *pButton : {pOK, pCancel}) {
      if (!pButton->isHidden()) {
        listTexts << pButton->text();
      }
    }
    return listTexts.join(QLatin1Char('|'));
  }

  QToolsTitleBar *pTitleBar;
  QGroupBox *pGroup;
  QLabel *pTitle;
  QLabel *pIcon = nullptr;
  QLabel *pMessage = nullptr;
  QPushButton *pOK = nullptr;
  QPushButton *pCancel = nullptr;
};

enum class EAnswer { OK, Cancel, CloseButton, Escape };

// Runs a box that opens modally and answers it. look sees it first.
int Answer(const std::function<int()> &run, EAnswer eAnswer,
           const std::function<void(CTipsMessageBox &)> &look = nullptr)
{
  bool bAnswered = false;
  QTimer::singleShot(0, qApp, [&] {
    auto *pBox = qobject_cast<CTipsMessageBox *>(QApplication::activeModalWidget());
    ASSERT_NE(pBox, nullptr);
    if (look) {
      look(*pBox);
    }
    const SParts stParts(*pBox);
    auto *pClose = pBox->findChild<QPushButton *>(QStringLiteral("ButtonClose"));
    bAnswered = true;
    switch (eAnswer) {
    case EAnswer::OK: QTest::mouseClick(stParts.pOK, Qt::LeftButton); break;
    case EAnswer::Cancel: QTest::mouseClick(stParts.pCancel, Qt::LeftButton); break;
    case EAnswer::CloseButton: QTest::mouseClick(pClose, Qt::LeftButton); break;
    case EAnswer::Escape: QTest::keyClick(pBox, Qt::Key_Escape); break;
    }
    EXPECT_FALSE(pBox->isVisible());
    pBox->close(); // never hang the tests
  });
  const int nResult = run();
  EXPECT_TRUE(bAnswered);
  return nResult;
}

TEST(TipsMessageBox, ShowsTheButtonsOfItsSet)
{
  const char *const apTexts[] = {"OK", "Yes|No", "continue|Canel", "OK|Canel", "", "", ""};
  for (int i = 0; i < 7; ++i) {
    const CTipsMessageBox box("message", "title", EKind::Tips, ToButtons(BUTTON_SETS[i]));
    EXPECT_EQ(SParts(box).GetButtonTexts(), QLatin1String(apTexts[i])) << BUTTON_SETS[i];
  }
}

TEST(TipsMessageBox, ButtonSetsAreThoseOfTheStandardBox)
{
  EXPECT_EQ(static_cast<int>(QMessageBox::Ok), 0x400);
  EXPECT_EQ(static_cast<int>(QMessageBox::Yes | QMessageBox::No), 0x14000);
}

TEST(TipsMessageBox, TranslatesButtonsAndDefaultTitles)
{
  QTranslator translator;
  ASSERT_TRUE(translator.load(QStringLiteral(":/lumalevel_zh.qm")));
  ASSERT_TRUE(QCoreApplication::installTranslator(&translator));
  const CTipsMessageBox box("message", "", EKind::Warning, ToButtons(0x14001));
  EXPECT_EQ(SParts(box).GetButtonTexts(),
            translator.translate("QObject", "continue") + QLatin1Char('|') + translator.translate("QObject", "Canel"));
  EXPECT_EQ(SParts(box).pTitle->text(), translator.translate("CTipsMessageBox", "Warning"));
  EXPECT_NE(SParts(box).pTitle->text(), QStringLiteral("Warning"));
}

TEST(TipsMessageBox, AnEmptyTitleGivesWayToTheKindsOwn)
{
  const char *const apTitles[] = {"", "Tips", "Warning", "Error", ""};
  for (int i = 0; i < 5; ++i) {
    const CTipsMessageBox box("message", "", static_cast<EKind>(i), QMessageBox::Ok);
    EXPECT_EQ(SParts(box).pTitle->text(), QLatin1String(apTitles[i])) << i;
  }
}

TEST(TipsMessageBox, AGivenTitleIsNeverReplaced)
{
  for (int i = -1; i < 5; ++i) {
    const CTipsMessageBox box("message", "Mine", static_cast<EKind>(i), QMessageBox::Ok);
    EXPECT_EQ(SParts(box).pTitle->text(), QStringLiteral("Mine")) << i;
    EXPECT_EQ(SParts(box).pTitle->font().pointSize(), 8);
  }
}

TEST(TipsMessageBox, ShowsTheIconOfItsKind)
{
  const char *const apIcons[] = {"TipBig", "WarningBig", "ErrorBig"};
  for (int i = 1; i <= 3; ++i) {
    const CTipsMessageBox box("message", "", static_cast<EKind>(i), QMessageBox::Ok);
    const SParts stParts(box);
    const QPixmap pixmapExpected(QStringLiteral(":/skin/images/%1.png").arg(QLatin1String(apIcons[i - 1])));
    ASSERT_FALSE(pixmapExpected.isNull()) << i;
    EXPECT_FALSE(stParts.pIcon->isHidden());
    EXPECT_TRUE(stParts.pIcon->hasScaledContents());
    EXPECT_EQ(stParts.pIcon->pixmap(Qt::ReturnByValue).toImage(), pixmapExpected.toImage());
  }
}

TEST(TipsMessageBox, OtherKindsHaveNoIcon)
{
  for (const int nKind : {0, 4, -3}) {
    const CTipsMessageBox box("message", "", static_cast<EKind>(nKind), QMessageBox::Ok);
    EXPECT_TRUE(SParts(box).pIcon->isHidden()) << nKind;
  }
}

TEST(TipsMessageBox, HasItsNamesAndSizes)
{
  const CTipsMessageBox box("Some message", "", EKind::Error, QMessageBox::Ok);
  const SParts stParts(box);
  EXPECT_STREQ(box.metaObject()->className(), "CTipsMessageBox");
  EXPECT_EQ(box.objectName(), QStringLiteral("TipsMessageBox"));
  EXPECT_TRUE(box.windowFlags().testFlag(Qt::FramelessWindowHint));
  for (const QPushButton *pButton : {stParts.pOK, stParts.pCancel}) {
    EXPECT_EQ(pButton->minimumSize(), QSize(90, 32));
    EXPECT_EQ(pButton->maximumSize(), QSize(90, 32));
  }
  EXPECT_EQ(stParts.pMessage->text(), QStringLiteral("Some message"));
  EXPECT_EQ(stParts.pMessage->maximumWidth(), 450);
  EXPECT_TRUE(stParts.pMessage->wordWrap());
  EXPECT_EQ(stParts.pIcon->minimumSize(), QSize(32, 32));
  EXPECT_EQ(stParts.pIcon->maximumSize(), QSize(32, 32));
  EXPECT_EQ(stParts.pTitleBar->parentWidget(), &box);
  EXPECT_EQ(stParts.pTitleBar->minimumHeight(), 30);
  EXPECT_EQ(stParts.pTitleBar->maximumHeight(), 30);
  EXPECT_EQ(box.layout()->indexOf(stParts.pTitleBar), -1);
  for (const char *pHidden : {"ButtonMin", "ButtonRestore", "ButtonMax"}) {
    EXPECT_TRUE(box.findChild<QPushButton *>(QLatin1String(pHidden))->isHidden()) << pHidden;
  }
  EXPECT_FALSE(box.findChild<QPushButton *>(QStringLiteral("ButtonClose"))->isHidden());
}

// Texts of cameras and of the system stand in messages.
TEST(TipsMessageBox, ShowsMarkupInAMessageAsItIsWritten)
{
  const QString strMessage = QStringLiteral("the node <b>Gain</b> &lt; 3");
  const CTipsMessageBox box(strMessage, "", EKind::Error, QMessageBox::Ok);
  EXPECT_EQ(SParts(box).pMessage->text(), strMessage);
  EXPECT_EQ(SParts(box).pMessage->textFormat(), Qt::PlainText);
}

void ExpectBox(QLayout *pLayout, QBoxLayout::Direction eDirection, int nMargin, int nSpacing)
{
  auto *pBox = qobject_cast<QBoxLayout *>(pLayout);
  ASSERT_NE(pBox, nullptr);
  EXPECT_EQ(pBox->direction(), eDirection);
  EXPECT_EQ(pBox->contentsMargins(), QMargins(nMargin, nMargin, nMargin, nMargin));
  EXPECT_EQ(pBox->spacing(), nSpacing);
}

TEST(TipsMessageBox, LaysTheMessageOutAboveCentredButtons)
{
  const CTipsMessageBox box("message", "", EKind::Error, QMessageBox::Ok);
  const SParts stParts(box);
  ExpectBox(stParts.pGroup->layout(), QBoxLayout::TopToBottom, 16, 16);
  ExpectBox(stParts.pGroup->layout()->itemAt(0)->layout(), QBoxLayout::LeftToRight, 0, 16);
  QLayout *pLower = stParts.pGroup->layout()->itemAt(1)->layout();
  ExpectBox(pLower, QBoxLayout::LeftToRight, 0, 16);
  ASSERT_EQ(pLower->count(), 4);
  for (const int nIndex : {0, 3}) {
    QSpacerItem *pSpacer = pLower->itemAt(nIndex)->spacerItem();
    ASSERT_NE(pSpacer, nullptr);
    EXPECT_EQ(pSpacer->sizeHint(), QSize(0, 0));
    EXPECT_EQ(pSpacer->sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    EXPECT_EQ(pSpacer->sizePolicy().verticalPolicy(), QSizePolicy::Minimum);
  }
  EXPECT_EQ(box.layout()->spacing(), 0);
  ASSERT_EQ(box.layout()->count(), 2);
  EXPECT_EQ(box.layout()->itemAt(0)->sizeHint().height(), 30);
  QLayout *pFrame = box.layout()->itemAt(1)->layout();
  ExpectBox(pFrame, QBoxLayout::TopToBottom, 0, 0);
  EXPECT_EQ(pFrame->itemAt(0)->widget(), stParts.pGroup);
}

TEST(TipsMessageBox, DeclaresItsSlotsInOrder)
{
  const QMetaObject &meta = CTipsMessageBox::staticMetaObject;
  ASSERT_EQ(meta.methodCount() - meta.methodOffset(), 2);
  EXPECT_STREQ(meta.method(meta.methodOffset()).methodSignature().constData(), "__SlotClickedOK()");
  EXPECT_STREQ(meta.method(meta.methodOffset() + 1).methodSignature().constData(), "__SlotClickedCancel()");
}

TEST(TipsMessageBox, TheTitleBarStaysAsWideAsTheBox)
{
  CTipsMessageBox box("message", "", EKind::Error, QMessageBox::Ok);
  box.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&box));
  const QToolsTitleBar &bar = *SParts(box).pTitleBar;
  for (const int nWidth : {600, 520}) {
    box.resize(nWidth, 240);
    EXPECT_TRUE(QTest::qWaitFor([&] { return bar.geometry() == QRect(0, 0, nWidth, 30); })) << nWidth;
  }
}

TEST(TipsMessageBox, EveryFormGivesOneForOKAndZeroOtherwise)
{
  const QMessageBox::StandardButtons nYesNo = QMessageBox::Yes | QMessageBox::No;
  const QString strMessage = QStringLiteral("message");
  const QString strTitle = QStringLiteral("title");
  const std::function<int()> afnForms[] = {
    [&] { return CTipsMessageBox::Warning(nullptr, strTitle, strMessage, nYesNo, QMessageBox::No); },
    [&] { return CTipsMessageBox::Tips(nullptr, strTitle, strMessage, nYesNo, QMessageBox::No); },
    [&] { return CTipsMessageBox::Error(nullptr, strTitle, strMessage, nYesNo, QMessageBox::No); },
    [&] { return CTipsMessageBox::Warning(strMessage, strTitle, nYesNo); },
    [&] { return CTipsMessageBox::Tips(strMessage, strTitle, nYesNo); },
    [&] { return CTipsMessageBox::Error(strMessage, strTitle, nYesNo); },
    [&] { return CTipsMessageBox::Error("message", "title", nYesNo); },
    [&] { return CTipsMessageBox::Tips("message", "title", nYesNo); },
  };
  for (const std::function<int()> &fnForm : afnForms) {
    EXPECT_EQ(Answer(fnForm, EAnswer::OK), 1);
    EXPECT_EQ(Answer(fnForm, EAnswer::Cancel), 0);
    EXPECT_EQ(Answer(fnForm, EAnswer::CloseButton), 0);
    EXPECT_EQ(Answer(fnForm, EAnswer::Escape), 0);
  }
}

TEST(TipsMessageBox, EveryFormShowsItsKindTitleAndMessage)
{
  const QString strMessage = QString::fromUtf8("text \xC3\xA9");
  const char *pMessage = "text \xC3\xA9";
  const struct {
    const char *pTitle;
    std::function<int()> run;
  } astForms[] = {
    {"Warning", [&] { return CTipsMessageBox::Warning(nullptr, QString(), strMessage); }},
    {"Tips", [&] { return CTipsMessageBox::Tips(nullptr, QString(), strMessage); }},
    {"Error", [&] { return CTipsMessageBox::Error(nullptr, QString(), strMessage); }},
    {"Warning", [&] { return CTipsMessageBox::Warning(strMessage, QString(), QMessageBox::Ok); }},
    {"Tips", [&] { return CTipsMessageBox::Tips(strMessage, QString(), QMessageBox::Ok); }},
    {"Error", [&] { return CTipsMessageBox::Error(strMessage, QString(), QMessageBox::Ok); }},
    {"Error", [&] { return CTipsMessageBox::Error(pMessage, "", QMessageBox::Ok); }},
    {"Tips", [&] { return CTipsMessageBox::Tips(pMessage, "", QMessageBox::Ok); }},
  };
  for (const auto &stForm : astForms) {
    const auto check = [&](CTipsMessageBox &box) {
      const SParts stParts(box);
      EXPECT_EQ(stParts.pTitle->text(), QLatin1String(stForm.pTitle));
      EXPECT_EQ(stParts.pMessage->text(), strMessage);
      EXPECT_EQ(stParts.GetButtonTexts(), QStringLiteral("OK"));
      EXPECT_TRUE(box.isModal());
    };
    EXPECT_EQ(Answer(stForm.run, EAnswer::OK, check), 1);
    EXPECT_EQ(Answer(stForm.run, EAnswer::CloseButton), 0);
  }
}

TEST(TipsMessageBox, ParentAndDefaultButtonOfTheFullFormsAreNotUsed)
{
  QWidget parent;
  const auto run = [&] {
    return CTipsMessageBox::Error(&parent, "title", "message", QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
  };
  Answer(run, EAnswer::OK, [](CTipsMessageBox &box) {
    EXPECT_EQ(box.parentWidget(), nullptr);
    EXPECT_FALSE(SParts(box).pCancel->isDefault());
  });
}

TEST(TipsMessageBox, ABoxWithoutButtonsIsLeftByClosingIt)
{
  const auto run = [] { return CTipsMessageBox::Tips(QString("message"), QString(), QMessageBox::NoButton); };
  const auto look = [](CTipsMessageBox &box) { EXPECT_TRUE(SParts(box).GetButtonTexts().isEmpty()); };
  EXPECT_EQ(Answer(run, EAnswer::CloseButton, look), 0);
  EXPECT_EQ(Answer(run, EAnswer::Escape, look), 0);
}

TEST(TipsMessageBox, WearsTheStyleSheetOfTheResources)
{
  const CTipsMessageBox box("message", "", EKind::Tips, QMessageBox::Ok);
  EXPECT_TRUE(box.styleSheet().contains(QStringLiteral("GroupMessageBoxMain")));
}

TEST(TipsMessageBox, ShownButtonsHaveTheirSizeWhateverStyleSheetTheViewerHas)
{
  for (const char *pSheet : {"", "QPushButton { min-width: 120px; min-height: 48px; margin: 3px; padding: 9px; }",
                             "QPushButton { max-width: 40px; max-height: 16px; border: 5px solid red; }"}) {
    SCOPED_TRACE(pSheet);
    qApp->setStyleSheet(QString::fromLatin1(pSheet));
    CTipsMessageBox box("message", "", EKind::Warning, ToButtons(0x14000));
    box.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&box));
    const SParts stParts(box);
    for (const QPushButton *pButton : {stParts.pOK, stParts.pCancel}) {
      EXPECT_EQ(pButton->size(), QSize(90, 32)) << qPrintable(pButton->text());
      EXPECT_EQ(pButton->minimumSize(), QSize(90, 32)) << qPrintable(pButton->text());
      EXPECT_EQ(pButton->maximumSize(), QSize(90, 32)) << qPrintable(pButton->text());
    }
    EXPECT_EQ(box.findChild<QPushButton *>(QStringLiteral("ButtonClose"))->size(), QSize(30, 28));
  }
}

QStringList s_listDebugLines;

void KeepDebugLine(QtMsgType eType, const QMessageLogContext &, const QString &strLine)
{
  if (eType == QtDebugMsg) {
    s_listDebugLines << strLine;
  }
}

// Builds, shows and closes a box whose nFailing-th creation fails, keeping the debug lines.
// \return whether it had that many
bool BuildWithFailure(int nFailing)
{
  const QtMessageHandler fnBefore = qInstallMessageHandler(KeepDebugLine);
  bool bFailed = false;
  {
    CFailingCreation failing(nFailing);
    CTipsMessageBox box("message", "", EKind::Error, ToButtons(0x14000));
    bFailed = failing.HasFailed();
    box.show();
    QCoreApplication::processEvents();
    box.close();
    EXPECT_EQ(box.result(), 0);
  }
  qInstallMessageHandler(fnBefore);
  return bFailed;
}

TEST(TipsMessageBox, EachFailedCreationIsLoggedOnceWithALineOfItsOwn)
{
  s_listDebugLines.clear();
  int nCreations = 0;
  while (BuildWithFailure(nCreations + 1)) {
    ++nCreations;
  }
  EXPECT_EQ(nCreations, 18) << "eleven of the box and seven within its title bar";
  ASSERT_EQ(s_listDebugLines.size(), 11);
  const QRegularExpression pattern(
    QStringLiteral(R"(^src\\pluginobject\\vs2008\\shadingcorrection\\tipsmessagebox \( (\d+) \) )"
                   R"(CTipsMessageBox::__InitUIModule  warning: Null Pointer!$)"));
  int nLastLine = 0;
  for (const QString &strLine : s_listDebugLines) {
    const QRegularExpressionMatch match = pattern.match(strLine);
    ASSERT_TRUE(match.hasMatch()) << qPrintable(strLine);
    EXPECT_GT(match.captured(1).toInt(), nLastLine);
    nLastLine = match.captured(1).toInt();
  }
}

TEST(TipsMessageBox, APartialBoxStillRuns)
{
  // The first button, and the upper row.
  for (const int nFailing : {1, 6 + 7}) {
    for (const EKind eKind : {EKind::Error, EKind::Plain}) {
      CFailingCreation failing(nFailing);
      CTipsMessageBox box("message", "", eKind, QMessageBox::Ok);
      ASSERT_TRUE(failing.HasFailed());
      QTimer::singleShot(0, &box, [&box] { QTest::keyClick(&box, Qt::Key_Escape); });
      EXPECT_EQ(box.exec(), 0);
      EXPECT_TRUE(box.styleSheet().isEmpty()) << "the steps after the failed one are left out";
    }
  }
}

TEST(TipsMessageBox, WithoutItsStyleSheetABoxIsPlainAndRuns)
{
  ResourcesAway();
  CTipsMessageBox box("message", "", EKind::Error, QMessageBox::Ok);
  ResourcesBack();
  EXPECT_TRUE(box.styleSheet().isEmpty());
  QTimer::singleShot(0, &box, [&box] { QTest::mouseClick(SParts(box).pOK, Qt::LeftButton); });
  EXPECT_EQ(box.exec(), 1);
}

} // namespace
