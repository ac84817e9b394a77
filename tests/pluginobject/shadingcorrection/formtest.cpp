#include "ui_shadingcorrectiondlg.h"

#include <QCoreApplication>
#include <QTranslator>

#include <gtest/gtest.h>

namespace {

struct SWidgetRow {
  const char *pName;
  const char *pClass;
  const char *pParent;
  const char *pText; // null: has none
};

constexpr const char *TEXT_2621 = "It is demanded to acquire bright field images again for Executing FFC after "
                                  "changing ROI, binning, decimation, mirror of camera";

constexpr SWidgetRow WIDGETS[] = {
  {"label_2", "QLabel", "ShadingCorrectionDlg", "FFC Data"},
  {"groupBox_2", "QGroupBox", "ShadingCorrectionDlg", nullptr},
  {"label", "QLabel", "groupBox_2", "Acquisition Frame Count"},
  {"AcquisitionFrame_Slider", "QSlider", "groupBox_2", nullptr},
  {"label_4", "QLabel", "groupBox_2", "1"},
  {"label_5", "QLabel", "groupBox_2", "2"},
  {"label_6", "QLabel", "groupBox_2", "4"},
  {"label_7", "QLabel", "groupBox_2", "8"},
  {"label_8", "QLabel", "groupBox_2", "16"},
  {"AcquisitionDarkFrame_Button", "QPushButton", "ShadingCorrectionDlg", "Acquisition of Darkfield Images"},
  {"AcquisitionBrightFrame_Button", "QPushButton", "ShadingCorrectionDlg", "Acquisition of Brightfield Images"},
  {"ExecuteShadingCorrection_Button", "QPushButton", "ShadingCorrectionDlg", "Execute FFC"},
  {"PreviewcheckBox", "QCheckBox", "ShadingCorrectionDlg", "Preview"},
  {"lineH_3", "QFrame", "ShadingCorrectionDlg", nullptr},
  {"label_9", "QLabel", "ShadingCorrectionDlg", "FFC Expected Gray Value"},
  {"groupBox_5", "QGroupBox", "ShadingCorrectionDlg", nullptr},
  {"ExpectGrayspinBox", "QSpinBox", "groupBox_5", nullptr},
  {"ExpectGrayValue_Slider", "QSlider", "groupBox_5", nullptr},
  {"label_3", "QLabel", "groupBox_5", "(0~255)"},
  {"lineH_2", "QFrame", "ShadingCorrectionDlg", nullptr},
  {"label_10", "QLabel", "ShadingCorrectionDlg", "Read/Write FFC Data"},
  {"LoadFlash_Button", "QPushButton", "ShadingCorrectionDlg", "Read From Device "},
  {"SaveFlash_Button", "QPushButton", "ShadingCorrectionDlg", "Write To Device"},
  {"lineH_1", "QFrame", "ShadingCorrectionDlg", nullptr},
  {"label_11", "QLabel", "ShadingCorrectionDlg", "Load/Save FFC Data"},
  {"LoadPC_Button", "QPushButton", "ShadingCorrectionDlg", "Load File"},
  {"SavePC_Button", "QPushButton", "ShadingCorrectionDlg", "Save File"},
  {"lineH", "QFrame", "ShadingCorrectionDlg", nullptr},
  {"label_12", "QLabel", "ShadingCorrectionDlg", "Prompt Information "},
  {"groupBox_6", "QGroupBox", "ShadingCorrectionDlg", nullptr},
  {"PromptInformation_label", "QLabel", "groupBox_6", "Prompt information "},
  {"Prompt2621Info_label", "QLabel", "groupBox_6", TEXT_2621},
};

// What stands at a place of a layout: the object's name, or for a spacer "WxH" with its policies.
QString Describe(QLayoutItem *pItem)
{
  if (pItem == nullptr) {
    return QStringLiteral("nothing");
  }
  if (pItem->widget() != nullptr) {
    return pItem->widget()->objectName();
  }
  if (pItem->layout() != nullptr) {
    return pItem->layout()->objectName();
  }
  const QSpacerItem *pSpacer = pItem->spacerItem();
  return QStringLiteral("%1x%2 %3 %4")
    .arg(pSpacer->sizeHint().width())
    .arg(pSpacer->sizeHint().height())
    .arg(static_cast<int>(pSpacer->sizePolicy().horizontalPolicy()))
    .arg(static_cast<int>(pSpacer->sizePolicy().verticalPolicy()));
}

QString DescribeSpacer(int nWidth, int nHeight, QSizePolicy::Policy eHorizontal, QSizePolicy::Policy eVertical)
{
  QSpacerItem spacer(nWidth, nHeight, eHorizontal, eVertical);
  return Describe(&spacer);
}

QStringList DescribeAll(QLayout &layout)
{
  QStringList listItems;
  for (int i = 0; i < layout.count(); ++i) {
    listItems << Describe(layout.itemAt(i));
  }
  return listItems;
}

// Expects one item in a grid and its cell: row, column and the columns it spans.
void ExpectCell(QGridLayout &grid, const char *pName, int nRow, int nColumn, int nColumns = 1)
{
  EXPECT_EQ(Describe(grid.itemAtPosition(nRow, nColumn)), QLatin1String(pName));
  for (int i = 0; i < grid.count(); ++i) {
    if (Describe(grid.itemAt(i)) == QLatin1String(pName)) {
      int anPlace[4];
      grid.getItemPosition(i, &anPlace[0], &anPlace[1], &anPlace[2], &anPlace[3]);
      EXPECT_EQ(anPlace[0], nRow) << pName;
      EXPECT_EQ(anPlace[1], nColumn) << pName;
      EXPECT_EQ(anPlace[2], 1) << pName;
      EXPECT_EQ(anPlace[3], nColumns) << pName;
    }
  }
}

class Form : public testing::Test {
protected:
  Form() { m_ui.setupUi(&m_dialog); }

  QDialog m_dialog;
  Ui::ShadingCorrectionDlg m_ui;
};

TEST_F(Form, HasEveryWidgetWithItsClassPlaceAndText)
{
  EXPECT_EQ(m_dialog.objectName(), QStringLiteral("ShadingCorrectionDlg"));
  for (const SWidgetRow &stRow : WIDGETS) {
    const auto *pWidget = m_dialog.findChild<QWidget *>(QLatin1String(stRow.pName));
    ASSERT_NE(pWidget, nullptr) << stRow.pName;
    EXPECT_STREQ(pWidget->metaObject()->className(), stRow.pClass) << stRow.pName;
    EXPECT_EQ(pWidget->parentWidget()->objectName(), QLatin1String(stRow.pParent)) << stRow.pName;
    if (stRow.pText != nullptr) {
      EXPECT_EQ(pWidget->property("text").toString(), QString::fromUtf8(stRow.pText)) << stRow.pName;
    }
  }
}

TEST_F(Form, HasNoOtherWidget)
{
  QStringList listKnown;
  for (const SWidgetRow &stRow : WIDGETS) {
    listKnown << QLatin1String(stRow.pName);
  }
  for (const QWidget *pWidget : m_dialog.findChildren<QWidget *>()) {
    const bool bOwnPart = pWidget->objectName().startsWith(QLatin1String("qt_"));
    EXPECT_TRUE(bOwnPart || listKnown.contains(pWidget->objectName())) << qPrintable(pWidget->objectName());
  }
}

TEST_F(Form, HasItsSizeAndTitle)
{
  EXPECT_EQ(m_dialog.size(), QSize(560, 652));
  EXPECT_EQ(m_dialog.windowTitle(), QStringLiteral("Flat Field Correction Plugin"));
}

TEST_F(Form, StacksTheSectionsInOneColumn)
{
  EXPECT_EQ(m_dialog.layout(), m_ui.gridLayout);
  ExpectCell(*m_ui.gridLayout, "verticalLayout_3", 0, 0);
  const QStringList listExpected = {DescribeSpacer(20, 30, QSizePolicy::Minimum, QSizePolicy::Fixed),
                                    "verticalLayout_2",
                                    "lineH_3",
                                    "label_9",
                                    "groupBox_5",
                                    "lineH_2",
                                    "label_10",
                                    "horizontalLayout_3",
                                    "lineH_1",
                                    "label_11",
                                    "horizontalLayout_4",
                                    "lineH",
                                    "label_12",
                                    "groupBox_6"};
  EXPECT_EQ(DescribeAll(*m_ui.verticalLayout_3), listExpected);
}

TEST_F(Form, LaysOutTheDataSection)
{
  EXPECT_EQ(DescribeAll(*m_ui.verticalLayout_2), QStringList({"label_2", "groupBox_2", "gridLayout_2"}));
  EXPECT_EQ(m_ui.groupBox_2->layout(), m_ui.gridLayout_3);
  ExpectCell(*m_ui.gridLayout_3, "horizontalLayout_2", 0, 0);
  EXPECT_EQ(DescribeAll(*m_ui.horizontalLayout_2), QStringList({"label", "verticalLayout"}));
  EXPECT_EQ(DescribeAll(*m_ui.verticalLayout), QStringList({"AcquisitionFrame_Slider", "horizontalLayout"}));
  const QString strWide = DescribeSpacer(22, 13, QSizePolicy::Expanding, QSizePolicy::Minimum);
  const QString strNarrow = DescribeSpacer(13, 13, QSizePolicy::Expanding, QSizePolicy::Minimum);
  EXPECT_EQ(DescribeAll(*m_ui.horizontalLayout),
            QStringList({"label_4", strWide, "label_5", strWide, "label_6", strWide, "label_7", strNarrow, "label_8"}));
  EXPECT_EQ(m_ui.gridLayout_2->horizontalSpacing(), 12);
  EXPECT_EQ(m_ui.gridLayout_2->verticalSpacing(), 12);
  EXPECT_EQ(m_ui.gridLayout_2->count(), 4);
  ExpectCell(*m_ui.gridLayout_2, "AcquisitionDarkFrame_Button", 0, 0);
  ExpectCell(*m_ui.gridLayout_2, "AcquisitionBrightFrame_Button", 1, 0);
  ExpectCell(*m_ui.gridLayout_2, "ExecuteShadingCorrection_Button", 2, 0);
  ExpectCell(*m_ui.gridLayout_2, "PreviewcheckBox", 2, 1);
}

TEST_F(Form, LaysOutTheOtherSections)
{
  EXPECT_EQ(m_ui.groupBox_5->layout(), m_ui.gridLayout_10);
  ExpectCell(*m_ui.gridLayout_10, "gridLayout_9", 0, 0);
  EXPECT_EQ(m_ui.gridLayout_9->count(), 3);
  ExpectCell(*m_ui.gridLayout_9, "ExpectGrayspinBox", 0, 0);
  ExpectCell(*m_ui.gridLayout_9, "ExpectGrayValue_Slider", 0, 1, 2);
  ExpectCell(*m_ui.gridLayout_9, "label_3", 0, 3);
  EXPECT_EQ(DescribeAll(*m_ui.horizontalLayout_3), QStringList({"LoadFlash_Button", "SaveFlash_Button"}));
  EXPECT_EQ(DescribeAll(*m_ui.horizontalLayout_4), QStringList({"LoadPC_Button", "SavePC_Button"}));
  EXPECT_EQ(m_ui.groupBox_6->layout(), m_ui.gridLayout_6);
  EXPECT_EQ(m_ui.gridLayout_6->count(), 2);
  ExpectCell(*m_ui.gridLayout_6, "PromptInformation_label", 0, 0);
  ExpectCell(*m_ui.gridLayout_6, "Prompt2621Info_label", 1, 0);
}

TEST_F(Form, SetsTheFrameCountSliderUp)
{
  const QSlider &slider = *m_ui.AcquisitionFrame_Slider;
  EXPECT_EQ(slider.orientation(), Qt::Horizontal);
  EXPECT_EQ(slider.minimum(), 0);
  EXPECT_EQ(slider.maximum(), 16);
  EXPECT_EQ(slider.singleStep(), 1);
  EXPECT_EQ(slider.value(), 8);
  EXPECT_EQ(slider.sliderPosition(), 8);
  EXPECT_TRUE(slider.hasTracking());
  EXPECT_FALSE(slider.hasMouseTracking());
  EXPECT_EQ(slider.tickPosition(), QSlider::TicksBelow);
  EXPECT_EQ(slider.tickInterval(), 4);
}

TEST_F(Form, SetsTheExpectedGrayControlsUp)
{
  EXPECT_EQ(m_ui.ExpectGrayspinBox->maximum(), 4095);
  const QSlider &slider = *m_ui.ExpectGrayValue_Slider;
  EXPECT_EQ(slider.orientation(), Qt::Horizontal);
  EXPECT_EQ(slider.maximum(), 4095);
  EXPECT_EQ(slider.singleStep(), 1);
  EXPECT_EQ(slider.tickPosition(), QSlider::NoTicks);
  EXPECT_EQ(m_ui.label_3->alignment(), Qt::AlignCenter);
}

TEST_F(Form, HasPlainGroupsAndSunkenLines)
{
  for (const QGroupBox *pGroup : {m_ui.groupBox_2, m_ui.groupBox_5, m_ui.groupBox_6}) {
    EXPECT_TRUE(pGroup->title().isEmpty());
    EXPECT_FALSE(pGroup->isFlat());
    EXPECT_FALSE(pGroup->isCheckable());
  }
  for (const QFrame *pLine : {m_ui.lineH, m_ui.lineH_1, m_ui.lineH_2, m_ui.lineH_3}) {
    EXPECT_EQ(pLine->frameShape(), QFrame::HLine);
    EXPECT_EQ(pLine->frameShadow(), QFrame::Sunken);
  }
}

TEST_F(Form, WritesThePromptInBoldWrappedWords)
{
  const QFont font = m_ui.PromptInformation_label->font();
  EXPECT_EQ(font.family(), QStringLiteral("Arial"));
  EXPECT_EQ(font.pointSize(), 10);
  EXPECT_TRUE(font.bold());
  EXPECT_EQ(font.weight(), 75);
  EXPECT_TRUE(m_ui.PromptInformation_label->wordWrap());
  EXPECT_TRUE(m_ui.Prompt2621Info_label->wordWrap());
}

TEST_F(Form, TabsFromTheFrameCountToTheExpectedGray)
{
  QStringList listReached;
  QWidget *pWidget = m_ui.AcquisitionFrame_Slider;
  do {
    if (pWidget->focusPolicy() & Qt::TabFocus) {
      listReached << pWidget->objectName();
    }
    pWidget = pWidget->nextInFocusChain();
  } while (pWidget != m_ui.AcquisitionFrame_Slider);
  const QStringList listExpected = {"AcquisitionFrame_Slider", "AcquisitionDarkFrame_Button",
                                    "ExecuteShadingCorrection_Button", "PreviewcheckBox", "ExpectGrayValue_Slider"};
  EXPECT_EQ(listReached.mid(0, 5), listExpected) << qPrintable(listReached.join(' '));
}

TEST_F(Form, TranslatesEveryTextAgainOnRequest)
{
  QTranslator translator;
  ASSERT_TRUE(translator.load(QStringLiteral(":/lumalevel_zh.qm")));
  ASSERT_TRUE(QCoreApplication::installTranslator(&translator));
  for (QGroupBox *pGroup : m_dialog.findChildren<QGroupBox *>()) {
    pGroup->setTitle(QStringLiteral("former"));
  }
  m_ui.retranslateUi(&m_dialog);
  EXPECT_EQ(m_dialog.windowTitle(), translator.translate("ShadingCorrectionDlg", "Flat Field Correction Plugin"));
  for (const SWidgetRow &stRow : WIDGETS) {
    if (stRow.pText == nullptr) {
      continue;
    }
    const QString strExpected = translator.translate("ShadingCorrectionDlg", stRow.pText);
    EXPECT_FALSE(strExpected.isEmpty()) << stRow.pText;
    const auto *pWidget = m_dialog.findChild<QWidget *>(QLatin1String(stRow.pName));
    EXPECT_EQ(pWidget->property("text").toString(), strExpected) << stRow.pName;
  }
  for (const QGroupBox *pGroup : m_dialog.findChildren<QGroupBox *>()) {
    EXPECT_TRUE(pGroup->title().isEmpty()) << qPrintable(pGroup->objectName());
  }
}

} // namespace
