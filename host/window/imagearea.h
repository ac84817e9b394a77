/// \file
/// The live image with all that belongs to looking at it.
#pragma once

#include <functional>
#include <memory>

#include <QKeySequence>
#include <QWidget>

#include "host/window/displaypicture.h"

class QAction;
class QMenu;
class QToolBar;

namespace ffc::host {

class CImageView;
class CInspectionBar;
class CStretchControl;

/// Tool bar, image and figures: stretch, raw beside corrected, over-exposed pixels, a region's figures, a line.
class CImageArea : public QWidget {
  Q_OBJECT

public:
  explicit CImageArea(QWidget *pParent = nullptr);

  /// The entries of the menu of the view, which the tool bar has too. Once.
  void FillMenu(QMenu &menu);
  CImageView &GetView() { return *m_pView; }

  /// \param pFrame null: none
  void SetFrame(const std::shared_ptr<const SFrameCopy> &pFrame);
  /// Figures follow a few times a second.
  void UpdateFigures();

  void RestoreSettings();
  void SaveSettings() const;

private:
  QAction *AddAction(QMenu &menu, const QString &strText, const QKeySequence &keys, std::function<void()> fnAction);
  QAction *AddOption(QMenu &menu, const QString &strText, const QKeySequence &keys, bool &bOption);
  void AddTools(QMenu &menu);
  void ShowPicture();
  void ShowSplit(const SDisplayOptions &stRight, const SDisplayOptions &stLeft);
  void ChooseRanges(SDisplayOptions &stRight, SDisplayOptions &stLeft);

  QToolBar *m_pTools;
  CImageView *m_pView;
  CInspectionBar *m_pInspection;
  CStretchControl *m_pStretch;
  QAction *m_pColor = nullptr;
  SDisplayOptions m_stDisplay;
  bool m_bSplit = false;
  std::shared_ptr<const SFrameCopy> m_pFrame;
  std::shared_ptr<const SFrameCopy> m_pPrevious; ///< for the noise of a region; kept only where one is marked
};

} // namespace ffc::host
