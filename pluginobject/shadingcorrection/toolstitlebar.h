/// \file
/// The title bar of the frameless dialogs.
#pragma once

#include <QPoint>
#include <QSize>
#include <QString>
#include <QWidget>

class QLabel;
class QPushButton;

/// Icon, title and window buttons, drawn inside a frameless window that it also drags, minimises,
/// maximises and closes.
///
/// It acts on its parent, which must be the window itself. It lies over the window's top 30 pixels
/// outside any layout and follows the window's width when it is painted. All operations belong to the
/// user-interface thread.
class QToolsTitleBar : public QWidget {
  Q_OBJECT

public:
  /// Builds the bar. When memory runs out it stays empty, and every operation is still safe to call.
  explicit QToolsTitleBar(QWidget *pParent = nullptr);

  /// Shows the picture at strPath as icon, or hides the icon (the path is not looked at then).
  void setTitleIcon(bool bShow, const QString &strPath);
  /// Shows strTitle, also as tool tip, in nFontSize points.
  void setTitleContent(const QString &strTitle, int nFontSize);
  /// Fixes the bar's width in pixels; painting fits it to the window again.
  void setTitleWidth(int nWidth);
  /// 0: minimise and close; 1: minimise, maximise and close; 2: close only. Other values leave the
  /// buttons as they are.
  void setButtonType(int nType);
  /// How many pixels narrower than its window the bar is kept.
  void setWindowBorderWidth(int nWidth);

  /// Keeps the window's normal geometry for its owner.
  void saveRestoreInfo(const QPoint &posWindow, const QSize &sizeWindow);
  /// Gives back what saveRestoreInfo() was given last.
  void getRestoreInfo(QPoint &posWindow, QSize &sizeWindow) const;

signals:
  void signalButtonMinClicked();
  void signalButtonRestoreClicked();
  void signalButtonMaxClicked();
  void signalButtonCloseClicked();

protected:
  void paintEvent(QPaintEvent *pEvent) override;
  void mouseDoubleClickEvent(QMouseEvent *pEvent) override;
  void mousePressEvent(QMouseEvent *pEvent) override;
  void mouseMoveEvent(QMouseEvent *pEvent) override;
  void mouseReleaseEvent(QMouseEvent *pEvent) override;

private slots:
  void onButtonMinClicked();
  void onButtonRestoreClicked();
  void onButtonMaxClicked();
  void onButtonCloseClicked();

private:
  bool __CreateChildren();
  void __ConnectButtons();
  void __ShowMaximizeButton(bool bMaximize);

  QLabel *m_pIconLabel = nullptr;
  QLabel *m_pTitleLabel = nullptr;
  QPushButton *m_pButtonMin = nullptr;
  QPushButton *m_pButtonRestore = nullptr;
  QPushButton *m_pButtonMax = nullptr;
  QPushButton *m_pButtonClose = nullptr;
  QPoint m_restorePos;
  QSize m_restoreSize;
  bool m_bPressed = false; ///< a drag is under way
  QPoint m_lastGlobalPos;  ///< of the cursor, at the last press or move
  QString m_strTitle;
  int m_nButtonType = 1;
  int m_nWindowBorderWidth = 0;
};
