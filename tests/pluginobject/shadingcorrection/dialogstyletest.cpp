// What the style sheets in force, the plug-in's own and a viewer's, leave of the dialog as it is shown.
#include <QApplication>

#include "tests/pluginobject/shadingcorrection/countpixels.h"
#include "tests/pluginobject/shadingcorrection/dialogfixture.h"

using ffc::test::CountPixels;

namespace {

// Style sheets that a viewer may set on its whole application.
constexpr const char *VIEWER_SHEETS[] = {
  "",
  "QLabel { color: white; }",
  "* { color: #f0f0f0; background-color: #202020; }",
  "QWidget { color: white; } QLabel:enabled { color: palette(bright-text); background-color: black; }",
  "QPushButton { min-width: 120px; min-height: 48px; max-height: 64px; margin: 3px; padding: 9px; }",
};

class DialogStyle : public CDialogTest {
public:
  // Makes the dialog show the text of a complete or of a too bright dark field.
  void ShowVerdict(bool bWarning)
  {
    m_stScript.dMaxGray = bWarning ? 100.0 : 1.0;
    Click(Dark());
  }

  // Expects the prompt in one of its two colours, in what it says of itself and in what is painted, on a light ground.
  void ExpectPromptIn(const QColor &colour, const QColor &colourOther)
  {
    QCoreApplication::processEvents();
    EXPECT_EQ(PromptColour(), colour);
    const QLabel *pLabel = Find<QLabel>("PromptInformation_label");
    const QImage image = m_pDialog->grab(QRect(pLabel->mapTo(m_pDialog.get(), QPoint()), pLabel->size())).toImage();
    EXPECT_GT(CountPixels(image, colour), 20);
    EXPECT_EQ(CountPixels(image, colourOther), 0);
    EXPECT_GT(image.pixelColor(1, 1).lightness(), 230);
  }

  void ExpectBothVerdictsAreReadable()
  {
    ShowVerdict(false);
    ExpectPromptIn(Qt::black, Qt::red);
    ShowVerdict(true);
    ExpectPromptIn(Qt::red, Qt::black);
    ShowVerdict(false);
    ExpectPromptIn(Qt::black, Qt::red);
  }
};

TEST_F(DialogStyle, TheVerdictIsReadableWhateverStyleSheetTheViewerHad)
{
  for (const char *pSheet : VIEWER_SHEETS) {
    SCOPED_TRACE(pSheet);
    qApp->setStyleSheet(QString::fromLatin1(pSheet));
    ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
    ExpectBothVerdictsAreReadable();
    m_pDialog.reset();
  }
}

TEST_F(DialogStyle, TheVerdictStaysReadableWhenTheViewerChangesItsStyleSheet)
{
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  for (const bool bWarning : {false, true}) {
    ShowVerdict(bWarning);
    for (const char *pSheet : VIEWER_SHEETS) {
      SCOPED_TRACE(pSheet);
      qApp->setStyleSheet(QString::fromLatin1(pSheet));
      ExpectPromptIn(bWarning ? Qt::red : Qt::black, bWarning ? Qt::black : Qt::red);
    }
  }
}

TEST_F(DialogStyle, TheFrameCountSliderDoesNotTrackTheMouse)
{
  for (const char *pSheet : VIEWER_SHEETS) {
    SCOPED_TRACE(pSheet);
    qApp->setStyleSheet(QString::fromLatin1(pSheet));
    ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
    QCoreApplication::processEvents();
    EXPECT_FALSE(FrameSlider()->hasMouseTracking());
    EXPECT_TRUE(FrameSlider()->hasTracking());
    m_pDialog.reset();
  }
}

TEST_F(DialogStyle, ButtonsOfTheTitleBarKeepTheirSize)
{
  for (const char *pSheet : VIEWER_SHEETS) {
    SCOPED_TRACE(pSheet);
    qApp->setStyleSheet(QString::fromLatin1(pSheet));
    ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
    QCoreApplication::processEvents();
    for (const char *pName : {"ButtonMin", "ButtonRestore", "ButtonMax", "ButtonClose"}) {
      // Only what is shown has got the sheet.
      Button(pName)->show();
      EXPECT_EQ(Button(pName)->minimumSize(), QSize(30, 28)) << pName;
      EXPECT_EQ(Button(pName)->maximumSize(), QSize(30, 28)) << pName;
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(Button("ButtonClose")->size(), QSize(30, 28));
    m_pDialog.reset();
  }
}

} // namespace
