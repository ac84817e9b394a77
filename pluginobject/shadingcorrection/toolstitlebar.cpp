#include "pluginobject/shadingcorrection/toolstitlebar.h"

#include <new>

#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>
#include <QPushButton>
#include <QScreen>
#include <QStyle>
#include <QStyleOption>
#include <QTextDocument>

namespace {

constexpr int BAR_HEIGHT = 30;
constexpr int ITEM_WIDTH = 30;
constexpr int ITEM_HEIGHT = 28;
constexpr int BAR_MARGIN = 1;
constexpr int KEEP_OFF_BOTTOM = 50; // pixels of the work area in which a drag goes sideways only

// A text that shows as it is written: labels and tool tips take anything with a tag for markup.
QString Escape(const QString &strText)
{
  return Qt::mightBeRichText(strText)
           ? QStringLiteral("<span style='white-space:pre'>%1</span>").arg(strText.toHtmlEscaped())
           : strText;
}

enum EButtonType : int { BUTTON_TYPE_MIN_CLOSE = 0, BUTTON_TYPE_MIN_MAX_CLOSE = 1, BUTTON_TYPE_CLOSE = 2 };

QPushButton *MakeButton(QWidget *pParent, const char *pName)
{
  auto *pButton = new (std::nothrow) QPushButton(pParent);
  if (pButton != nullptr) {
    pButton->setObjectName(QLatin1String(pName));
    // The keyboard belongs to the window's content: Enter must never close the window.
    pButton->setFocusPolicy(Qt::NoFocus);
    pButton->setAutoDefault(false);
  }
  return pButton;
}

} // namespace

QToolsTitleBar::QToolsTitleBar(QWidget *pParent) : QWidget(pParent)
{
  setObjectName(QStringLiteral("QToolsTitleBar"));
  if (__CreateChildren()) {
    __ConnectButtons();
  }
}

bool QToolsTitleBar::__CreateChildren()
{
  m_pIconLabel = new (std::nothrow) QLabel(this);
  m_pTitleLabel = new (std::nothrow) QLabel(this);
  m_pButtonMin = MakeButton(this, "ButtonMin");
  m_pButtonRestore = MakeButton(this, "ButtonRestore");
  m_pButtonMax = MakeButton(this, "ButtonMax");
  m_pButtonClose = MakeButton(this, "ButtonClose");
  auto *pLayout = new (std::nothrow) QHBoxLayout(this);
  QWidget *const apFixedItems[] = {m_pIconLabel, m_pButtonMin, m_pButtonRestore, m_pButtonMax, m_pButtonClose};
  for (const QWidget *pItem : apFixedItems) {
    if (pItem == nullptr) {
      return false;
    }
  }
  if (m_pTitleLabel == nullptr || pLayout == nullptr) {
    return false;
  }

  for (QWidget *pItem : apFixedItems) {
    pItem->setFixedSize(ITEM_WIDTH, ITEM_HEIGHT);
  }
  m_pIconLabel->setAlignment(Qt::AlignCenter);
  m_pTitleLabel->setObjectName(QStringLiteral("TitleContent"));
  // Titles have names in them that a user or a camera chose.
  m_pTitleLabel->setTextFormat(Qt::PlainText);
  m_pTitleLabel->setFixedHeight(ITEM_HEIGHT);
  m_pTitleLabel->setMinimumWidth(0);
  m_pTitleLabel->setMaximumWidth(QWIDGETSIZE_MAX);
  m_pTitleLabel->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);

  for (QWidget *pItem : {static_cast<QWidget *>(m_pIconLabel), static_cast<QWidget *>(m_pTitleLabel),
                         static_cast<QWidget *>(m_pButtonMin), static_cast<QWidget *>(m_pButtonRestore),
                         static_cast<QWidget *>(m_pButtonMax), static_cast<QWidget *>(m_pButtonClose)}) {
    pLayout->addWidget(pItem);
  }
  pLayout->setContentsMargins(BAR_MARGIN, BAR_MARGIN, BAR_MARGIN, BAR_MARGIN);
  pLayout->setSpacing(0);
  setFixedHeight(BAR_HEIGHT);
  setWindowFlags(Qt::FramelessWindowHint);
  return true;
}

void QToolsTitleBar::__ConnectButtons()
{
  connect(m_pButtonMin, &QPushButton::clicked, this, &QToolsTitleBar::onButtonMinClicked);
  connect(m_pButtonRestore, &QPushButton::clicked, this, &QToolsTitleBar::onButtonRestoreClicked);
  connect(m_pButtonMax, &QPushButton::clicked, this, &QToolsTitleBar::onButtonMaxClicked);
  connect(m_pButtonClose, &QPushButton::clicked, this, &QToolsTitleBar::onButtonCloseClicked);
}

void QToolsTitleBar::setTitleIcon(bool bShow, const QString &strPath)
{
  if (m_pIconLabel == nullptr) {
    return;
  }
  if (!bShow) {
    m_pIconLabel->hide();
    return;
  }
  m_pIconLabel->setStyleSheet(QStringLiteral("background-color:#3c3f3f;"));
  m_pIconLabel->setPixmap(QPixmap(strPath));
  m_pIconLabel->show();
}

void QToolsTitleBar::setTitleContent(const QString &strTitle, int nFontSize)
{
  m_strTitle = strTitle;
  if (m_pTitleLabel == nullptr) {
    return;
  }
  QFont font = m_pTitleLabel->font();
  font.setPointSize(nFontSize);
  m_pTitleLabel->setFont(font);
  m_pTitleLabel->setText(strTitle);
  m_pTitleLabel->setToolTip(Escape(strTitle));
}

void QToolsTitleBar::setTitleWidth(int nWidth)
{
  setFixedWidth(nWidth);
}

void QToolsTitleBar::setButtonType(int nType)
{
  m_nButtonType = nType;
  if (m_pButtonMin == nullptr || m_pButtonRestore == nullptr || m_pButtonMax == nullptr) {
    return;
  }
  switch (nType) {
  case BUTTON_TYPE_MIN_CLOSE:
    m_pButtonRestore->hide();
    m_pButtonMax->hide();
    break;
  case BUTTON_TYPE_MIN_MAX_CLOSE: m_pButtonRestore->hide(); break;
  case BUTTON_TYPE_CLOSE:
    m_pButtonMin->hide();
    m_pButtonRestore->hide();
    m_pButtonMax->hide();
    break;
  default: break;
  }
}

void QToolsTitleBar::setWindowBorderWidth(int nWidth)
{
  m_nWindowBorderWidth = nWidth;
}

void QToolsTitleBar::saveRestoreInfo(const QPoint &posWindow, const QSize &sizeWindow)
{
  m_restorePos = posWindow;
  m_restoreSize = sizeWindow;
}

void QToolsTitleBar::getRestoreInfo(QPoint &posWindow, QSize &sizeWindow) const
{
  posWindow = m_restorePos;
  sizeWindow = m_restoreSize;
}

void QToolsTitleBar::paintEvent(QPaintEvent *pEvent)
{
  if (parentWidget() != nullptr) {
    const int nWidth = parentWidget()->width() - m_nWindowBorderWidth;
    if (width() != nWidth) {
      setFixedWidth(nWidth);
    }
  }
  // A plain QWidget child paints no style sheet background of its own.
  QStyleOption option;
  option.initFrom(this);
  QPainter painter(this);
  style()->drawPrimitive(QStyle::PE_Widget, &option, &painter, this);
  QWidget::paintEvent(pEvent);
}

void QToolsTitleBar::mouseDoubleClickEvent(QMouseEvent *pEvent)
{
  pEvent->accept();
  if (m_nButtonType != BUTTON_TYPE_MIN_MAX_CLOSE || m_pButtonMax == nullptr) {
    return;
  }
  if (m_pButtonMax->isVisible()) {
    onButtonMaxClicked();
  } else {
    onButtonRestoreClicked();
  }
}

void QToolsTitleBar::mousePressEvent(QMouseEvent *pEvent)
{
  pEvent->accept();
  const bool bMaximized = m_pButtonMax == nullptr || !m_pButtonMax->isVisible();
  if (m_nButtonType == BUTTON_TYPE_MIN_MAX_CLOSE && bMaximized) {
    return;
  }
  m_bPressed = true;
  m_lastGlobalPos = pEvent->globalPos();
}

void QToolsTitleBar::mouseMoveEvent(QMouseEvent *pEvent)
{
  pEvent->accept();
  if (!m_bPressed || parentWidget() == nullptr) {
    return;
  }
  const QPoint offset = pEvent->globalPos() - m_lastGlobalPos;
  m_lastGlobalPos = pEvent->globalPos();
  QPoint posWindow = parentWidget()->pos() + offset;
  if (m_lastGlobalPos.y() >= screen()->availableGeometry().bottom() - KEEP_OFF_BOTTOM) {
    posWindow.setY(parentWidget()->y());
  }
  parentWidget()->move(posWindow);
}

void QToolsTitleBar::mouseReleaseEvent(QMouseEvent *pEvent)
{
  pEvent->accept();
  m_bPressed = false;
}

void QToolsTitleBar::__ShowMaximizeButton(bool bMaximize)
{
  if (m_pButtonMax == nullptr || m_pButtonRestore == nullptr) {
    return;
  }
  m_pButtonRestore->setVisible(!bMaximize);
  m_pButtonMax->setVisible(bMaximize);
}

void QToolsTitleBar::onButtonMinClicked()
{
  if (parentWidget() != nullptr) {
    parentWidget()->showMinimized();
  }
  emit signalButtonMinClicked();
}

void QToolsTitleBar::onButtonRestoreClicked()
{
  if (parentWidget() != nullptr) {
    parentWidget()->showNormal();
  }
  __ShowMaximizeButton(true);
  emit signalButtonRestoreClicked();
}

void QToolsTitleBar::onButtonMaxClicked()
{
  if (parentWidget() != nullptr) {
    parentWidget()->showMaximized();
  }
  __ShowMaximizeButton(false);
  emit signalButtonMaxClicked();
}

void QToolsTitleBar::onButtonCloseClicked()
{
  if (parentWidget() != nullptr) {
    parentWidget()->close();
  }
  emit signalButtonCloseClicked();
}
