#include "pluginobject/shadingcorrection/toolstitlebar.h"

#include <memory>

#include <QDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QMetaMethod>
#include <QPushButton>
#include <QScreen>
#include <QSignalSpy>
#include <QTextDocument>
#include <QtTest>

#include <gtest/gtest.h>

#include "tests/pluginobject/shadingcorrection/failingcreation.h"
#include "tests/pluginobject/shadingcorrection/mousemove.h"

namespace {

constexpr const char *BUTTON_NAMES[] = {"ButtonMin", "ButtonRestore", "ButtonMax", "ButtonClose"};

// A frameless window of 300 x 200 with a title bar.
class ToolsTitleBar : public testing::Test {
protected:
  ToolsTitleBar() : m_window(nullptr, Qt::FramelessWindowHint), m_pBar(new QToolsTitleBar(&m_window))
  {
    m_window.resize(300, 200);
  }

  void ShowAt(const QPoint &posWindow)
  {
    m_window.move(posWindow);
    m_window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&m_window));
    m_window.move(posWindow);
    ASSERT_EQ(m_window.pos(), posWindow);
  }

  QPushButton *GetButton(const char *pName) const { return m_pBar->findChild<QPushButton *>(QLatin1String(pName)); }

  QLabel *GetTitle() const { return m_pBar->findChild<QLabel *>(QStringLiteral("TitleContent")); }

  QLabel *GetIcon() const { return qobject_cast<QLabel *>(m_pBar->layout()->itemAt(0)->widget()); }

  // The names of the buttons that are not hidden, in order, without "Button".
  QString GetShownButtons() const
  {
    QString strShown;
    for (const char *pName : BUTTON_NAMES) {
      strShown += GetButton(pName)->isHidden() ? QString() : QString::fromLatin1(pName).mid(6) + QLatin1Char(' ');
    }
    return strShown.trimmed();
  }

  void MoveCursorTo(const QPoint &posGlobal) { DragMouseTo(*m_pBar, posGlobal); }

  // \return where the cursor was when it pressed the bar
  QPoint Press()
  {
    const QPoint posBar(40, 15);
    QTest::mousePress(m_pBar, Qt::LeftButton, Qt::NoModifier, posBar);
    return m_pBar->mapToGlobal(posBar);
  }

  void Release() { QTest::mouseRelease(m_pBar, Qt::LeftButton, Qt::NoModifier, QPoint(40, 15)); }

  QDialog m_window;
  QToolsTitleBar *m_pBar;
};

TEST_F(ToolsTitleBar, HasItsNamesAndSizes)
{
  EXPECT_EQ(m_pBar->objectName(), QStringLiteral("QToolsTitleBar"));
  EXPECT_EQ(m_pBar->minimumHeight(), 30);
  EXPECT_EQ(m_pBar->maximumHeight(), 30);
  EXPECT_TRUE(m_pBar->windowFlags().testFlag(Qt::FramelessWindowHint));
  EXPECT_FALSE(m_pBar->isWindow());
  ASSERT_NE(GetTitle(), nullptr);
  EXPECT_EQ(GetTitle()->minimumSize(), QSize(0, 28));
  EXPECT_EQ(GetTitle()->maximumSize(), QSize(16777215, 28));
  EXPECT_EQ(GetTitle()->sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
  EXPECT_EQ(GetTitle()->sizePolicy().verticalPolicy(), QSizePolicy::Fixed);
  EXPECT_EQ(GetIcon()->minimumSize(), QSize(30, 28));
  EXPECT_EQ(GetIcon()->maximumSize(), QSize(30, 28));
  EXPECT_EQ(GetIcon()->alignment(), Qt::AlignCenter);
  for (const char *pName : BUTTON_NAMES) {
    ASSERT_NE(GetButton(pName), nullptr) << pName;
    EXPECT_EQ(GetButton(pName)->minimumSize(), QSize(30, 28)) << pName;
    EXPECT_EQ(GetButton(pName)->maximumSize(), QSize(30, 28)) << pName;
  }
}

TEST_F(ToolsTitleBar, LaysItsChildrenOutFromIconToClose)
{
  auto *pLayout = qobject_cast<QHBoxLayout *>(m_pBar->layout());
  ASSERT_NE(pLayout, nullptr);
  EXPECT_EQ(pLayout->contentsMargins(), QMargins(1, 1, 1, 1));
  EXPECT_EQ(pLayout->spacing(), 0);
  ASSERT_EQ(pLayout->count(), 6);
  EXPECT_EQ(pLayout->itemAt(1)->widget(), GetTitle());
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(pLayout->itemAt(i + 2)->widget(), GetButton(BUTTON_NAMES[i]));
  }
}

TEST_F(ToolsTitleBar, DeclaresItsSignalsAndSlotsInOrder)
{
  const char *const apExpected[] = {"signalButtonMinClicked()", "signalButtonRestoreClicked()",
                                    "signalButtonMaxClicked()", "signalButtonCloseClicked()",
                                    "onButtonMinClicked()",     "onButtonRestoreClicked()",
                                    "onButtonMaxClicked()",     "onButtonCloseClicked()"};
  const QMetaObject &meta = QToolsTitleBar::staticMetaObject;
  ASSERT_EQ(meta.methodCount() - meta.methodOffset(), 8);
  for (int i = 0; i < 8; ++i) {
    const QMetaMethod method = meta.method(meta.methodOffset() + i);
    EXPECT_STREQ(method.methodSignature().constData(), apExpected[i]);
    EXPECT_EQ(method.methodType(), i < 4 ? QMetaMethod::Signal : QMetaMethod::Slot);
  }
}

TEST_F(ToolsTitleBar, ButtonsDoNotTakeTheKeyboardFromTheWindow)
{
  for (const char *pName : BUTTON_NAMES) {
    EXPECT_EQ(GetButton(pName)->focusPolicy(), Qt::NoFocus) << pName;
    EXPECT_FALSE(GetButton(pName)->autoDefault()) << pName;
  }
}

TEST_F(ToolsTitleBar, ShowsOrHidesTheIcon)
{
  m_pBar->setTitleIcon(false, QString());
  EXPECT_TRUE(GetIcon()->isHidden());
  EXPECT_TRUE(GetIcon()->styleSheet().isEmpty());
  m_pBar->setTitleIcon(true, QStringLiteral(":/skin/images/TipBig.png"));
  EXPECT_FALSE(GetIcon()->isHidden());
  EXPECT_EQ(GetIcon()->styleSheet(), QStringLiteral("background-color:#3c3f3f;"));
  EXPECT_EQ(GetIcon()->pixmap(Qt::ReturnByValue).size(), QSize(32, 32));
}

TEST_F(ToolsTitleBar, ShowsTheTitleInTheGivenPointSizeAndAsToolTip)
{
  m_pBar->setTitleContent(QStringLiteral("Some title"), 8);
  EXPECT_EQ(GetTitle()->text(), QStringLiteral("Some title"));
  EXPECT_EQ(GetTitle()->toolTip(), QStringLiteral("Some title"));
  EXPECT_EQ(GetTitle()->font().pointSize(), 8);
  m_pBar->setTitleContent(QString(), 14);
  EXPECT_TRUE(GetTitle()->text().isEmpty());
  EXPECT_EQ(GetTitle()->font().pointSize(), 14);
}

TEST_F(ToolsTitleBar, ShowsMarkupInATitleAsItIsWritten)
{
  for (const char *pTitle : {"a <b>bold</b> name", "<img src='file:///etc/hostname'>", "1 < 2", "a &lt;b&gt;", "x & y",
                             "<b>", "&lt;<i>x</i>"}) {
    const QString strTitle = QString::fromLatin1(pTitle);
    m_pBar->setTitleContent(strTitle, 8);
    EXPECT_EQ(GetTitle()->text(), strTitle);
    EXPECT_EQ(GetTitle()->textFormat(), Qt::PlainText);
    QString strTip = GetTitle()->toolTip();
    if (Qt::mightBeRichText(strTip)) {
      QTextDocument document;
      document.setHtml(strTip);
      strTip = document.toPlainText();
    }
    EXPECT_EQ(strTip, strTitle);
  }
}

TEST_F(ToolsTitleBar, HidesTheButtonsThatItsTypeDoesNotHave)
{
  EXPECT_EQ(GetShownButtons(), QStringLiteral("Min Restore Max Close")) << "before a type is set";
  m_pBar->setButtonType(7);
  EXPECT_EQ(GetShownButtons(), QStringLiteral("Min Restore Max Close"));
  m_pBar->setButtonType(1);
  EXPECT_EQ(GetShownButtons(), QStringLiteral("Min Max Close"));
  m_pBar->setButtonType(0);
  EXPECT_EQ(GetShownButtons(), QStringLiteral("Min Close"));
  m_pBar->setButtonType(-1);
  EXPECT_EQ(GetShownButtons(), QStringLiteral("Min Close"));
  m_pBar->setButtonType(2);
  EXPECT_EQ(GetShownButtons(), QStringLiteral("Close"));
}

TEST_F(ToolsTitleBar, FixesItsWidth)
{
  m_pBar->setTitleWidth(123);
  EXPECT_EQ(m_pBar->minimumWidth(), 123);
  EXPECT_EQ(m_pBar->maximumWidth(), 123);
}

TEST_F(ToolsTitleBar, KeepsTheWidthOfItsWindowLessTheBorder)
{
  m_pBar->setTitleWidth(10);
  ShowAt({20, 20});
  EXPECT_TRUE(QTest::qWaitFor([this] { return m_pBar->width() == 300; }));
  m_window.resize(420, 200);
  EXPECT_TRUE(QTest::qWaitFor([this] { return m_pBar->width() == 420; }));
  m_pBar->setWindowBorderWidth(6);
  m_window.resize(250, 200);
  EXPECT_TRUE(QTest::qWaitFor([this] { return m_pBar->width() == 244; }));
}

TEST_F(ToolsTitleBar, PaintsTheBackgroundOfAStyleSheet)
{
  m_window.setStyleSheet(QStringLiteral("QToolsTitleBar { background-color: #102030; }"));
  ShowAt({20, 20});
  EXPECT_EQ(m_pBar->grab().toImage().pixelColor(0, 15), QColor(0x10, 0x20, 0x30));
}

TEST_F(ToolsTitleBar, GivesBackTheSavedGeometryAsAPair)
{
  m_pBar->saveRestoreInfo({12, -34}, {560, 652});
  QPoint posWindow;
  QSize sizeWindow;
  m_pBar->getRestoreInfo(posWindow, sizeWindow);
  EXPECT_EQ(posWindow, QPoint(12, -34));
  EXPECT_EQ(sizeWindow, QSize(560, 652));
}

TEST_F(ToolsTitleBar, ADragMovesTheWindow)
{
  m_pBar->setButtonType(2);
  ShowAt({100, 100});
  const QPoint posStart = Press();
  MoveCursorTo(posStart + QPoint(30, 12));
  EXPECT_EQ(m_window.pos(), QPoint(130, 112));
  MoveCursorTo(posStart + QPoint(25, -40));
  EXPECT_EQ(m_window.pos(), QPoint(125, 60));
}

TEST_F(ToolsTitleBar, ADragByTheTitleTextMovesTheWindowToo)
{
  ShowAt({100, 100});
  const QPoint posTitle = GetTitle()->rect().center();
  QTest::mousePress(GetTitle(), Qt::LeftButton, Qt::NoModifier, posTitle);
  DragMouseTo(*GetTitle(), GetTitle()->mapToGlobal(posTitle + QPoint(9, 7)));
  EXPECT_EQ(m_window.pos(), QPoint(109, 107));
}

TEST_F(ToolsTitleBar, ReleasingEndsTheDrag)
{
  m_pBar->setButtonType(2);
  ShowAt({100, 100});
  MoveCursorTo({150, 130});
  EXPECT_EQ(m_window.pos(), QPoint(100, 100)) << "no drag without a press";
  const QPoint posStart = Press();
  Release();
  MoveCursorTo(posStart + QPoint(30, 30));
  EXPECT_EQ(m_window.pos(), QPoint(100, 100));
}

TEST_F(ToolsTitleBar, ADragInTheBottomOfTheWorkAreaGoesSidewaysOnly)
{
  m_pBar->setButtonType(2);
  ShowAt({100, 100});
  const int nLimit = m_window.screen()->availableGeometry().bottom() - 50;
  const QPoint posStart = Press();
  MoveCursorTo({posStart.x() + 10, nLimit});
  EXPECT_EQ(m_window.pos(), QPoint(110, 100));
  MoveCursorTo({posStart.x() - 5, nLimit + 40});
  EXPECT_EQ(m_window.pos(), QPoint(95, 100));
}

TEST_F(ToolsTitleBar, ADragJustAboveTheBottomMovesBothWays)
{
  m_pBar->setButtonType(2);
  ShowAt({100, 100});
  const int nLimit = m_window.screen()->availableGeometry().bottom() - 50;
  const QPoint posStart = Press();
  MoveCursorTo({posStart.x() + 10, nLimit - 1});
  EXPECT_EQ(m_window.pos(), QPoint(110, 100 + nLimit - 1 - posStart.y()));
}

TEST_F(ToolsTitleBar, AMaximizedWindowCannotBeDraggedWithButtonTypeOne)
{
  m_pBar->setButtonType(1);
  ShowAt({100, 100});
  const QPoint posStart = Press();
  MoveCursorTo(posStart + QPoint(5, 5));
  EXPECT_EQ(m_window.pos(), QPoint(105, 105));
  Release();
  GetButton("ButtonMax")->click();
  const QPoint posMaximized = m_window.pos();
  MoveCursorTo(Press() + QPoint(5, 5));
  EXPECT_EQ(m_window.pos(), posMaximized);
}

TEST_F(ToolsTitleBar, ADoubleClickMaximizesAndRestoresWithButtonTypeOne)
{
  m_pBar->setButtonType(1);
  ShowAt({100, 100});
  QTest::mouseDClick(m_pBar, Qt::LeftButton, Qt::NoModifier, QPoint(40, 15));
  EXPECT_TRUE(m_window.isMaximized());
  EXPECT_EQ(GetShownButtons(), QStringLiteral("Min Restore Close"));
  QTest::mouseDClick(m_pBar, Qt::LeftButton, Qt::NoModifier, QPoint(40, 15));
  EXPECT_FALSE(m_window.isMaximized());
  EXPECT_EQ(GetShownButtons(), QStringLiteral("Min Max Close"));
}

TEST_F(ToolsTitleBar, IsOfButtonTypeOneWithoutABorderUntilItIsToldOtherwise)
{
  ShowAt({100, 100});
  EXPECT_TRUE(QTest::qWaitFor([this] { return m_pBar->width() == m_window.width(); }));
  QTest::mouseDClick(m_pBar, Qt::LeftButton, Qt::NoModifier, QPoint(40, 15));
  EXPECT_TRUE(m_window.isMaximized());
  EXPECT_EQ(GetShownButtons(), QStringLiteral("Min Restore Close"));
}

TEST_F(ToolsTitleBar, ADoubleClickDoesNothingWithOtherButtonTypes)
{
  ShowAt({100, 100});
  for (const int nType : {0, 2, 5}) {
    m_pBar->setButtonType(nType);
    const QString strShown = GetShownButtons();
    QTest::mouseDClick(m_pBar, Qt::LeftButton, Qt::NoModifier, QPoint(40, 15));
    EXPECT_FALSE(m_window.isMaximized()) << nType;
    EXPECT_EQ(GetShownButtons(), strShown) << nType;
  }
}

TEST_F(ToolsTitleBar, TheMaximizeAndRestoreButtonsTakeTurns)
{
  m_pBar->setButtonType(1);
  ShowAt({100, 100});
  QSignalSpy spyMax(m_pBar, &QToolsTitleBar::signalButtonMaxClicked);
  QSignalSpy spyRestore(m_pBar, &QToolsTitleBar::signalButtonRestoreClicked);
  QTest::mouseClick(GetButton("ButtonMax"), Qt::LeftButton);
  EXPECT_TRUE(m_window.isMaximized());
  EXPECT_EQ(GetShownButtons(), QStringLiteral("Min Restore Close"));
  EXPECT_EQ(spyMax.count(), 1);
  EXPECT_EQ(spyRestore.count(), 0);
  QTest::mouseClick(GetButton("ButtonRestore"), Qt::LeftButton);
  EXPECT_FALSE(m_window.isMaximized());
  EXPECT_EQ(GetShownButtons(), QStringLiteral("Min Max Close"));
  EXPECT_EQ(spyRestore.count(), 1);
}

TEST_F(ToolsTitleBar, TheMinimizeButtonMinimizesTheWindow)
{
  ShowAt({100, 100});
  QSignalSpy spyMin(m_pBar, &QToolsTitleBar::signalButtonMinClicked);
  QTest::mouseClick(GetButton("ButtonMin"), Qt::LeftButton);
  EXPECT_TRUE(m_window.isMinimized());
  EXPECT_EQ(spyMin.count(), 1);
}

TEST_F(ToolsTitleBar, TheCloseButtonClosesTheWindowAndThenTells)
{
  ShowAt({100, 100});
  QSignalSpy spyClose(m_pBar, &QToolsTitleBar::signalButtonCloseClicked);
  bool bVisibleWhenTold = true;
  QObject::connect(m_pBar, &QToolsTitleBar::signalButtonCloseClicked, [&] { bVisibleWhenTold = m_window.isVisible(); });
  QTest::mouseClick(GetButton("ButtonClose"), Qt::LeftButton);
  EXPECT_FALSE(m_window.isVisible());
  EXPECT_FALSE(bVisibleWhenTold);
  EXPECT_EQ(spyClose.count(), 1);
}

// Uses every operation of a bar and everything that a user can do to it.
void UseEverything(QToolsTitleBar &bar)
{
  bar.setTitleIcon(true, QStringLiteral(":/skin/images/TipBig.png"));
  bar.setTitleIcon(false, QString());
  bar.setTitleContent(QStringLiteral("title"), 8);
  for (const int nType : {2, 0, 1}) {
    bar.setButtonType(nType);
  }
  bar.resize(100, 30);
  bar.grab();
  QTest::mousePress(&bar, Qt::LeftButton, Qt::NoModifier, QPoint(10, 10));
  DragMouseTo(bar, bar.mapToGlobal(QPoint(20, 12)));
  QTest::mouseRelease(&bar, Qt::LeftButton, Qt::NoModifier, QPoint(20, 12));
  QTest::mouseDClick(&bar, Qt::LeftButton, Qt::NoModifier, QPoint(10, 10));
  for (const char *pSlot :
       {"onButtonMinClicked", "onButtonMaxClicked", "onButtonRestoreClicked", "onButtonCloseClicked"}) {
    EXPECT_TRUE(QMetaObject::invokeMethod(&bar, pSlot)) << pSlot;
  }
}

TEST(ToolsTitleBarAlone, WorksWithoutAWindow)
{
  QToolsTitleBar bar;
  QSignalSpy spyClose(&bar, &QToolsTitleBar::signalButtonCloseClicked);
  UseEverything(bar);
  EXPECT_EQ(spyClose.count(), 1);
  bar.setButtonType(2);
  const QPoint posBefore = bar.pos();
  QTest::mousePress(&bar, Qt::LeftButton, Qt::NoModifier, QPoint(10, 10));
  DragMouseTo(bar, bar.mapToGlobal(QPoint(20, 12)));
  EXPECT_EQ(bar.pos(), posBefore) << "a drag moves a window, not the bar";
}

TEST(ToolsTitleBarAlone, StaysSafeToUseWhateverCreationFails)
{
  for (int nFailing = 1; nFailing <= 7; ++nFailing) {
    QDialog window;
    std::unique_ptr<QToolsTitleBar> pBar;
    {
      CFailingCreation failing(nFailing);
      pBar = std::make_unique<QToolsTitleBar>(&window);
      ASSERT_TRUE(failing.HasFailed()) << nFailing;
    }
    EXPECT_NE(pBar->maximumHeight(), 30) << "no sizes are set on an incomplete bar";
    UseEverything(*pBar);
  }
}

} // namespace
