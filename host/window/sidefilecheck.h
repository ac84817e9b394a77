/// \file
/// Whether a coefficient file that the user chooses is for the camera that is open.
#pragma once

#include <QObject>
#include <QString>

#include <GenApi/GenApi.h>

namespace ffc::host {

/// Tells which file was chosen in a file dialog of this program that opens one; only the plug-in's does, for
/// coefficients. On the user-interface thread.
class CChosenFileWatch : public QObject {
  Q_OBJECT

public:
  explicit CChosenFileWatch(QObject *pParent);

signals:
  void SigChosen(const QString &strFile);

protected:
  bool eventFilter(QObject *pObject, QEvent *pEvent) override;
};

/// What the side file says of a coefficient file that does not fit the camera, as sentences; empty when it fits and
/// where there is no side file.
QString DescribeMisfit(const QString &strFile, GenApi::INodeMap &deviceMap);

} // namespace ffc::host
