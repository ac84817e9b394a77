/// \file
/// Camera features as fields of a form.
#pragma once

#include <functional>

#include <GenApi/GenApi.h>
#include <QString>
#include <QWidget>

#include "host/viewer/featurestate.h"

class QComboBox;
class QDoubleSpinBox;
class QSpinBox;

namespace ffc::host {

template <class TSpinBox>
class CNumberField;

/// A field that shows one feature and writes what the user enters. User-interface thread.
class CFeatureEdit : public QWidget {
  Q_OBJECT

public:
  /// \param strName feature of the camera
  CFeatureEdit(const QString &strName, QWidget *pParent) : QWidget(pParent), m_strName(strName) {}

  std::string GetFeature() const { return m_strName.toStdString(); }
  /// Shows the feature of another camera.
  /// \param pNodeMap null: none, the field is disabled
  void SetNodeMap(GenApi::INodeMap *pNodeMap);
  /// Whether the camera has the feature, and more than one value of it.
  bool IsOffered() const;
  /// Whether it is one of a list, which says something where it cannot be changed, too.
  virtual bool IsChoice() const { return false; }
  /// Reads value, range and access anew, and shows them.
  /// \param strLockedReason what keeps the camera from taking a value now; empty: nothing known
  void Refresh(const QString &strLockedReason);
  /// Shows what was read, unless the user is typing. A field that cannot be written is disabled, and its tool tip says
  /// why.
  void ShowState(const SFeatureState &stState, const QString &strLockedReason);

signals:
  /// The camera does not take the value, and why.
  void SigRefused(const QString &strReason);
  void SigWritten();

protected:
  /// The field itself, which fills this widget.
  void Adopt(QWidget *pField);
  QWidget *GetField() const { return m_pField; }
  void Write(const std::function<void(GenApi::INode &)> &fnWrite);
  /// What was typed is outside the range.
  void Refuse(const QString &strNumber, const QString &strLeast, const QString &strMost);
  /// Of a feature that can be read.
  virtual void Show(const SFeatureState &stState) = 0;
  /// Whether there is something in the field that was not entered yet.
  virtual bool IsTyping() const { return false; }

private:
  void ShowAccess(bool bWritable, const QString &strReason);

  QString m_strName;
  GenApi::INodeMap *m_pNodeMap = nullptr;
  QWidget *m_pField = nullptr;
};

class CFloatEdit final : public CFeatureEdit {
  Q_OBJECT

public:
  /// \param strSuffix unit, shown behind the number
  CFloatEdit(const QString &strName, const QString &strSuffix, int nDecimals, QWidget *pParent);

protected:
  void Show(const SFeatureState &stState) override;
  bool IsTyping() const override;

private:
  CNumberField<QDoubleSpinBox> *m_pSpinBox;
};

class CIntegerEdit final : public CFeatureEdit {
  Q_OBJECT

public:
  CIntegerEdit(const QString &strName, const QString &strSuffix, QWidget *pParent);

protected:
  void Show(const SFeatureState &stState) override;
  bool IsTyping() const override;

private:
  CNumberField<QSpinBox> *m_pSpinBox;
};

class CEnumerationEdit final : public CFeatureEdit {
  Q_OBJECT

public:
  CEnumerationEdit(const QString &strName, QWidget *pParent);
  bool IsChoice() const override { return true; }

protected:
  void Show(const SFeatureState &stState) override;

private:
  QComboBox *m_pComboBox;
};

} // namespace ffc::host
