/// \file
/// Where the user chooses how the display is stretched.
#pragma once

#include <QObject>

#include "host/window/stretch.h"

class QAction;
class QActionGroup;
class QMenu;
class QSpinBox;
class QToolBar;
class QToolButton;

namespace ffc::host {

/// A submenu, the same menu in a tool bar, and there the two greys of a fixed stretch.
class CStretchControl : public QObject {
  Q_OBJECT

public:
  explicit CStretchControl(QWidget *pParent);

  void AddTo(QMenu &menu, QToolBar &tools);
  EStretch GetMode() const { return m_eMode; }
  void SetMode(EStretch eMode);
  /// Only for the fixed stretch.
  SGreyRange GetFixed() const;
  /// What the display shows now, from which a fixed stretch begins.
  void Follow(const SGreyRange &stRange, uint32_t nMaximum);

signals:
  void SigChanged();

private:
  QAction *AddMode(EStretch eMode, const QString &strText, const QString &strTip);
  QSpinBox *MakeGrey(const char *pName, const QString &strPrefix, QWidget *pParent);

  EStretch m_eMode = EStretch::FullRange;
  QMenu *m_pMenu;
  QActionGroup *m_pModes;
  QToolButton *m_pButton;
  QSpinBox *m_pBlack;
  QSpinBox *m_pWhite;
  QAction *m_pBlackPlace = nullptr; ///< in the tool bar
  QAction *m_pWhitePlace = nullptr;
};

} // namespace ffc::host
