/// \file
/// What a weighted reference is expected to bring.
#pragma once

#include <QDialog>

#include "flat/weightedflat.h"

class QGridLayout;

namespace ffc::host {

/// Shows the figures of a weighted table beside those of the plain average, and asks whether to save and load it.
class CReferenceDialog : public QDialog {
  Q_OBJECT

public:
  CReferenceDialog(const flat::SWeightedFlat &stFlat, QWidget *pParent);

private:
  void AddRow(const QString &strWhat, const QString &strPlain, const QString &strWeighted);

  QGridLayout *m_pFigures;
};

} // namespace ffc::host
