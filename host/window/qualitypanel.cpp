#include "host/window/qualitypanel.h"

#include <algorithm>
#include <cmath>

#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

#include "host/window/figuretable.h"
#include "quality/htmlreport.h"

namespace ffc::host {

using quality::SLimits;

namespace {

constexpr double DEFAULT_LIMIT = 1.0; ///< percent, of shading and PRNU
constexpr double LARGEST_LIMIT = 10000;
constexpr double ANY = -1;
constexpr int PICTURE_WIDTH = 164; ///< two of them fit beside each other, and a scroll bar

QTableWidget *MakeTable(QWidget *pParent)
{
  QTableWidget *pTable = new QTableWidget(0, 2, pParent);
  pTable->setObjectName(QStringLiteral("Figures"));
  pTable->setEditTriggers(QAbstractItemView::NoEditTriggers);
  pTable->setSelectionMode(QAbstractItemView::NoSelection);
  pTable->setTabKeyNavigation(false);
  pTable->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  pTable->verticalHeader()->setDefaultSectionSize(pTable->fontMetrics().height() + 5);
  pTable->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  pTable->setAlternatingRowColors(true);
  pTable->setSizeAdjustPolicy(QAbstractScrollArea::AdjustToContents);
  pTable->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Maximum);
  return pTable;
}

const char *GetStyle(quality::EVerdict eVerdict)
{
  switch (eVerdict) {
  case quality::EVerdict::Pass: return "background: #2e7d32; color: white; font-weight: bold; padding: 5px";
  case quality::EVerdict::Fail: break;
  case quality::EVerdict::Worse: return "background: #9a4f00; color: white; font-weight: bold; padding: 5px";
  default: return "background: #6b6e73; color: white; padding: 5px";
  }
  return "background: #b3261e; color: white; font-weight: bold; padding: 5px";
}

} // namespace

CQualityPanel::CQualityPanel(QWidget *pParent)
  : QWidget(pParent), m_pMeasure(new QPushButton(tr("&Measure..."), this)),
    m_pCheckDrift(new QPushButton(tr("Check &drift..."), this)),
    m_pSaveReport(new QPushButton(tr("Save &report..."), this)), m_pVerdict(AddText("Verdict")),
    m_pTable(MakeTable(this)), m_pPictureBefore(AddText("PictureBefore")), m_pPictureAfter(AddText("PictureAfter")),
    m_pPictureTitle(AddText("PictureTitle")), m_pFindings(AddText("Findings")), m_pDrift(AddText("Drift"))
{
  m_pMeasure->setObjectName(QStringLiteral("Measure"));
  m_pMeasure->setToolTip(tr("Dark and bright fresh frames, with and without correction"));
  m_pCheckDrift->setObjectName(QStringLiteral("CheckDrift"));
  m_pCheckDrift->setToolTip(tr("A fresh flat with the coefficients in use"));
  m_pSaveReport->setObjectName(QStringLiteral("SaveReport"));
  QHBoxLayout *pButtons = new QHBoxLayout;
  pButtons->addWidget(m_pMeasure);
  pButtons->addWidget(m_pCheckDrift);
  pButtons->addWidget(m_pSaveReport);
  QHBoxLayout *pPictures = new QHBoxLayout;
  pPictures->addWidget(m_pPictureBefore);
  pPictures->addWidget(m_pPictureAfter);
  m_pPictureTitle->setText(tr("Unevenness before and after, stretched alike"));
  QVBoxLayout *pLayout = new QVBoxLayout(this);
  pLayout->addLayout(MakeLimitFields());
  pLayout->addLayout(pButtons);
  pLayout->addWidget(m_pVerdict);
  pLayout->addWidget(m_pDrift);
  pLayout->addWidget(m_pTable, 1);
  pLayout->addWidget(m_pFindings);
  pLayout->addWidget(m_pPictureTitle);
  pLayout->addLayout(pPictures);
  pLayout->addStretch();

  connect(m_pMeasure, &QPushButton::clicked, this, &CQualityPanel::SigMeasure);
  connect(m_pCheckDrift, &QPushButton::clicked, this, &CQualityPanel::SigCheckDrift);
  connect(m_pSaveReport, &QPushButton::clicked, this, &CQualityPanel::SigSaveReport);
  SLimits stDefault;
  stDefault.dShading = stDefault.dPrnu = DEFAULT_LIMIT;
  SetLimits(stDefault);
  Clear();
}

QLabel *CQualityPanel::AddText(const char *pName)
{
  QLabel *pLabel = new QLabel(this);
  pLabel->setObjectName(QLatin1String(pName));
  pLabel->setWordWrap(true);
  return pLabel;
}

/// At its smallest a field says that any figure will do.
QLayout *CQualityPanel::MakeLimitFields()
{
  const struct {
    const char *pName;
    QString strLabel;
    QString strUnit;
    double SLimits::*pLimit;
  } FIELDS[] = {{"ShadingLimit", tr("Shading lim&it"), QStringLiteral(" %"), &SLimits::dShading},
                {"PrnuLimit", tr("PRNU limit"), QStringLiteral(" %"), &SLimits::dPrnu},
                {"DsnuLimit", tr("DSNU limit"), QStringLiteral(" DN"), &SLimits::dDsnu}};
  QGridLayout *pGrid = new QGridLayout;
  for (const auto &stField : FIELDS) {
    QDoubleSpinBox *pField = new QDoubleSpinBox(this);
    pField->setObjectName(QLatin1String(stField.pName));
    pField->setRange(0, LARGEST_LIMIT);
    pField->setSingleStep(0.1);
    pField->setSuffix(stField.strUnit);
    pField->setSpecialValueText(tr("any"));
    QLabel *pLabel = new QLabel(stField.strLabel, this);
    const int nColumn = static_cast<int>(m_listLimitFields.size());
    pGrid->addWidget(pLabel, 0, nColumn);
    pGrid->addWidget(pField, 1, nColumn);
    if (stField.strLabel.contains(QLatin1Char('&'))) {
      pLabel->setBuddy(pField);
    }
    m_listLimitFields.push_back(pField);
    connect(pField, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this,
            [this, pLimit = stField.pLimit](double dLimit) {
              m_stLimits.*pLimit = dLimit > 0 ? dLimit : ANY;
              ShowVerdict();
            });
  }
  return pGrid;
}

void CQualityPanel::SetLimits(const SLimits &stLimits)
{
  const double adLimits[] = {stLimits.dShading, stLimits.dPrnu, stLimits.dDsnu};
  for (std::size_t nField = 0; nField < m_listLimitFields.size(); ++nField) {
    m_listLimitFields[nField]->setValue(std::max(0.0, adLimits[nField]));
  }
}

void CQualityPanel::ShowResult(std::shared_ptr<const quality::SResult> pResult, const QDateTime &dtMeasured)
{
  m_pResult = std::move(pResult);
  m_dtMeasured = dtMeasured;
  m_strStale.clear();
  m_dDrift.reset();
  FillTable(m_pResult->stReport);
  m_pFindings->setText(quality::ListFindings(*m_pResult).join(QLatin1Char('\n')));
  SetBusy(false);
  ShowPictures();
  ShowVerdict();
}

void CQualityPanel::ShowDrift(double dShadingPercent)
{
  m_dDrift = dShadingPercent;
  ShowVerdict();
}

void CQualityPanel::MarkStale(const QString &strEvent)
{
  if (CanSaveReport()) {
    m_strStale = strEvent;
    m_dDrift.reset();
    SetBusy(m_bBusy);
    ShowVerdict();
  }
}

void CQualityPanel::CheckShape(const SFrameShape &stShape)
{
  if (!CanSaveReport()) {
    return;
  }
  const quality::SReport &stReport = m_pResult->stReport;
  const QString strMeasured =
    QStringLiteral("%1 x %2 %3").arg(stReport.nWidth).arg(stReport.nHeight).arg(stReport.strPixelFormat);
  if (strMeasured != stShape.GetText()) {
    MarkStale(tr("the frames became %1").arg(stShape.GetText()));
  }
}

void CQualityPanel::Clear()
{
  m_pResult.reset();
  m_strStale.clear();
  m_dDrift.reset();
  FillTable(quality::SReport());
  m_pFindings->clear();
  SetBusy(false);
  ShowPictures();
  ShowVerdict();
}

void CQualityPanel::ShowPictures()
{
  const auto Show = [](QLabel *pLabel, const QImage &imgPicture) {
    pLabel->setVisible(!imgPicture.isNull());
    pLabel->setPixmap(imgPicture.isNull()
                        ? QPixmap()
                        : QPixmap::fromImage(imgPicture.scaledToWidth(PICTURE_WIDTH, Qt::SmoothTransformation)));
  };
  Show(m_pPictureBefore, m_pResult == nullptr ? QImage() : m_pResult->stPictures.imgContrastBefore);
  Show(m_pPictureAfter, m_pResult == nullptr ? QImage() : m_pResult->stPictures.imgContrastAfter);
  m_pPictureTitle->setVisible(m_pResult != nullptr);
}

void CQualityPanel::SetBusy(bool bBusy)
{
  m_bBusy = bBusy;
  m_pMeasure->setEnabled(!bBusy);
  m_pCheckDrift->setEnabled(!bBusy);
  m_pSaveReport->setEnabled(!bBusy && CanSaveReport());
  emit SigReportReady(m_pSaveReport->isEnabled());
  for (QWidget *pWidget : QList<QWidget *>{m_pTable, m_pFindings, m_pPictureBefore, m_pPictureAfter, m_pPictureTitle}) {
    pWidget->setEnabled(m_strStale.isEmpty());
  }
}

void CQualityPanel::ShowMessage(const QString &strMessage)
{
  m_pDrift->setText(strMessage);
  m_pDrift->setVisible(!strMessage.isEmpty());
}

void CQualityPanel::FillTable(const quality::SReport &stReport)
{
  FillFigureTable(*m_pTable, quality::ListFigureRows(stReport));
}

void CQualityPanel::ShowVerdict()
{
  const quality::SReport stReport = m_pResult == nullptr ? quality::SReport() : m_pResult->stReport;
  const quality::SVerdict stVerdict = quality::Judge(stReport.stBefore, stReport.stAfter, m_stLimits);
  const QString strVerdict = quality::DescribeVerdict(stVerdict).join(QLatin1Char('\n'));
  const bool bStale = !m_strStale.isEmpty();
  m_pVerdict->setText(bStale
                        ? tr("Measured on %1, before %2: measure again.\nThen: %3")
                            .arg(m_dtMeasured.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")), m_strStale, strVerdict)
                        : strVerdict);
  m_pVerdict->setStyleSheet(QLatin1String(GetStyle(bStale ? quality::EVerdict::Unknown : stVerdict.eVerdict)));
  const bool bComparable = CanSaveReport() && !stReport.bBaseline;
  const double dThen = bComparable ? stReport.stAfter.stOverall.dShadingPercent : -1.0;
  const double dLimit = m_stLimits.dShading > 0 ? m_stLimits.dShading : HUGE_VAL;
  ShowMessage(m_dDrift ? quality::DescribeDrift(quality::JudgeDrift(dThen, *m_dDrift, dLimit), dThen, *m_dDrift, dLimit)
                       : QString());
}

} // namespace ffc::host
