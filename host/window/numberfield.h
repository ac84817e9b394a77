/// \file
/// Spin boxes that never drop a digit.
#pragma once

#include <functional>
#include <utility>

#include <QDoubleSpinBox>
#include <QSpinBox>
#include <QString>

namespace ffc::host {

/// Takes any number while the user types. One outside the range is refused in words when it is entered, and the value
/// stays as it was; the toolkit's own boxes leave digits out until the number fits.
/// \tparam TSpinBox QSpinBox or QDoubleSpinBox
template <class TSpinBox>
class CNumberField final : public TSpinBox {
public:
  using FnRefuse = std::function<void(const QString &strNumber)>;

  /// \param fnRefuse gets what was typed
  CNumberField(FnRefuse fnRefuse, QWidget *pParent) : TSpinBox(pParent), m_fnRefuse(std::move(fnRefuse)) {}

  /// Whether the user has typed something that was not entered yet.
  bool IsTyping() const { return this->hasFocus() && this->cleanText() != this->textFromValue(this->value()); }

  QValidator::State validate(QString &strText, int &nPosition) const override
  {
    const QValidator::State eState = TSpinBox::validate(strText, nPosition);
    return eState == QValidator::Invalid && IsNumber(GetNumber(strText)) ? QValidator::Intermediate : eState;
  }

  void fixup(QString &strText) const override
  {
    if (IsNumber(GetNumber(strText))) {
      m_fnRefuse(GetNumber(strText));
    }
  }

private:
  QString GetNumber(QString strText) const { return strText.remove(this->suffix()).trimmed(); }
  bool IsNumber(const QString &strNumber) const
  {
    bool bNumber = false;
    (void)this->locale().toDouble(strNumber, &bNumber);
    return bNumber;
  }

  FnRefuse m_fnRefuse;
};

} // namespace ffc::host
