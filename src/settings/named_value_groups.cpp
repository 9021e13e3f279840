#include "settings/named_value_groups.h"

#include "common/conversions.h"

namespace sab {
namespace {

bool IsLineType(LONG number) { return number >= PLT_VISIBLELN && number <= PLT_HATCH; }

std::string NoLineType(const std::string& what) {
  return what + " is no kind of line; these are the numbers from " + std::to_string(PLT_VISIBLELN) +
         " to " + std::to_string(PLT_HATCH) + ".";
}

}  // namespace

HRESULT CVeProjectionCfgParser::get_LineType(BSTR i_bsName, ProjectionLineType* pVal) {
  if (!pVal) return Reported(E_POINTER);
  *pVal = {};
  return Guarded([&] {
    const TextView text = ValueNamed(Bstr::ViewOf(i_bsName));
    const std::int32_t number = ParseInt(text);
    if (FormatInt(number) != text || !IsLineType(number)) {
      throw ComError(E_INVALIDARG, NoLineType("The value \"" + ToUtf8(text) + "\" of " +
                                              ToUtf8(Bstr::ViewOf(i_bsName))));
    }
    *pVal = static_cast<ProjectionLineType>(number);
  });
}

HRESULT CVeProjectionCfgParser::put_LineType(BSTR i_bsName, ProjectionLineType newVal) {
  return Guarded([&] {
    if (!IsLineType(newVal)) throw ComError(E_INVALIDARG, NoLineType(std::to_string(newVal)));
    CheckName(Bstr::ViewOf(i_bsName));
    values_.Set(Bstr::ViewOf(i_bsName), FormatInt(newVal));
  });
}

}  // namespace sab
