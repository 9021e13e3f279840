#include "cli/host/idl_text.h"

namespace sabxml::cli {
namespace {

std::string Quoted(const std::string& text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + '"';
}

// Without braces.
std::string Uuid(const std::string& identifier) {
  return "uuid(" + identifier.substr(1, identifier.size() - 2) + ")";
}

std::string ParameterText(const ParameterDescription& parameter) {
  std::string text = parameter.is_in ? (parameter.is_out ? "[in, out" : "[in") : "[out";
  if (parameter.is_optional) text += ", optional";
  return text + "] " + parameter.type + " " + parameter.name;
}

std::string MemberText(const MemberDescription& member) {
  std::string text = "    [id(" + std::to_string(member.id) + ")";
  if (member.kind != "method") text += ", prop" + member.kind;
  text += ", helpstring(" + Quoted(member.help) + ")] HRESULT " + member.name + "(";
  std::string separator;
  for (const ParameterDescription& parameter : member.parameters) {
    text += separator + ParameterText(parameter);
    separator = ", ";
  }
  if (!member.result.empty()) text += separator + "[out, retval] " + member.result + "* result";
  return text + ");\n";
}

}  // namespace

std::string IdlOfInterface(const ClassDescription& interface_) {
  std::string text = "[object, " + Uuid(interface_.identifier) +
                     ", dual, oleautomation, nonextensible, pointer_default(unique), helpstring(" +
                     Quoted(interface_.help) + ")]\ninterface " + interface_.name +
                     " : IDispatch\n{\n";
  for (const MemberDescription& member : interface_.members) text += MemberText(member);
  return text + "};\n";
}

std::string IdlOfClass(const ClassDescription& known) {
  return "[" + Uuid(known.identifier) + ", helpstring(" + Quoted(known.help) + ")]\ncoclass " +
         known.name + "\n{\n    [default] interface " + known.interface_name + ";\n};\n";
}

}  // namespace sabxml::cli
