#include "settings/named_value_groups.h"

#include "base/com_error.h"
#include "common/conversions.h"

namespace sab {
namespace {

bool IsLineType(LONG number) { return number >= PLT_VISIBLELN && number <= PLT_HATCH; }

std::string NoLineType(const std::string& what) {
  return what + " is no kind of line; these are the numbers from " + std::to_string(PLT_VISIBLELN) +
         " to " + std::to_string(PLT_HATCH) + ".";
}

}  // namespace

void NamedValueSettings::Save(TextView file, TextView node_path) {
  ConfigDocument document;
  document.LoadToChange(file);
  if (ConfigElement node = document.SelectToChange(node_path)) {
    values.Write(node);
    WriteMore(node);
  }
  document.Save(file);
}

void NamedValueSettings::Load(TextView file, TextView node_path) {
  ConfigDocument document;
  document.Load(file);  // without a file every value stays
  const std::vector<ConfigElement> elements = document.SelectAll(node_path).Children();
  values.Read(elements);
  ReadMore(elements);
}

ProjectionLineType ProjectionCfgFields::LineType(TextView name) const {
  const TextView text = Value(name);
  const std::int32_t number = ParseInt(text);
  if (FormatInt(number) != text || !IsLineType(number)) {
    throw ComError(E_INVALIDARG,
                   NoLineType("The value \"" + ToUtf8(text) + "\" of " + ToUtf8(name)));
  }
  return static_cast<ProjectionLineType>(number);
}

void ProjectionCfgFields::SetLineType(TextView name, ProjectionLineType type) {
  if (!IsLineType(type)) throw ComError(E_INVALIDARG, NoLineType(std::to_string(type)));
  SetValue(name, FormatInt(type));
}

}  // namespace sab
