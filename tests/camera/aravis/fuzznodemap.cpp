#include "tests/fuzz/fuzztargets.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <limits>

#include "tests/camera/aravis/memorydevice.h"

using ffc::test::CMemoryDevice;

namespace {

constexpr std::size_t LARGEST_DESCRIPTION = 65536;
constexpr std::size_t LEAST_MEMORY = 64;
constexpr int64_t LARGEST_REGISTER = 4096; ///< that is read here; larger ones only take time

void Demand(bool bHolds, const char *pPromise)
{
  if (!bHolds) {
    std::cerr << "broken: " << pPromise << std::endl;
    std::abort();
  }
}

/// The exceptions of GenApi are answers; any other one is not caught and ends the program.
template <class TAction>
bool Succeeds(TAction fnAction)
{
  try {
    fnAction();
    return true;
  } catch (const GenICam::GenericException &) {
    return false;
  }
}

void TryInteger(GenApi::IInteger &node)
{
  Succeeds([&] { node.GetValue(true); });
  Succeeds([&] { Demand(node.GetInc() >= 1, "an increment is at least 1"); });
  int64_t nMax = std::numeric_limits<int64_t>::max();
  if (Succeeds([&] { nMax = node.GetMax(); }) && nMax < std::numeric_limits<int64_t>::max()) {
    Demand(!Succeeds([&] { node.SetValue(nMax + 1); }), "a verified value above the maximum is refused");
  }
  Succeeds([&] { node.SetValue(node.GetMin()); });
  Succeeds([&] { node.SetValue(-1, false); });
  Succeeds([&] { node.FromString("0x7FFFFFFFFFFFFFFF"); });
}

void TryFloat(GenApi::IFloat &node)
{
  Succeeds([&] { node.GetValue(true); });
  Succeeds([&] { node.GetMax(); });
  Succeeds([&] { node.SetValue(node.GetMin()); });
  Demand(!Succeeds([&] { node.SetValue(std::numeric_limits<double>::quiet_NaN()); }), "NaN is in no range");
  bool bStepped = false;
  Succeeds([&] { bStepped = node.HasInc(); });
  Demand(bStepped == Succeeds([&] { node.GetInc(); }), "an increment can be read where there is one");
}

void TryEnumeration(GenApi::IEnumeration &node)
{
  GenApi::NodeList_t listEntries;
  Succeeds([&] { node.GetEntries(listEntries); });
  for (GenApi::INode *pNode : listEntries) {
    auto *pEntry = dynamic_cast<GenApi::IEnumEntry *>(pNode);
    Demand(pEntry != nullptr, "an entry is an entry");
    pEntry->GetAccessMode();
    Succeeds([&] {
      Demand(node.GetEntryByName(pEntry->GetSymbolic()) != nullptr, "an entry is found by its name");
      node.FromString(pEntry->GetSymbolic());
    });
  }
  Succeeds([&] { node.GetCurrentEntry(); });
  Succeeds([&] { node.SetIntValue(std::numeric_limits<int64_t>::min()); });
}

void TryString(GenApi::IString &node)
{
  Succeeds([&] { node.GetValue(true); });
  int64_t nMax = 0;
  if (Succeeds([&] { nMax = node.GetMaxLength(); }) && nMax >= 0 && nMax < LARGEST_REGISTER) {
    Succeeds([&] { node.SetValue(std::string(std::size_t(nMax), 'x').c_str()); });
  }
  Succeeds([&] { node.SetValue("text"); });
}

void TryRegister(GenApi::IRegister &node)
{
  int64_t nLength = 0;
  if (!Succeeds([&] { nLength = node.GetLength(); })) {
    return;
  }
  Demand(nLength > 0, "a register that can be used has bytes");
  std::vector<uint8_t> listBytes(std::size_t(std::min(nLength, LARGEST_REGISTER)));
  const auto nBytes = int64_t(listBytes.size());
  Succeeds([&] { node.Get(listBytes.data(), nBytes); });
  Succeeds([&] { node.Set(listBytes.data(), nBytes); });
  Succeeds([&] { node.GetAddress(); });
}

void TryNode(GenApi::INode &node)
{
  Demand(!node.GetName().empty(), "a node has a name");
  const GenApi::EAccessMode eMode = node.GetAccessMode();
  Demand(eMode >= GenApi::NI && eMode <= GenApi::RW, "an access mode is one of five");
  if (auto *pInteger = dynamic_cast<GenApi::IInteger *>(&node)) {
    TryInteger(*pInteger);
  } else if (auto *pFloat = dynamic_cast<GenApi::IFloat *>(&node)) {
    TryFloat(*pFloat);
  } else if (auto *pEnumeration = dynamic_cast<GenApi::IEnumeration *>(&node)) {
    TryEnumeration(*pEnumeration);
  } else if (auto *pString = dynamic_cast<GenApi::IString *>(&node)) {
    TryString(*pString);
  } else if (auto *pRegister = dynamic_cast<GenApi::IRegister *>(&node)) {
    TryRegister(*pRegister);
  } else if (auto *pCommand = dynamic_cast<GenApi::ICommand *>(&node)) {
    Succeeds([&] { pCommand->Execute(); });
    Succeeds([&] { pCommand->IsDone(); });
  }
  // The text of a register is as long as it is.
  auto *pValue = dynamic_cast<GenApi::IValue *>(&node);
  if (pValue != nullptr && dynamic_cast<GenApi::IRegister *>(&node) == nullptr) {
    Succeeds([&] { pValue->ToString(); });
    Succeeds([&] { pValue->FromString("1"); });
  }
}

void DropRemark(const gchar *, GLogLevelFlags, const gchar *, gpointer) {}

} // namespace

void FuzzAravisNodeMap(const uint8_t *pData, std::size_t nSize)
{
  const uint8_t *const pEnd = pData + nSize;
  const uint8_t *const pZero = std::find(pData, pEnd, uint8_t{0});
  if (std::size_t(pZero - pData) > LARGEST_DESCRIPTION) {
    return;
  }
  // The library has much to say about such a file.
  const GLogFunc fnLog = g_log_set_default_handler(DropRemark, nullptr);
  std::vector<uint8_t> listBytes(pZero == pEnd ? pEnd : pZero + 1, pEnd);
  listBytes.resize(std::max(listBytes.size(), LEAST_MEMORY));
  CMemoryDevice device(std::string(pData, pZero), std::move(listBytes));
  device.Memory().bRepeats = true;
  if (device.GetMap() != nullptr) {
    GenApi::NodeList_t listNodes;
    device.GetMap()->GetNodes(listNodes);
    for (GenApi::INode *pNode : listNodes) {
      TryNode(*pNode);
    }
  }
  g_log_set_default_handler(fnLog, nullptr);
}
