#include "cli/show/text_template.h"

#include "cli/standard_input.h"

#include <utility>
#include <vector>

namespace sabxml::cli {
namespace {

constexpr char kClass[] = "VeTxtTemplateFileParser";

Value Get(IDispatch& parser, std::string_view member, const std::vector<LONGLONG>& indexes = {}) {
  std::vector<Value> arguments;
  arguments.reserve(indexes.size());
  for (const LONGLONG index : indexes) arguments.emplace_back(index);
  return cli::Call(parser, member, DISPATCH_PROPERTYGET, arguments);
}

std::string SectionName(IDispatch& parser, LONGLONG section) {
  return ToUtf8(Get(parser, "SectionName", {section}).Get().bstrVal);
}

bool HasMarker(IDispatch& parser) {
  // Only the first section can be without a name.
  const LONG count = Get(parser, "SectionCount").Get().lVal;
  return count > 1 || (count == 1 && !SectionName(parser, 0).empty());
}

}  // namespace

ComPtr<IDispatch> LoadTextTemplate(Server& server, const std::string& file) {
  ComPtr<IDispatch> parser = server.Create(kClass);
  Call(*parser, "Load", DISPATCH_METHOD, {Value(PathToRead(file))});
  if (!HasMarker(*parser.Get())) {
    throw Failure(file +
                  ": this is no XML file: it does not begin with '<'; and no text template: "
                  "it has no section marker, such as a line [" +
                  ToUtf8(Get(*parser.Get(), "DefaultMarker", {0}).Get().bstrVal) + "]");
  }
  return parser;
}

void PrintTextTemplate(IDispatch& parser, TreeSink& sink) {
  sink.BeginObject(kClass, {}, 0);
  sink.BeginList("Sections");
  const LONG sections = Get(parser, "SectionCount").Get().lVal;
  for (LONG section = 0; section < sections; ++section) {
    sink.BeginObject({}, {}, 5);
    sink.AddValue("Name", SectionName(parser, section));
    sink.BeginList("Lines");
    const LONG lines = Get(parser, "LineCount", {section}).Get().lVal;
    for (LONG line = 0; line < lines; ++line) {
      sink.AddValue({}, ToUtf8(Get(parser, "Line", {section, line}).Get().bstrVal));
    }
    sink.End();
    sink.End();
  }
  sink.End();
  sink.End();
}

}  // namespace sabxml::cli
