// The stand-in's node library: enough to link against.
#include <GenApi/GenApi.h>

#include <vector>

namespace GENAPI_NAMESPACE {

namespace {

std::vector<INode *> &List(void *pv)
{
  return *static_cast<std::vector<INode *> *>(pv);
}

} // namespace

node_vector::iterator::iterator(INode **pn) : _pn(pn) {}
INode *&node_vector::iterator::operator*() const
{
  return *_pn;
}
node_vector::iterator &node_vector::iterator::operator++()
{
  ++_pn;
  return *this;
}
bool node_vector::iterator::operator!=(const iterator &rhs) const
{
  return _pn != rhs._pn;
}
bool node_vector::iterator::operator==(const iterator &rhs) const
{
  return _pn == rhs._pn;
}

node_vector::node_vector() : _pv(new std::vector<INode *>) {}
node_vector::~node_vector()
{
  delete &List(_pv);
}
node_vector::iterator node_vector::begin()
{
  return iterator(List(_pv).data());
}
node_vector::iterator node_vector::end()
{
  return iterator(List(_pv).data() + List(_pv).size());
}
INode *&node_vector::operator[](size_t uiIndex)
{
  return List(_pv)[uiIndex];
}
size_t node_vector::size() const
{
  return List(_pv).size();
}
bool node_vector::empty() const
{
  return List(_pv).empty();
}
void node_vector::push_back(INode *const &pNode)
{
  List(_pv).push_back(pNode);
}

} // namespace GENAPI_NAMESPACE
