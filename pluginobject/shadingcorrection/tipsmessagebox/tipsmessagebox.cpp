#include "pluginobject/shadingcorrection/tipsmessagebox/tipsmessagebox.h"

#include <memory>
#include <new>

#include <QDebug>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>
#include <QVBoxLayout>

#include "pluginobject/shadingcorrection/toolstitlebar.h"

namespace {

constexpr int TITLE_BAR_HEIGHT = 30;
constexpr int TITLE_POINT_SIZE = 8;
constexpr int TITLE_BUTTONS_CLOSE_ONLY = 2;
constexpr int BUTTON_WIDTH = 90;
constexpr int BUTTON_HEIGHT = 32;
constexpr int ICON_SIZE = 32;
constexpr int MESSAGE_WIDTH = 450;
constexpr int CONTENT_SPACING = 16;
constexpr const char *STYLE_SHEET = ":/skin/style/PlugAcqstatusSetting.qss";

// What a button set shows. A null text hides its button.
struct SButtonTexts {
  int nButtons;
  const char *pOK;
  const char *pCancel;
};

constexpr SButtonTexts BUTTON_TEXTS[] = {
  {0x400, QT_TRANSLATE_NOOP("QObject", "OK"), nullptr},
  {0x14000, QT_TRANSLATE_NOOP("QObject", "Yes"), QT_TRANSLATE_NOOP("QObject", "No")},
  {0x14001, QT_TRANSLATE_NOOP("QObject", "continue"), QT_TRANSLATE_NOOP("QObject", "Canel")},
  {0x402000, QT_TRANSLATE_NOOP("QObject", "OK"), QT_TRANSLATE_NOOP("QObject", "Canel")},
};

struct SKindLook {
  CTipsMessageBox::EKind eKind;
  const char *pTitle;
  const char *pIcon;
};

constexpr SKindLook KIND_LOOKS[] = {
  {CTipsMessageBox::EKind::Tips, QT_TRANSLATE_NOOP("CTipsMessageBox", "Tips"), ":/skin/images/TipBig.png"},
  {CTipsMessageBox::EKind::Warning, QT_TRANSLATE_NOOP("CTipsMessageBox", "Warning"), ":/skin/images/WarningBig.png"},
  {CTipsMessageBox::EKind::Error, QT_TRANSLATE_NOOP("CTipsMessageBox", "Error"), ":/skin/images/ErrorBig.png"},
};

// Says in the debug output that the creation checked on line nLine has failed.
bool IsCreated(const void *pCreated, int nLine)
{
  if (pCreated == nullptr) {
    qDebug() << "src\\pluginobject\\vs2008\\shadingcorrection\\tipsmessagebox"
             << "(" << nLine << ")"
             << "CTipsMessageBox::__InitUIModule"
             << " warning:"
             << "Null Pointer!";
  }
  return pCreated != nullptr;
}

// Creates a child of pParent. nLine is the caller's.
template <class Object>
bool Create(Object *&pCreated, QWidget *pParent, int nLine)
{
  pCreated = new (std::nothrow) Object(pParent);
  return IsCreated(pCreated, nLine);
}

// Creates a layout that stays the caller's until it is placed in another one. nLine is the caller's.
template <class Layout>
bool Create(std::unique_ptr<Layout> &pCreated, int nLine)
{
  pCreated.reset(new (std::nothrow) Layout);
  return IsCreated(pCreated.get(), nLine);
}

void SetUniform(QBoxLayout &layout, int nMargin, int nSpacing)
{
  layout.setContentsMargins(nMargin, nMargin, nMargin, nMargin);
  layout.setSpacing(nSpacing);
}

void SetButtonText(QPushButton *pButton, const char *pText)
{
  if (pButton == nullptr) {
    return;
  }
  if (pText == nullptr) {
    pButton->hide();
  } else {
    pButton->setText(QObject::tr(pText));
  }
}

int RunBox(CTipsMessageBox::EKind eKind, const QString &strMessage, const QString &strTitle,
           QMessageBox::StandardButtons nButtons)
{
  CTipsMessageBox box(strMessage, strTitle, eKind, nButtons);
  return box.exec();
}

} // namespace

CTipsMessageBox::CTipsMessageBox(const QString &strMessage, const QString &strTitle, EKind eKind,
                                 QMessageBox::StandardButtons nButtons, QWidget *pParent)
  : QDialog(pParent, Qt::FramelessWindowHint), m_strTitle(strTitle)
{
  __Initialize(); // a partial box still runs
  __SetMessage(strMessage);
  __SetTitle(strTitle);
  __SetButtons(nButtons);
  __SetKind(eKind);
}

void CTipsMessageBox::__Initialize()
{
  // The steps after it cannot fail.
  if (__InitUIModule()) {
    __InitStyleSheet();
    __InitConnections();
  }
}

bool CTipsMessageBox::__InitUIModule()
{
  setObjectName(QStringLiteral("TipsMessageBox"));
  return __CreateControls() && __CreateTitleBar() && __CreateLayouts();
}

bool CTipsMessageBox::__CreateControls()
{
  if (!Create(m_pButtonOK, this, __LINE__)) {
    return false;
  }
  m_pButtonOK->setFixedSize(BUTTON_WIDTH, BUTTON_HEIGHT);
  if (!Create(m_pButtonCancel, this, __LINE__)) {
    return false;
  }
  m_pButtonCancel->setFixedSize(BUTTON_WIDTH, BUTTON_HEIGHT);
  if (!Create(m_pMessageLabel, this, __LINE__)) {
    return false;
  }
  // Messages have texts of cameras in them.
  m_pMessageLabel->setTextFormat(Qt::PlainText);
  m_pMessageLabel->setMaximumWidth(MESSAGE_WIDTH);
  m_pMessageLabel->setWordWrap(true);
  if (!Create(m_pIconLabel, this, __LINE__)) {
    return false;
  }
  m_pIconLabel->setFixedSize(ICON_SIZE, ICON_SIZE);
  return true;
}

bool CTipsMessageBox::__CreateTitleBar()
{
  if (!Create(m_pTitleBar, this, __LINE__)) {
    return false;
  }
  m_pTitleBar->setTitleIcon(false, QString());
  m_pTitleBar->setButtonType(TITLE_BUTTONS_CLOSE_ONLY);
  m_pTitleBar->setFixedHeight(TITLE_BAR_HEIGHT);
  return true;
}

bool CTipsMessageBox::__CreateLayouts()
{
  std::unique_ptr<QHBoxLayout> pUpperRow;
  std::unique_ptr<QHBoxLayout> pLowerRow;
  std::unique_ptr<QVBoxLayout> pContent;
  std::unique_ptr<QVBoxLayout> pFrame;
  QGroupBox *pGroup = nullptr;
  QVBoxLayout *pBox = nullptr;
  // Each check logs a line of its own.
  // clang-format off
  if (!Create(pUpperRow, __LINE__) ||
      !Create(pLowerRow, __LINE__) ||
      !Create(pContent, __LINE__) ||
      !Create(pGroup, this, __LINE__) ||
      !Create(pFrame, __LINE__) ||
      !Create(pBox, this, __LINE__)) {
    return false;
  }
  // clang-format on

  SetUniform(*pUpperRow, 0, CONTENT_SPACING);
  pUpperRow->addWidget(m_pIconLabel, 0, Qt::AlignTop);
  pUpperRow->addWidget(m_pMessageLabel);
  SetUniform(*pLowerRow, 0, CONTENT_SPACING);
  pLowerRow->addStretch();
  pLowerRow->addWidget(m_pButtonOK);
  pLowerRow->addWidget(m_pButtonCancel);
  pLowerRow->addStretch();
  SetUniform(*pContent, CONTENT_SPACING, CONTENT_SPACING);
  pContent->addLayout(pUpperRow.release());
  pContent->addLayout(pLowerRow.release());
  pGroup->setObjectName(QStringLiteral("GroupMessageBoxMain"));
  pGroup->setLayout(pContent.release());
  SetUniform(*pFrame, 0, 0);
  pFrame->addWidget(pGroup);
  SetUniform(*pBox, 0, 0);
  pBox->addSpacing(TITLE_BAR_HEIGHT);
  pBox->addLayout(pFrame.release());
  return true;
}

void CTipsMessageBox::__InitStyleSheet()
{
  QFile file(QString::fromLatin1(STYLE_SHEET));
  const bool bOpen = file.open(QIODevice::ReadOnly);
  setStyleSheet(bOpen ? QString::fromLatin1(file.readAll()) : QString()); // a box without style is still a box
}

void CTipsMessageBox::__InitConnections()
{
  connect(m_pButtonOK, &QPushButton::clicked, this, &CTipsMessageBox::__SlotClickedOK);
  connect(m_pButtonCancel, &QPushButton::clicked, this, &CTipsMessageBox::__SlotClickedCancel);
}

void CTipsMessageBox::__SetMessage(const QString &strMessage)
{
  if (m_pMessageLabel != nullptr) {
    m_pMessageLabel->setText(strMessage);
  }
}

void CTipsMessageBox::__SetTitle(const QString &strTitle)
{
  m_strTitle = strTitle;
  __ShowTitle(strTitle);
}

void CTipsMessageBox::__ShowTitle(const QString &strTitle)
{
  if (m_pTitleBar != nullptr) {
    m_pTitleBar->setTitleContent(strTitle, TITLE_POINT_SIZE);
  }
}

void CTipsMessageBox::__SetButtons(QMessageBox::StandardButtons nButtons)
{
  SButtonTexts stTexts = {0, nullptr, nullptr};
  for (const SButtonTexts &stKnown : BUTTON_TEXTS) {
    if (stKnown.nButtons == static_cast<int>(nButtons)) {
      stTexts = stKnown;
    }
  }
  SetButtonText(m_pButtonOK, stTexts.pOK);
  SetButtonText(m_pButtonCancel, stTexts.pCancel);
}

void CTipsMessageBox::__SetKind(EKind eKind)
{
  for (const SKindLook &stLook : KIND_LOOKS) {
    if (stLook.eKind != eKind) {
      continue;
    }
    if (m_strTitle.isEmpty()) {
      __ShowTitle(tr(stLook.pTitle));
    }
    if (m_pIconLabel != nullptr) {
      m_pIconLabel->setPixmap(QPixmap(QString::fromLatin1(stLook.pIcon)));
      m_pIconLabel->setScaledContents(true);
    }
    return;
  }
  if (m_pIconLabel != nullptr) {
    m_pIconLabel->hide();
  }
}

void CTipsMessageBox::__SlotClickedOK()
{
  done(Accepted);
}

void CTipsMessageBox::__SlotClickedCancel()
{
  done(Rejected);
}

int CTipsMessageBox::Warning(QWidget *, const QString &strTitle, const QString &strMessage,
                             QMessageBox::StandardButtons nButtons, QMessageBox::StandardButton)
{
  return RunBox(EKind::Warning, strMessage, strTitle, nButtons);
}

int CTipsMessageBox::Tips(QWidget *, const QString &strTitle, const QString &strMessage,
                          QMessageBox::StandardButtons nButtons, QMessageBox::StandardButton)
{
  return RunBox(EKind::Tips, strMessage, strTitle, nButtons);
}

int CTipsMessageBox::Error(QWidget *, const QString &strTitle, const QString &strMessage,
                           QMessageBox::StandardButtons nButtons, QMessageBox::StandardButton)
{
  return RunBox(EKind::Error, strMessage, strTitle, nButtons);
}

int CTipsMessageBox::Warning(const QString &strMessage, const QString &strTitle, QMessageBox::StandardButtons nButtons)
{
  return RunBox(EKind::Warning, strMessage, strTitle, nButtons);
}

int CTipsMessageBox::Tips(const QString &strMessage, const QString &strTitle, QMessageBox::StandardButtons nButtons)
{
  return RunBox(EKind::Tips, strMessage, strTitle, nButtons);
}

int CTipsMessageBox::Error(const QString &strMessage, const QString &strTitle, QMessageBox::StandardButtons nButtons)
{
  return RunBox(EKind::Error, strMessage, strTitle, nButtons);
}

int CTipsMessageBox::Error(const char *pMessage, const char *pTitle, QMessageBox::StandardButtons nButtons)
{
  return RunBox(EKind::Error, QString::fromUtf8(pMessage), QString::fromUtf8(pTitle), nButtons);
}

int CTipsMessageBox::Tips(const char *pMessage, const char *pTitle, QMessageBox::StandardButtons nButtons)
{
  return RunBox(EKind::Tips, QString::fromUtf8(pMessage), QString::fromUtf8(pTitle), nButtons);
}
