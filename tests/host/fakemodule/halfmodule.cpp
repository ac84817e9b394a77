/// \file
/// A module that has only one of the two exports.

#include <QtGlobal>

extern "C" Q_DECL_EXPORT void *CreatePluginObject()
{
  return nullptr;
}
