#include "host/window/featureedits.h"

#include <algorithm>
#include <limits>
#include <typeinfo>

#include <QComboBox>
#include <QHBoxLayout>
#include <QSignalBlocker>
#include <QStringList>

#include "host/window/numberfield.h"

namespace ffc::host {
namespace {

/// A feature may be wider than a field.
int ToInt(int64_t nValue)
{
  return static_cast<int>(
    std::clamp<int64_t>(nValue, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

} // namespace

void CFeatureEdit::Adopt(QWidget *pField)
{
  m_pField = pField;
  pField->setObjectName(m_strName);
  QHBoxLayout *pLayout = new QHBoxLayout(this);
  pLayout->setContentsMargins(0, 0, 0, 0);
  pLayout->addWidget(pField);
  setFocusProxy(pField);
}

void CFeatureEdit::SetNodeMap(GenApi::INodeMap *pNodeMap)
{
  m_pNodeMap = pNodeMap;
  Refresh(QString());
}

bool CFeatureEdit::IsOffered() const
{
  GenApi::INode *pNode = m_pNodeMap == nullptr ? nullptr : m_pNodeMap->GetNode(m_strName.toUtf8().constData());
  if (!GenApi::IsReadable(pNode)) {
    return false;
  }
  try {
    if (auto *pInteger = dynamic_cast<GenApi::IInteger *>(pNode)) {
      // An offset can be nothing but 0 until the region is made smaller.
      return pInteger->GetMin() < pInteger->GetMax() || m_strName.startsWith(QLatin1String("Offset"));
    }
  } catch (const GenICam::GenericException &) {
    return false;
  }
  return true;
}

void CFeatureEdit::Refresh(const QString &strLockedReason)
{
  if (m_pNodeMap == nullptr) {
    ShowAccess(false, tr("No camera"));
  } else {
    ShowState(ReadFeatureState(*m_pNodeMap, GetFeature()), strLockedReason);
  }
}

void CFeatureEdit::ShowState(const SFeatureState &stState, const QString &strLockedReason)
{
  if (!stState.bReadable) {
    ShowAccess(false, tr("This camera has no %1").arg(m_strName));
    return;
  }
  ShowAccess(stState.bWritable, strLockedReason.isEmpty()
                                  ? tr("The camera does not let %1 be changed now").arg(m_strName)
                                  : strLockedReason);
  if (stState.bWritable && IsTyping()) {
    return;
  }
  if (!stState.strError.isEmpty()) {
    ShowAccess(false, stState.strError);
    return;
  }
  const QSignalBlocker blocker(m_pField);
  Show(stState);
}

void CFeatureEdit::ShowAccess(bool bWritable, const QString &strReason)
{
  m_pField->setEnabled(bWritable);
  m_pField->setToolTip(bWritable ? m_strName : strReason);
  setToolTip(m_pField->toolTip());
}

void CFeatureEdit::Write(const std::function<void(GenApi::INode &)> &fnWrite)
{
  GenApi::INode *pNode = m_pNodeMap == nullptr ? nullptr : m_pNodeMap->GetNode(m_strName.toUtf8().constData());
  if (pNode == nullptr) {
    return;
  }
  try {
    fnWrite(*pNode);
    emit SigWritten();
  } catch (const GenICam::GenericException &exception) {
    emit SigRefused(tr("%1: the camera refuses the value (%2). Enter another one.")
                      .arg(m_strName, QString::fromUtf8(exception.GetDescription())));
  } catch (const std::bad_cast &) {
    emit SigRefused(tr("%1 is of another kind in this camera: it cannot be set here.").arg(m_strName));
  }
}

void CFeatureEdit::Refuse(const QString &strNumber, const QString &strLeast, const QString &strMost)
{
  emit SigRefused(
    tr("%1: %2 is out of range. Enter a number from %3 to %4.").arg(m_strName, strNumber, strLeast, strMost));
}

CFloatEdit::CFloatEdit(const QString &strName, const QString &strSuffix, int nDecimals, QWidget *pParent)
  : CFeatureEdit(strName, pParent), m_pSpinBox(new CNumberField<QDoubleSpinBox>(
                                      [this](const QString &strNumber) {
                                        const QLocale locale = m_pSpinBox->locale();
                                        const int nShown = m_pSpinBox->decimals();
                                        Refuse(strNumber, locale.toString(m_pSpinBox->minimum(), 'f', nShown),
                                               locale.toString(m_pSpinBox->maximum(), 'f', nShown));
                                      },
                                      this))
{
  m_pSpinBox->setSuffix(strSuffix);
  m_pSpinBox->setDecimals(nDecimals);
  m_pSpinBox->setKeyboardTracking(false);
  m_pSpinBox->setStepType(QAbstractSpinBox::AdaptiveDecimalStepType);
  Adopt(m_pSpinBox);
  connect(m_pSpinBox, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this, [this](double dValue) {
    Write([dValue](GenApi::INode &node) { dynamic_cast<GenApi::IFloat &>(node).SetValue(dValue); });
  });
}

bool CFloatEdit::IsTyping() const
{
  return m_pSpinBox->IsTyping();
}

void CFloatEdit::Show(const SFeatureState &stState)
{
  if (stState.eKind == SFeatureState::EKind::Float) {
    m_pSpinBox->setRange(stState.dMin, stState.dMax);
    m_pSpinBox->setValue(stState.dValue);
  }
}

CIntegerEdit::CIntegerEdit(const QString &strName, const QString &strSuffix, QWidget *pParent)
  : CFeatureEdit(strName, pParent),
    m_pSpinBox(new CNumberField<QSpinBox>(
      [this](const QString &strNumber) {
        Refuse(strNumber, QString::number(m_pSpinBox->minimum()), QString::number(m_pSpinBox->maximum()));
      },
      this))
{
  m_pSpinBox->setSuffix(strSuffix);
  m_pSpinBox->setKeyboardTracking(false);
  Adopt(m_pSpinBox);
  connect(m_pSpinBox, QOverload<int>::of(&QSpinBox::valueChanged), this, [this](int nValue) {
    Write([nValue](GenApi::INode &node) { dynamic_cast<GenApi::IInteger &>(node).SetValue(nValue); });
  });
}

bool CIntegerEdit::IsTyping() const
{
  return m_pSpinBox->IsTyping();
}

void CIntegerEdit::Show(const SFeatureState &stState)
{
  if (stState.eKind == SFeatureState::EKind::Integer) {
    m_pSpinBox->setRange(ToInt(stState.nMin), ToInt(stState.nMax));
    m_pSpinBox->setSingleStep(std::max(1, ToInt(stState.nInc)));
    m_pSpinBox->setValue(ToInt(stState.nValue));
  }
}

CEnumerationEdit::CEnumerationEdit(const QString &strName, QWidget *pParent)
  : CFeatureEdit(strName, pParent), m_pComboBox(new QComboBox(this))
{
  Adopt(m_pComboBox);
  connect(m_pComboBox, QOverload<int>::of(&QComboBox::activated), this, [this](int) {
    const QByteArray byteEntry = m_pComboBox->currentText().toUtf8();
    Write([&](GenApi::INode &node) { dynamic_cast<GenApi::IEnumeration &>(node).FromString(byteEntry.constData()); });
  });
}

void CEnumerationEdit::Show(const SFeatureState &stState)
{
  if (stState.eKind != SFeatureState::EKind::Enumeration) {
    return;
  }
  QStringList listShown;
  for (int nItem = 0; nItem < m_pComboBox->count(); ++nItem) {
    listShown << m_pComboBox->itemText(nItem);
  }
  if (listShown != stState.listEntries) {
    m_pComboBox->clear();
    m_pComboBox->addItems(stState.listEntries);
  }
  m_pComboBox->setCurrentText(stState.strText);
}

} // namespace ffc::host
