/// \file
/// All features of a camera.
#pragma once

#include <GenApi/GenApi.h>
#include <QDialog>

class QLabel;
class QLineEdit;
class QTreeWidget;
class QTreeWidgetItem;

namespace ffc::host {

/// A tree of the camera's features by the first word of their names, with a field to search in, and the camera's own
/// tool tips. What can be written is edited in its place; nothing is executed here. User-interface thread.
class CFeatureBrowser : public QDialog {
  Q_OBJECT

public:
  /// \param map of the camera; outlives the dialog
  CFeatureBrowser(GenApi::INodeMap &map, QWidget *pParent);

  /// Reads all values anew.
  void Refresh();

signals:
  void SigWritten();

private:
  void Fill();
  void Search(const QString &strText);
  void ShowNode(QTreeWidgetItem &item);
  void Write(QTreeWidgetItem &item);

  GenApi::INodeMap &m_map;
  QLineEdit *m_pSearch;
  QTreeWidget *m_pTree;
  QLabel *m_pError;
  bool m_bShowing = false;
};

} // namespace ffc::host
