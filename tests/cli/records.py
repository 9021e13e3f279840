"""The texts of a file and of what the program tells of it, in a form in which they are the same."""

import re

# Members that are not named as their elements are, where these need the name of their parent with it.
MEMBERS = dict(pair.split("=") for pair in """
Application/Identify=AppID Template/Identify=TmplID Module/Identify=ModuleID Environment/Identify=EnvID
Cmd/Identify=CmdFileID AppTemplateID=AppTmplID TemplateID=TmplID Tel=TelNum E-mail=Email
CloudSpaceRigistWebSite=CloudSpaceRigisWeb Attribute/Icon=IconPath DocClSID=DocCLSID Title=ModuleTitle
DefEnvironment/Identify=DefaultEnv DefModule/Identify=DefaultModule UiStateObj=UiStateObjCLSID
UIPath=UiPath Object=ObjCLSID Menu=MenuID BmpDef=Image DropDown=SubToolBarID BmpLarge=ImageLarge ICON=Icon Ins=Instruction
Group=GroupName Property=CommandProperty Template/Path=TmplatePaths Environment/Path=EnvPaths
Command/Path=CmdPaths Modules/Module=ModulePaths PreProcServices/Service=PreServiceCLSIDs
PostProcServices/Service=PostServiceCLSIDs""".split())
# Elements whose content is that of the object around them.
PARTS = ["LocalAbout", "Attribute", "DefEnvironment", "DefModule", "Modules", "PreProcServices",
         "PostProcServices"]


class Record:
    """Named texts that are neither numbers nor truth values, and the records below them."""

    def __init__(self):
        self.texts, self.records = [], []

    def add(self, name, text):
        if re.search(r"[^\W\d]", text) and text.lower() not in ("true", "false"):
            self.texts.append((name, text))

    def add_record(self, record, is_part=False):
        if is_part or not record.texts:
            self.texts += record.texts
            self.records += record.records
        else:
            self.records.append(record)

    def sorted(self):
        return sorted(self.texts), sorted(record.sorted() for record in self.records)


def record_of_xml(parent):
    result = Record()
    for element in parent:
        if element.tag == "CommandUI":  # whose command is that of all its elements that name none
            command, *others = element
            element.remove(command)
            for other in others:
                if other.find("Command") is None:
                    other.append(command)
        if len(element):
            record = record_of_xml(element)
            result.add_record(record, element.tag in PARTS or
                              all(name.endswith("Paths") for name, _ in record.texts))
        else:
            name = MEMBERS.get(f"{parent.tag}/{element.tag}") or MEMBERS.get(element.tag, element.tag)
            record = Record()
            record.add(name, (element.text or "").strip())
            result.add_record(record, element.tag not in ("Group", "DropDown"))  # objects by themselves
    return result


def record_of_json(values):
    result = Record()
    for name, value in values.items():
        for item in value if isinstance(value, list) else [value]:
            if isinstance(item, dict):
                result.add_record(record_of_json(item))
            elif isinstance(item, str) and name != "ConfigurationPath":
                result.add(name, item)
    return result
