#include "camera/aravis/nodemap/floatchain.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "camera/aravis/gobject.h"
#include "camera/aravis/nodemap/nodelinks.h"

namespace ffc::camera {

namespace {

using Evaluator = CObjectPointer<ArvEvaluator>;

/// The two directions of a converter, with its variables as they are now.
struct SConversion {
  Evaluator pTo;
  Evaluator pFrom;
};

void AddVariable(ArvGcPropertyNode *pProperty, ArvEvaluator *pEvaluator, GError **ppError)
{
  ArvGcNode *pVariable = arv_gc_property_node_get_linked_node(pProperty);
  const char *pName = arv_gc_property_node_get_name(pProperty);
  if (ARV_IS_GC_INTEGER(pVariable)) {
    arv_evaluator_set_int64_variable(pEvaluator, pName, arv_gc_integer_get_value(ARV_GC_INTEGER(pVariable), ppError));
  } else if (ARV_IS_GC_FLOAT(pVariable)) {
    arv_evaluator_set_double_variable(pEvaluator, pName, arv_gc_float_get_value(ARV_GC_FLOAT(pVariable), ppError));
  }
}

/// Constants, expressions and variables of a converter's formula.
void AddDefinitions(ArvDomNode *pConverter, ArvEvaluator *pEvaluator, GError **ppError)
{
  for (ArvDomNode *pChild = arv_dom_node_get_first_child(pConverter); pChild != nullptr && *ppError == nullptr;
       pChild = arv_dom_node_get_next_sibling(pChild)) {
    if (!ARV_IS_GC_PROPERTY_NODE(pChild)) {
      continue;
    }
    ArvGcPropertyNode *pProperty = ARV_GC_PROPERTY_NODE(pChild);
    switch (arv_gc_property_node_get_node_type(pProperty)) {
    case ARV_GC_PROPERTY_NODE_TYPE_EXPRESSION:
      arv_evaluator_set_sub_expression(pEvaluator, arv_gc_property_node_get_name(pProperty),
                                       arv_gc_property_node_get_string(pProperty, ppError));
      break;
    case ARV_GC_PROPERTY_NODE_TYPE_CONSTANT:
      arv_evaluator_set_constant(pEvaluator, arv_gc_property_node_get_name(pProperty),
                                 arv_gc_property_node_get_string(pProperty, ppError));
      break;
    case ARV_GC_PROPERTY_NODE_TYPE_P_VARIABLE: AddVariable(pProperty, pEvaluator, ppError); break;
    default: break;
    }
  }
}

/// Null when the converter has no such formula, or with an error.
Evaluator MakeEvaluator(ArvGcFeatureNode *pConverter, ArvGcPropertyNodeType eFormula, GError **ppError)
{
  ArvGcPropertyNode *pFormula = FindProperty(ARV_DOM_NODE(pConverter), eFormula);
  if (pFormula == nullptr || *ppError != nullptr) {
    return nullptr;
  }
  Evaluator pEvaluator(arv_evaluator_new(arv_gc_property_node_get_string(pFormula, ppError)));
  if (*ppError == nullptr) {
    AddDefinitions(ARV_DOM_NODE(pConverter), pEvaluator.get(), ppError);
  }
  return pEvaluator;
}

double Evaluate(ArvEvaluator *pEvaluator, const char *pVariable, double dValue, GError **ppError)
{
  arv_evaluator_set_double_variable(pEvaluator, pVariable, dValue);
  return arv_evaluator_evaluate_as_double(pEvaluator, ppError);
}

/// What the feature reads when the raw integer is dRaw; NaN when no formula tells.
double ReadBack(const std::vector<SConversion> &listConversions, double dRaw)
{
  for (auto itConversion = listConversions.rbegin(); itConversion != listConversions.rend(); ++itConversion) {
    CErrorSlot error;
    dRaw = itConversion->pFrom == nullptr ? NAN : Evaluate(itConversion->pFrom.get(), "TO", dRaw, error.Out());
    if (error.Get() != nullptr) {
      return NAN;
    }
  }
  return dRaw;
}

int64_t ChooseRaw(const std::vector<SConversion> &listConversions, double dRaw, double dValue)
{
  constexpr double LIMIT = 9e18; // an integer's
  dRaw = std::clamp(dRaw, -LIMIT, LIMIT);
  const double dLow = std::floor(dRaw);
  const double dHigh = std::ceil(dRaw);
  const double dLowError = std::fabs(ReadBack(listConversions, dLow) - dValue);
  const double dHighError = std::fabs(ReadBack(listConversions, dHigh) - dValue);
  if (dLowError < dHighError || dHighError < dLowError) { // neither where one is no number
    return static_cast<int64_t>(dLowError < dHighError ? dLow : dHigh);
  }
  return std::llround(dRaw);
}

} // namespace

void SetNearestValue(ArvGcFloat *pFloat, double dValue, GError **ppError)
{
  std::vector<SConversion> listConversions;
  double dRaw = dValue;
  ArvGcFeatureNode *pNode = ARV_GC_FEATURE_NODE(pFloat);
  while (ARV_IS_GC_FLOAT(pNode) && *ppError == nullptr) {
    ArvGcFeatureNode *pNext = FindValueNode(pNode, ppError);
    if (pNext != nullptr && ARV_IS_GC_CONVERTER(pNode)) {
      SConversion stConversion{MakeEvaluator(pNode, ARV_GC_PROPERTY_NODE_TYPE_FORMULA_TO, ppError),
                               MakeEvaluator(pNode, ARV_GC_PROPERTY_NODE_TYPE_FORMULA_FROM, ppError)};
      if (*ppError == nullptr && stConversion.pTo == nullptr) { // the library would write 0
        g_set_error(ppError, ARV_GC_ERROR, ARV_GC_ERROR_PROPERTY_NOT_DEFINED, "there is no formula to write it with");
      }
      if (*ppError == nullptr) {
        dRaw = Evaluate(stConversion.pTo.get(), "FROM", dRaw, ppError);
        listConversions.push_back(std::move(stConversion));
      }
    }
    pNode = pNext;
  }
  if (*ppError != nullptr) {
    return;
  }
  if (ARV_IS_GC_INTEGER(pNode) && !std::isnan(dRaw)) {
    arv_gc_integer_set_value(ARV_GC_INTEGER(pNode), ChooseRaw(listConversions, dRaw, dValue), ppError);
  } else {
    arv_gc_float_set_value(pFloat, dValue, ppError);
  }
}

} // namespace ffc::camera
