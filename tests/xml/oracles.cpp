#include "xml/oracles.h"

#include <expat.h>
#include <libxml/parser.h>
#include <libxml/xpath.h>

#include <algorithm>
#include <memory>

namespace sab::xml::testing {
namespace {

using Tree = std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)>;

Tree ReadTree(const std::string& bytes) {
  constexpr int kOptions =
      XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_NONET | XML_PARSE_HUGE;
  xmlParserCtxtPtr context = xmlNewParserCtxt();
  Tree tree(xmlCtxtReadMemory(context, bytes.data(), static_cast<int>(bytes.size()), nullptr,
                              nullptr, kOptions),
            &xmlFreeDoc);
  // Namespace faults do not stop this reader; for us they are faults.
  const bool is_clean = context->wellFormed && context->nsWellFormed;
  xmlFreeParserCtxt(context);
  if (!is_clean) tree.reset();
  return tree;
}

constexpr char kSeparator = '\f';

struct ExpatReader {
  std::vector<OracleElement> elements;
  std::vector<std::size_t> open;

  // From "uri local prefix", of which all but the local name may be missing.
  static std::vector<std::string> Parts(const char* name) {
    std::vector<std::string> parts(1);
    for (; *name; ++name) {
      if (*name == kSeparator) {
        parts.emplace_back();
      } else {
        parts.back() += *name;
      }
    }
    return parts;
  }
  static void Start(void* data, const char* name, const char** attributes) {
    auto& self = *static_cast<ExpatReader*>(data);
    self.open.push_back(self.elements.size());
    OracleElement& element = self.elements.emplace_back();
    const auto parts = Parts(name);
    element.local_name = parts[parts.size() > 1 ? 1 : 0];
    for (; *attributes; attributes += 2) {
      const auto own = Parts(attributes[0]);
      std::string written = own.size() > 2 ? own[2] + ':' + own[1] : own.back();
      // This prefix comes without its name.
      if (own.size() == 2) written = "xml:" + written;
      element.attributes.emplace_back(std::move(written), attributes[1]);
    }
    std::sort(element.attributes.begin(), element.attributes.end());
  }
  static void End(void* data, const char*) { static_cast<ExpatReader*>(data)->open.pop_back(); }
  static void Characters(void* data, const char* text, int length) {
    auto& self = *static_cast<ExpatReader*>(data);
    for (const std::size_t i : self.open)
      self.elements[i].text.append(text, static_cast<std::size_t>(length));
  }
};

std::string AsText(const xmlChar* text) { return reinterpret_cast<const char*>(text); }

void AppendText(const xmlNode* node, std::string& text) {
  for (const xmlNode* child = node->children; child; child = child->next) {
    if (child->type == XML_TEXT_NODE || child->type == XML_CDATA_SECTION_NODE) {
      text += reinterpret_cast<const char*>(child->content);
    } else if (child->type == XML_ELEMENT_NODE) {
      AppendText(child, text);
    }
  }
}

void CollectElements(const xmlNode* node, std::vector<const xmlNode*>& elements) {
  for (; node; node = node->next) {
    if (node->type != XML_ELEMENT_NODE) continue;
    elements.push_back(node);
    CollectElements(node->children, elements);
  }
}

}  // namespace

bool ExpatAccepts(const std::string& bytes) { return !ExpatElements(bytes).empty(); }

std::vector<OracleElement> ExpatElements(const std::string& bytes) {
  ExpatReader reader;
  // A character that no document has: one in a namespace would be refused.
  const XML_Parser parser = XML_ParserCreateNS(nullptr, kSeparator);
  XML_SetReturnNSTriplet(parser, 1);
  XML_SetUserData(parser, &reader);
  XML_SetElementHandler(parser, ExpatReader::Start, ExpatReader::End);
  XML_SetCharacterDataHandler(parser, ExpatReader::Characters);
  const bool accepted =
      XML_Parse(parser, bytes.data(), static_cast<int>(bytes.size()), XML_TRUE) == XML_STATUS_OK;
  XML_ParserFree(parser);
  if (!accepted) reader.elements.clear();
  return std::move(reader.elements);
}

bool LibxmlAccepts(const std::string& bytes) { return static_cast<bool>(ReadTree(bytes)); }

std::vector<OracleElement> LibxmlElements(const std::string& bytes) {
  const Tree tree = ReadTree(bytes);
  std::vector<OracleElement> found;
  if (!tree) return found;
  std::vector<const xmlNode*> elements;
  CollectElements(xmlDocGetRootElement(tree.get()), elements);
  for (const xmlNode* element : elements) {
    OracleElement& own = found.emplace_back();
    own.local_name = AsText(element->name);
    AppendText(element, own.text);
    for (const xmlAttr* attribute = element->properties; attribute; attribute = attribute->next) {
      const bool has_prefix = attribute->ns && attribute->ns->prefix;
      xmlChar* const value = xmlNodeListGetString(tree.get(), attribute->children, 1);
      own.attributes.emplace_back(
          (has_prefix ? AsText(attribute->ns->prefix) + ':' : "") + AsText(attribute->name),
          value ? AsText(value) : "");
      xmlFree(value);
    }
    std::sort(own.attributes.begin(), own.attributes.end());
  }
  return found;
}

std::vector<int> LibxmlSelect(const std::string& bytes, const std::string& path) {
  const Tree tree = ReadTree(bytes);
  std::vector<const xmlNode*> elements;
  CollectElements(xmlDocGetRootElement(tree.get()), elements);
  xmlXPathContextPtr context = xmlXPathNewContext(tree.get());
  context->node = reinterpret_cast<xmlNodePtr>(tree.get());
  xmlXPathObjectPtr found = xmlXPathEval(reinterpret_cast<const xmlChar*>(path.c_str()), context);
  std::vector<int> selected;
  for (int i = 0; found->nodesetval && i < found->nodesetval->nodeNr; ++i) {
    const auto at = std::find(elements.begin(), elements.end(), found->nodesetval->nodeTab[i]);
    if (at != elements.end()) selected.push_back(static_cast<int>(at - elements.begin()));
  }
  std::sort(selected.begin(), selected.end());
  xmlXPathFreeObject(found);
  xmlXPathFreeContext(context);
  return selected;
}

}  // namespace sab::xml::testing
