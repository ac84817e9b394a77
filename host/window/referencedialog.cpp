#include "host/window/referencedialog.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace ffc::host {
namespace {

constexpr int TEXT_WIDTH = 460; ///< pixels, at least
constexpr double WORTH_LIMIT = 999;

QString Translate(const char *pText)
{
  return QCoreApplication::translate("ReferenceDialog", pText);
}

QString FormatPercent(double dPercent)
{
  return Translate("%1 %").arg(dPercent, 0, 'f', 2);
}

QString FormatWorth(const flat::SWeightedFlat &stFlat)
{
  const double dWorth = stFlat.dNoise > 0 ? stFlat.GetWorth() : WORTH_LIMIT + 1;
  return dWorth > WORTH_LIMIT ? Translate("more than %1").arg(WORTH_LIMIT, 0, 'f', 0) : QString::number(dWorth, 'f', 0);
}

QString DescribeNoise(reference::ENoiseSource eNoise)
{
  switch (eNoise) {
  case reference::ENoiseSource::Differences: return Translate("the differences of the frames");
  case reference::ENoiseSource::Camera: return Translate("camera data");
  case reference::ENoiseSource::PhotonTransfer: return Translate("photon transfer within the one frame");
  case reference::ENoiseSource::HalfDetail:
    return Translate(
      "half of the fine detail of the one frame: acquire more frames to tell it from the pixels' own pattern");
  case reference::ENoiseSource::AllDetail: break;
  }
  return Translate("all fine detail of the one frame: acquire more frames to keep the pixels' own pattern");
}

} // namespace

CReferenceDialog::CReferenceDialog(const flat::SWeightedFlat &stFlat, QWidget *pParent)
  : QDialog(pParent), m_pFigures(new QGridLayout)
{
  setObjectName(QStringLiteral("ReferenceDialog"));
  setWindowTitle(Translate("Made from the acquired frames"));
  m_pFigures->setHorizontalSpacing(16);
  AddRow(QString(), Translate("Plain average"), Translate("Weighted"));
  AddRow(Translate("Noise that the bright reference leaves in each image"), FormatPercent(stFlat.dPlainNoise),
         FormatPercent(stFlat.dNoise));
  AddRow(Translate("As good as an average of so many frames"), QString::number(stFlat.nFrames), FormatWorth(stFlat));
  QLabel *pText = new QLabel(
    Translate(
      "From %1 bright and %2 dark frames. The noise is known from %3. The pattern of the sensor and the noise of the "
      "dark field are not in these figures; Measure tells what is left of all.")
      .arg(stFlat.nFrames)
      .arg(stFlat.nDarkFrames)
      .arg(DescribeNoise(stFlat.eNoise)),
    this);
  pText->setWordWrap(true);
  pText->setMinimumWidth(TEXT_WIDTH);
  QDialogButtonBox *pButtons = new QDialogButtonBox(this);
  pButtons->addButton(Translate("&Save and load..."), QDialogButtonBox::AcceptRole)->setDefault(true);
  pButtons->addButton(Translate("&Cancel"), QDialogButtonBox::RejectRole);
  connect(pButtons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(pButtons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  QVBoxLayout *pLayout = new QVBoxLayout(this);
  pLayout->addLayout(m_pFigures);
  pLayout->addWidget(pText);
  pLayout->addWidget(pButtons);
}

void CReferenceDialog::AddRow(const QString &strWhat, const QString &strPlain, const QString &strWeighted)
{
  const int nRow = m_pFigures->rowCount();
  m_pFigures->addWidget(new QLabel(strWhat, this), nRow, 0);
  m_pFigures->addWidget(new QLabel(strPlain, this), nRow, 1, Qt::AlignRight);
  m_pFigures->addWidget(new QLabel(strWeighted, this), nRow, 2, Qt::AlignRight);
}

} // namespace ffc::host
