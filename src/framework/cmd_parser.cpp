#include "framework/cmd_parser.h"

#include "base/com_error.h"
#include "common/conversions.h"
#include "framework/descriptor_reader.h"

namespace sab {
namespace {

using PutText = HRESULT (STDMETHODCALLTYPE IVePrsCommand::*)(BSTR);

struct CommandText {
  std::string_view name;
  PutText put;
};

constexpr CommandText kCommandTexts[] = {
    {"Identify", &IVePrsCommand::put_Identify},        {"CLSID", &IVePrsCommand::put_CLSID},
    {"Priority", &IVePrsCommand::put_Priority},        {"LocalName", &IVePrsCommand::put_LocalName},
    {"Property", &IVePrsCommand::put_CommandProperty},
};

void ReadCommand(const ConfigElement& element, IVePrsCommand& command) {
  Text text;
  for (const ConfigElement child : element.Children()) {
    child.ReadText(text);
    for (const CommandText& known : kCommandTexts) {
      if (child.Is(known.name)) {
        Check((command.*known.put)(Bstr(text).Get()), "a text of the command could not be put");
      }
    }
    if (child.Is("SystemCmd")) {
      const bool is_system = EqualsAsciiIgnoringCase(text, "TRUE");
      Check(command.put_SystemCommand(is_system ? VARIANT_TRUE : VARIANT_FALSE),
            "SystemCommand could not be put");
    } else if (child.Is("AppMode")) {
      Check(command.put_AppMode(ParseInt(text)), "AppMode could not be put");
    }
  }
}

void ReadGroup(const ConfigElement& element, IVePrsCommand& marker) {
  Text name;
  element.ReadText(name);
  Check(marker.put_IsGroup(VARIANT_TRUE), "IsGroup could not be put");
  Check(marker.put_GroupName(Bstr(name).Get()), "GroupName could not be put");
}

}  // namespace

HRESULT CVeCmdParser::GenerateCmd() {
  return Guarded([this] {
    DescriptorReader file(fields.ConfigurationPath);

    file.ReadRequired("Cmd/Identify", command_file_id_, kInvalidCommand);

    const ConfigElement commands = file.Find("Cmd/Commands");
    if (!commands) return;
    ComponentCreator creator;
    const ComponentCreator::Scope scope(creator);
    for (const ConfigElement child : commands.Children()) {
      const bool is_group = child.Is("Group");
      if (!is_group && !child.Is("Command")) continue;
      const auto entry = creator.Create<coclass::VePrsCommand>();
      if (is_group) {
        ReadGroup(child, *entry);
      } else {
        ReadCommand(child, *entry);
      }
      Check(commands_->AddTail(entry.Get(), nullptr), "the command could not be added");
    }
  });
}

}  // namespace sab
