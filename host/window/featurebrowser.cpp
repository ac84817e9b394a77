#include "host/window/featurebrowser.h"

#include <QLabel>
#include <QLineEdit>
#include <QMap>
#include <QPushButton>
#include <QRegularExpression>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "camera/idescribednode.h"
#include "host/viewer/featuretext.h"
#include "host/window/appearance.h"

namespace ffc::host {
namespace {

constexpr int VALUE_COLUMN = 1;
constexpr QSize FIRST_SIZE(520, 620);

/// "Exposure" of "ExposureTime", "FFC" of "FFCExpectGray": names are words that begin with a capital.
QString GetFirstWord(const QString &strName)
{
  static const QRegularExpression word(QStringLiteral("^([A-Z]+(?=[A-Z][a-z])|[A-Z]?[a-z0-9]+|[A-Z]+)"));
  const QRegularExpressionMatch match = word.match(strName);
  return match.hasMatch() ? match.captured(1) : strName;
}

/// Something that has a value which a text can hold.
GenApi::IValue *GetValue(GenApi::INode *pNode)
{
  const bool bText = dynamic_cast<GenApi::ICommand *>(pNode) == nullptr &&
                     dynamic_cast<GenApi::IRegister *>(pNode) == nullptr &&
                     dynamic_cast<GenApi::IEnumEntry *>(pNode) == nullptr;
  return bText && GenApi::IsReadable(pNode) ? dynamic_cast<GenApi::IValue *>(pNode) : nullptr;
}

} // namespace

CFeatureBrowser::CFeatureBrowser(GenApi::INodeMap &map, QWidget *pParent)
  : QDialog(pParent), m_map(map), m_pSearch(new QLineEdit(this)), m_pTree(new QTreeWidget(this)),
    m_pError(new QLabel(this))
{
  setObjectName(QStringLiteral("FeatureBrowser"));
  setWindowTitle(tr("Features of the camera"));
  resize(FIRST_SIZE);
  m_pSearch->setObjectName(QStringLiteral("FeatureSearch"));
  m_pSearch->setPlaceholderText(tr("Search"));
  m_pSearch->setClearButtonEnabled(true);
  m_pTree->setObjectName(QStringLiteral("FeatureTree"));
  m_pTree->setHeaderLabels({tr("Feature"), tr("Value")});
  m_pTree->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
  m_pTree->setAlternatingRowColors(true);
  m_pError->setObjectName(QStringLiteral("FeatureError"));
  m_pError->setWordWrap(true);
  QPushButton *pRefresh = new QPushButton(tr("&Read anew"), this);
  pRefresh->setAutoDefault(false);
  QVBoxLayout *pLayout = new QVBoxLayout(this);
  pLayout->addWidget(m_pSearch);
  pLayout->addWidget(m_pTree, 1);
  pLayout->addWidget(m_pError);
  pLayout->addWidget(pRefresh);
  connect(m_pSearch, &QLineEdit::textChanged, this, &CFeatureBrowser::Search);
  connect(pRefresh, &QPushButton::clicked, this, &CFeatureBrowser::Refresh);
  connect(m_pTree, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem *pItem) { Write(*pItem); });
  Fill();
}

void CFeatureBrowser::Fill()
{
  GenApi::NodeList_t listNodes;
  m_map.GetNodes(listNodes);
  QMap<QString, QMap<QString, GenApi::INode *>> mapGroups;
  for (GenApi::INode *pNode : listNodes) {
    if (GetValue(pNode) != nullptr) {
      const QString strName = QString::fromUtf8(pNode->GetName().c_str());
      mapGroups[GetFirstWord(strName)].insert(strName, pNode);
    }
  }
  m_bShowing = true;
  for (auto itGroup = mapGroups.cbegin(); itGroup != mapGroups.cend(); ++itGroup) {
    auto *pGroup = new QTreeWidgetItem(m_pTree, {itGroup.key()});
    for (auto it = itGroup.value().cbegin(); it != itGroup.value().cend(); ++it) {
      ShowNode(*new QTreeWidgetItem(pGroup, {it.key()}));
    }
  }
  m_bShowing = false;
  m_pTree->expandAll(); // for the names in the groups, which a search will show
  m_pTree->resizeColumnToContents(0);
  m_pTree->collapseAll();
}

void CFeatureBrowser::Refresh()
{
  m_bShowing = true;
  for (int nGroup = 0; nGroup < m_pTree->topLevelItemCount(); ++nGroup) {
    for (int nItem = 0; nItem < m_pTree->topLevelItem(nGroup)->childCount(); ++nItem) {
      ShowNode(*m_pTree->topLevelItem(nGroup)->child(nItem));
    }
  }
  m_bShowing = false;
}

void CFeatureBrowser::ShowNode(QTreeWidgetItem &item)
{
  GenApi::INode *pNode = m_map.GetNode(item.text(0).toUtf8().constData());
  GenApi::IValue *pValue = GetValue(pNode);
  const bool bWritable = GenApi::IsWritable(pNode);
  item.setText(VALUE_COLUMN, pValue == nullptr ? tr("(not available now)") : QString::fromStdString(ReadText(*pValue)));
  item.setFlags(bWritable ? item.flags() | Qt::ItemIsEditable : item.flags() & ~Qt::ItemIsEditable);
  const auto *pDescribed = dynamic_cast<camera::IDescribedNode *>(pNode);
  const QString strTip = pDescribed == nullptr ? QString() : QString::fromStdString(pDescribed->GetToolTip());
  item.setToolTip(0, strTip);
  item.setToolTip(VALUE_COLUMN, bWritable ? strTip : tr("%1\nCannot be written now").arg(strTip).trimmed());
}

/// In names and tool tips.
void CFeatureBrowser::Search(const QString &strText)
{
  for (int nGroup = 0; nGroup < m_pTree->topLevelItemCount(); ++nGroup) {
    QTreeWidgetItem &group = *m_pTree->topLevelItem(nGroup);
    int nFound = 0;
    for (int nItem = 0; nItem < group.childCount(); ++nItem) {
      QTreeWidgetItem &item = *group.child(nItem);
      const bool bFound =
        item.text(0).contains(strText, Qt::CaseInsensitive) || item.toolTip(0).contains(strText, Qt::CaseInsensitive);
      item.setHidden(!bFound);
      nFound += bFound ? 1 : 0;
    }
    group.setHidden(nFound == 0);
    group.setExpanded(!strText.isEmpty());
  }
}

void CFeatureBrowser::Write(QTreeWidgetItem &item)
{
  if (m_bShowing || item.parent() == nullptr) {
    return;
  }
  QString strError;
  auto &value = dynamic_cast<GenApi::IValue &>(*m_map.GetNode(item.text(0).toUtf8().constData())); // see Fill
  try {
    if (QString::fromStdString(ReadText(value)) != item.text(VALUE_COLUMN)) {
      value.FromString(item.text(VALUE_COLUMN).toUtf8().constData());
      emit SigWritten();
    }
  } catch (const GenICam::GenericException &exception) {
    strError = tr("%1: the camera refuses the value (%2). Enter another one.")
                 .arg(item.text(0), QString::fromUtf8(exception.GetDescription()));
  }
  m_pError->setText(strError);
  SetWarning(*m_pError, true);
  Refresh(); // one feature may change others
}

} // namespace ffc::host
