#include "framework/tmpl_parser.h"

#include "base/com_error.h"

namespace sab {

struct CVeTmplParser::AttributeText {
  std::string_view path;
  Bstr CVeTmplParser::*member;
};

// In file order. "DocClSID" is how the files spell it.
constexpr CVeTmplParser::AttributeText CVeTmplParser::kAttributes[] = {
    {"Template/Attribute/Icon", &CVeTmplParser::icon_path_},
    {"Template/Attribute/ResPath", &CVeTmplParser::resource_path_},
    {"Template/Attribute/DocClSID", &CVeTmplParser::document_clsid_},
    {"Template/Attribute/WindowTitle", &CVeTmplParser::window_title_},
    {"Template/Attribute/DocName", &CVeTmplParser::document_name_},
    {"Template/Attribute/FileNewName", &CVeTmplParser::new_file_name_},
    {"Template/Attribute/FilterName", &CVeTmplParser::filter_name_},
    {"Template/Attribute/FilterExt", &CVeTmplParser::filter_extension_},
    {"Template/Attribute/RegFileTypeId", &CVeTmplParser::registered_file_type_id_},
    {"Template/Attribute/RegFileTypeName", &CVeTmplParser::registered_file_type_name_},
    {"Template/Attribute/DllPath", &CVeTmplParser::library_path_},
};

HRESULT CVeTmplParser::GenerateTmpl() {
  return Guarded([this] {
    DescriptorReader file(fields.ConfigurationPath);

    file.ReadNonEmpty("Template/Identify", template_id_, kInvalidTemplate);
    for (const AttributeText& text : kAttributes) file.Read(text.path, this->*text.member);
    file.Read("Template/DatabaseCLSID", database_clsid_);
    file.Read("Template/SessionCLSID", session_clsid_);
    file.ReadNonEmpty("Template/DefEnvironment/Identify", default_environment_, kInvalidTemplate);
    if (!file.Read("Template/DefModule/Identify", default_module_)) {
      file.Fail(kInvalidTemplate, "Template/DefModule/Identify", "is missing: add the element");
    }

    ReadOpenFileTypes(file.Find("Template/OpenFileTypes"));
    ReadModulePaths(file);
    ReadServices(file.Find("Template/PreProcServices"), pre_services_);
    ReadServices(file.Find("Template/PostProcServices"), post_services_);
    ReadEditObjects(file.Find("Template/EditObjMap"));
  });
}

void CVeTmplParser::ReadOpenFileTypes(const ConfigElement& list) {
  if (!list) return;
  ComponentCreator creator;
  const ComponentCreator::Scope scope(creator);
  for (const ConfigElement child : list.Children()) {
    if (!child.Is("FileType")) continue;
    Text filter_name;
    Text filter_extension;
    for (const ConfigElement part : child.Children()) {
      if (part.Is("FilterName")) part.ReadText(filter_name);
      if (part.Is("FilterExt")) part.ReadText(filter_extension);
    }
    if (filter_name.empty() || filter_extension.empty()) continue;
    const auto type = creator.Create<coclass::VePrsOpenFileType>();
    Check(type->put_FilterName(Bstr(filter_name).Get()), "FilterName could not be put");
    Check(type->put_FilterExt(Bstr(filter_extension).Get()), "FilterExt could not be put");
    Check(open_file_types_->AddTail(type.Get(), nullptr), "the file type could not be added");
  }
}

void CVeTmplParser::ReadModulePaths(DescriptorReader& file) {
  const ConfigElement modules = file.Find("Template/Modules");
  if (modules) {
    Text text;
    for (const ConfigElement child : modules.Children()) {
      if (!child.Is("Module")) continue;
      child.ForEachChildText(text, [this](TextView path) {
        if (!path.empty()) module_paths_.Append(path);
      });
    }
  }
  if (module_paths_.IsEmpty()) {
    file.Fail(kInvalidTemplate, "Template/Modules",
              "names no module: give it a Module with the path of a module descriptor");
  }
}

void CVeTmplParser::ReadServices(const ConfigElement& list, StringList& services) {
  if (!list) return;
  Text service;
  for (const ConfigElement child : list.Children()) {
    if (!child.Is("Service")) continue;
    child.ReadText(service);
    if (!service.empty()) services.Append(service);
  }
}

void CVeTmplParser::ReadEditObjects(const ConfigElement& list) {
  if (!list) return;
  ComponentCreator creator;
  const ComponentCreator::Scope scope(creator);
  for (const ConfigElement child : list.Children()) {
    if (!child.Is("Item")) continue;
    Text database_object;
    Text edit_object;
    for (const ConfigElement part : child.Children()) {
      if (part.Is("DbObjIID")) part.ReadText(database_object);
      if (part.Is("EditObjCLSID")) part.ReadText(edit_object);
    }
    if (database_object.empty() || edit_object.empty()) continue;
    const auto entry = creator.Create<coclass::VePrsEditObj>();
    Check(entry->put_DbObjIID(Bstr(database_object).Get()), "DbObjIID could not be put");
    Check(entry->put_EditObjCLSID(Bstr(edit_object).Get()), "EditObjCLSID could not be put");
    Check(edit_objects_->AddTail(entry.Get(), nullptr), "the editing object could not be added");
  }
}

}  // namespace sab
