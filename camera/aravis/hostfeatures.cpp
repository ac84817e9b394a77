#include "camera/aravis/hostfeatures.h"

#include <utility>

namespace ffc::camera {

namespace {

template <class TInterface>
TInterface *Find(GenApi::INodeMap &map, const char *pName)
{
  return dynamic_cast<TInterface *>(map.GetNode(pName));
}

} // namespace

CHostFeatures::CHostFeatures(GenApi::INodeMap &deviceMap, const std::string &strDisplayName,
                             std::function<void(EBufferHandling)> fnHandling)
{
  m_streamMap.AddEnumeration("StreamBufferHandlingMode")
    .Entry("OldestFirst", static_cast<int64_t>(EBufferHandling::OldestFirst))
    .Entry("OldestFirstOverwrite", static_cast<int64_t>(EBufferHandling::OldestFirstOverwrite))
    .Entry("NewestOnly", static_cast<int64_t>(EBufferHandling::NewestOnly))
    .Strict()
    .OnWrite(
      [fnHandling = std::move(fnHandling)](int64_t nValue) { fnHandling(static_cast<EBufferHandling>(nValue)); });
  AddPixelFormat(Find<GenApi::IEnumeration>(deviceMap, "PixelFormat"));
  AddMirror("OutputPayloadSize", Find<GenApi::IInteger>(deviceMap, "PayloadSize"));
  AddMirror("OutputWidth", Find<GenApi::IInteger>(deviceMap, "Width"));
  AddMirror("OutputHeight", Find<GenApi::IInteger>(deviceMap, "Height"));
  m_outputMap.AddString("DeviceDisplayName", strDisplayName).Access(GenApi::RO);
}

void CHostFeatures::AddMirror(const char *pName, GenApi::IInteger *pSource)
{
  if (pSource != nullptr) {
    m_outputMap.AddInteger(pName).OnRead([pSource] { return pSource->GetValue(); });
  }
}

void CHostFeatures::AddPixelFormat(GenApi::IEnumeration *pSource)
{
  if (pSource == nullptr) {
    return;
  }
  genapi::CSoftwareEnumeration &node = m_outputMap.AddEnumeration("OutPixelFormat");
  GenApi::NodeList_t listEntries;
  pSource->GetEntries(listEntries); // of the description: the camera is not asked
  for (GenApi::INode *pNode : listEntries) {
    auto *pEntry = dynamic_cast<GenApi::IEnumEntry *>(pNode);
    node.Entry(pEntry->GetSymbolic().c_str(), pEntry->GetValue());
  }
  node.OnRead([pSource] { return pSource->GetIntValue(); });
}

} // namespace ffc::camera
