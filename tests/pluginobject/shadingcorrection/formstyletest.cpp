#include "ui_shadingcorrectiondlg.h"

#include <QCoreApplication>
#include <QFile>
#include <QTranslator>
#include <QtTest>

#include <gtest/gtest.h>

#include "tests/pluginobject/shadingcorrection/countpixels.h"

using ffc::test::CountPixels;

namespace {

constexpr const char *LONG_PROMPTS[] = {
  "The dark field image is too bright, the flat field correction will not use the dark field image,this will not "
  "affect the flat field correction effect",
  "The current black level is not the default value, the flat field correction will not use the dark field "
  "image,this will not affect the flat field correction effect",
  "The bright field image is too dark, it will affect the flat field correction effect,it is recommended to adjust "
  "the brightness of the image in the range of 20-250",
  "The bright field image is too bright, it will affect the flat field correction effect,it is recommended to "
  "adjust the brightness of the image in the range of 20-250",
  "Failed to execute FFC. Please Acquired bright filed images and executed FFC again",
};

// The form with its style, shown.
class FormStyle : public testing::Test {
protected:
  FormStyle()
  {
    QFile file(QStringLiteral(":/skin/style/PlugAcqstatusSetting.qss"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    m_ui.setupUi(&m_dialog);
    m_dialog.setStyleSheet(QString::fromLatin1(file.readAll()));
    m_dialog.show();
  }

  void SetPrompt(const QString &strText, const QColor &colour)
  {
    QPalette palette = m_ui.PromptInformation_label->palette();
    palette.setColor(QPalette::WindowText, colour);
    m_ui.PromptInformation_label->setPalette(palette);
    m_ui.PromptInformation_label->setText(strText);
  }

  void ExpectPromptFits(const QString &strText)
  {
    SetPrompt(strText, Qt::red);
    QCoreApplication::processEvents();
    EXPECT_EQ(m_dialog.size(), QSize(560, 652)) << qPrintable(strText);
    for (const QLabel *pLabel : {m_ui.PromptInformation_label, m_ui.Prompt2621Info_label}) {
      EXPECT_GE(pLabel->height(), pLabel->heightForWidth(pLabel->width())) << qPrintable(strText);
    }
    EXPECT_GE(m_dialog.height(), m_ui.groupBox_6->geometry().bottom()) << qPrintable(strText);
  }

  QDialog m_dialog;
  Ui::ShadingCorrectionDlg m_ui;
};

TEST_F(FormStyle, ThePromptIsWrittenInTheColourOfItsPalette)
{
  m_ui.Prompt2621Info_label->hide();
  const QRect rectPrompt = m_ui.groupBox_6->geometry().adjusted(6, 2, -2, -2);
  SetPrompt(QStringLiteral("MMMMMMMM"), Qt::red);
  QCoreApplication::processEvents();
  const QImage imageRed = m_dialog.grab(rectPrompt).toImage();
  EXPECT_GT(CountPixels(imageRed, Qt::red), 20);
  EXPECT_EQ(CountPixels(imageRed, Qt::black), 0);
  SetPrompt(QStringLiteral("MMMMMMMM"), Qt::black);
  const QImage imageBlack = m_dialog.grab(rectPrompt).toImage();
  EXPECT_GT(CountPixels(imageBlack, Qt::black), 20);
  EXPECT_EQ(CountPixels(imageBlack, Qt::red), 0);
}

TEST_F(FormStyle, ThePromptStandsOnALightPanel)
{
  m_ui.Prompt2621Info_label->hide();
  SetPrompt(QString(), Qt::black);
  const QImage image = m_dialog.grab(m_ui.groupBox_6->geometry()).toImage();
  EXPECT_GT(image.pixelColor(image.rect().center()).lightness(), 230);
}

TEST_F(FormStyle, EveryLongPromptFitsInTheDialogInBothLanguages)
{
  QTranslator translator;
  ASSERT_TRUE(translator.load(QStringLiteral(":/lumalevel_zh.qm")));
  for (const char *pPrompt : LONG_PROMPTS) {
    ExpectPromptFits(QString::fromUtf8(pPrompt));
  }
  ASSERT_TRUE(QCoreApplication::installTranslator(&translator));
  m_ui.retranslateUi(&m_dialog);
  for (const char *pPrompt : LONG_PROMPTS) {
    ExpectPromptFits(translator.translate("CShadingCorrectionDlg", pPrompt));
  }
}

TEST_F(FormStyle, KeyboardFocusIsVisibleOnEveryControl)
{
  m_dialog.activateWindow();
  QApplication::setActiveWindow(&m_dialog);
  for (QWidget *pControl :
       {static_cast<QWidget *>(m_ui.AcquisitionFrame_Slider), static_cast<QWidget *>(m_ui.LoadPC_Button),
        static_cast<QWidget *>(m_ui.PreviewcheckBox), static_cast<QWidget *>(m_ui.ExpectGrayspinBox),
        static_cast<QWidget *>(m_ui.ExecuteShadingCorrection_Button)}) {
    m_ui.SavePC_Button->setFocus();
    const QImage imageWithout = pControl->grab().toImage();
    pControl->setFocus();
    ASSERT_TRUE(pControl->hasFocus());
    EXPECT_NE(pControl->grab().toImage(), imageWithout) << qPrintable(pControl->objectName());
  }
}

TEST_F(FormStyle, ADisabledControlLooksDisabled)
{
  for (QWidget *pControl :
       {static_cast<QWidget *>(m_ui.AcquisitionFrame_Slider), static_cast<QWidget *>(m_ui.LoadPC_Button),
        static_cast<QWidget *>(m_ui.PreviewcheckBox), static_cast<QWidget *>(m_ui.ExpectGrayspinBox),
        static_cast<QWidget *>(m_ui.ExecuteShadingCorrection_Button), static_cast<QWidget *>(m_ui.label_3)}) {
    const QImage imageEnabled = pControl->grab().toImage();
    pControl->setEnabled(false);
    EXPECT_NE(pControl->grab().toImage(), imageEnabled) << qPrintable(pControl->objectName());
  }
}

} // namespace
