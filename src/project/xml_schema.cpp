#include "project/xml_schema.h"

#include <algorithm>

#include "formats/manual.h"
#include "project/schema.h"
#include "text/ascii.h"

namespace sab::project {
namespace {

using formats::Rule;
using formats::Type;

constexpr char kAddress[] = "urn:sabxml:schema:";

std::string Escaped(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '&') {
      escaped += "&amp;";
    } else if (c == '<') {
      escaped += "&lt;";
    } else if (c == '"') {
      escaped += "&quot;";
    } else {
      escaped += c;
    }
  }
  return escaped;
}

struct ValueType {
  std::string_view name;
  std::string_view pattern;  // of a text without white space at its ends; empty for any text
};

// A flag and a number may be empty, since that is read as false and 0.
constexpr ValueType kValueTypes[] = {
    {"Text", ""},
    {"ClassIdentifier",
     "(\\{[0-9A-Fa-f]{8}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{12}\\})?"},
    {"One", "(0|1|[Ff][Aa][Ll][Ss][Ee])?"},
    {"NotZero", "(0|1|[Tt][Rr][Uu][Ee])?"},
    {"OneOrTrue", "(0|1|[Tt][Rr][Uu][Ee]|[Ff][Aa][Ll][Ss][Ee])?"},
    {"True", "(0|[Tt][Rr][Uu][Ee]|[Ff][Aa][Ll][Ss][Ee])?"},
    {"Flag", "(-1|0|1)?"},
    {"Whole", "([+\\-]?[0-9]+)?"},
    {"Decimal", "([+\\-]?([0-9]+(\\.[0-9]*)?|\\.[0-9]+)([eE][+\\-]?[0-9]+)?)?"},
};

std::string_view TypeNameOf(const Rule& rule) {
  switch (rule.type) {
    case Type::kGuid:
      return rule.is_any_text ? "Text" : "ClassIdentifier";
    case Type::kOne:
      return "One";
    case Type::kNotZero:
      return "NotZero";
    case Type::kOneOrTrue:
      return "OneOrTrue";
    case Type::kTrue:
      return "True";
    case Type::kFlag:
    case Type::kMinusOne:
    case Type::kNonZero:
      return "Flag";
    case Type::kFloat:
    case Type::kDouble:
      return "Decimal";
    default:
      return IsWhole(rule.type) ? "Whole" : "Text";
  }
}

class Writer {
 public:
  explicit Writer(const formats::Document& document)
      : document_(document), schema_(Schema::Of(document.kind)) {}

  std::string Write() {
    out_ =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<xs:schema xmlns:xs=\"http://www.w3.org/2001/XMLSchema\" "
        "elementFormDefault=\"unqualified\">\n";
    WriteElement("  ", document_.root, ContentName(schema_.RootContent()), document_.help, "");
    for (ContentId content = 1; content < schema_.ContentCount(); ++content) WriteContent(content);
    WriteMark();
    for (const ValueType& type : kValueTypes) WriteValueType(type);
    return out_ + "</xs:schema>\n";
  }

 private:
  // Contents have no names, and several elements may share one.
  static std::string ContentName(ContentId content) {
    return content == kNothing ? "Mark" : "Content" + std::to_string(content);
  }

  void WriteElement(const std::string& indent, std::string_view name, std::string_view type,
                    std::string_view help, std::string_view more) {
    out_ += indent + "<xs:element name=\"" + std::string(name) + "\" type=\"" + std::string(type) +
            "\"" + std::string(more) + ">\n" + indent + "  <xs:annotation><xs:documentation>" +
            Escaped(help) + "</xs:documentation></xs:annotation>\n" + indent + "</xs:element>\n";
  }

  void WriteContent(ContentId content) {
    out_ += "  <xs:complexType name=\"" + ContentName(content) +
            "\">\n    <xs:choice minOccurs=\"0\" maxOccurs=\"unbounded\">\n";
    bool has_any_name = false;
    for (unsigned i = 0; i < schema_.CountOf(content); ++i) {
      const auto id = static_cast<RuleId>(schema_.FirstRule(content) + i);
      has_any_name = has_any_name || schema_.At(id).name == formats::kAnyName;
    }
    // A name beside any other name could be taken for either.
    for (unsigned i = 0; !has_any_name && i < schema_.CountOf(content); ++i) {
      const auto id = static_cast<RuleId>(schema_.FirstRule(content) + i);
      const Rule& rule = schema_.At(id);
      const bool is_value = rule.type != Type::kNone;
      WriteElement("      ", rule.name,
                   is_value ? std::string(TypeNameOf(rule)) : ContentName(schema_.ContentOf(id)),
                   rule.help, "");
    }
    out_ += std::string("      <xs:any namespace=\"") + (has_any_name ? "##any" : "##other") +
            "\" processContents=\"skip\"/>\n"
            "    </xs:choice>\n"
            "    <xs:anyAttribute namespace=\"##other\" processContents=\"skip\"/>\n"
            "  </xs:complexType>\n";
  }

  void WriteMark() {
    out_ +=
        "  <xs:complexType name=\"Mark\">\n"
        "    <xs:anyAttribute namespace=\"##other\" processContents=\"skip\"/>\n"
        "  </xs:complexType>\n";
  }

  void WriteValueType(const ValueType& type) {
    const std::string name(type.name);
    out_ += "  <xs:simpleType name=\"" + name + "Text\">\n    <xs:restriction base=\"xs:" +
            (type.pattern.empty() ? "string" : "token") + "\">";
    if (!type.pattern.empty()) {
      out_ += "\n      <xs:pattern value=\"" + Escaped(type.pattern) + "\"/>\n    ";
    }
    out_ += "</xs:restriction>\n  </xs:simpleType>\n  <xs:complexType name=\"" + name +
            "\">\n    <xs:simpleContent>\n      <xs:extension base=\"" + name +
            "Text\">\n        <xs:anyAttribute namespace=\"##other\" processContents=\"skip\"/>\n"
            "      </xs:extension>\n    </xs:simpleContent>\n  </xs:complexType>\n";
  }

  const formats::Document& document_;
  const Schema& schema_;
  std::string out_;
};

}  // namespace

std::vector<const formats::Document*> DocumentsWithElements() {
  std::vector<const formats::Document*> documents;
  for (const formats::Document* const document : formats::Documents()) {
    if (!document->root.empty()) documents.push_back(document);
  }
  return documents;
}

std::string ShortNameOf(const formats::Document& document) {
  std::string name(document.about);
  std::ranges::replace(name, ' ', '-');
  return name;
}

const formats::Document* DocumentNamed(std::string_view name) {
  for (const formats::Document* const document : DocumentsWithElements()) {
    if (EqualsIgnoringAsciiCase(name, ShortNameOf(*document)) ||
        EqualsIgnoringAsciiCase(name, document->root)) {
      return document;
    }
  }
  return nullptr;
}

std::string XmlSchemaOf(const formats::Document& document) { return Writer(document).Write(); }

std::string XmlCatalogOfSchemas() {
  std::string catalog =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<catalog xmlns=\"urn:oasis:names:tc:entity:xmlns:xml:catalog\">\n";
  for (const formats::Document* const document : DocumentsWithElements()) {
    const std::string name = ShortNameOf(*document);
    for (const char* const entry : {"uri name", "system systemId"}) {
      catalog +=
          std::string("  <") + entry + "=\"" + kAddress + name + "\" uri=\"" + name + ".xsd\"/>\n";
    }
  }
  return catalog + "</catalog>\n";
}

}  // namespace sab::project
