#include "host/viewer/featuretext.h"

namespace ffc::host {

std::string ReadText(GenApi::IValue &value)
{
  try {
    return value.ToString().c_str();
  } catch (const GenICam::GenericException &exception) {
    return exception.GetDescription();
  }
}

std::string ReadFeature(GenApi::INodeMap &nodeMap, const char *pFeature)
{
  auto *pValue = dynamic_cast<GenApi::IValue *>(nodeMap.GetNode(pFeature));
  return pValue == nullptr ? std::string() : ReadText(*pValue);
}

} // namespace ffc::host
