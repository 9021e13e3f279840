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

std::string TakeText(xmlChar* text) {
  const std::string copy = text ? reinterpret_cast<const char*>(text) : "";
  xmlFree(text);
  return copy;
}

std::string NameOf(const xmlChar* name, const xmlNs* prefix) {
  const auto as_text = [](const xmlChar* text) { return reinterpret_cast<const char*>(text); };
  return prefix && prefix->prefix ? std::string(as_text(prefix->prefix)) + ':' + as_text(name)
                                  : as_text(name);
}

void CollectElements(const xmlNode* node, std::vector<const xmlNode*>& elements) {
  for (; node; node = node->next) {
    if (node->type != XML_ELEMENT_NODE) continue;
    elements.push_back(node);
    CollectElements(node->children, elements);
  }
}

}  // namespace

bool ExpatAccepts(const std::string& bytes) {
  const XML_Parser parser = XML_ParserCreateNS(nullptr, '\f');  // which no document has
  const XML_Status status =
      XML_Parse(parser, bytes.data(), static_cast<int>(bytes.size()), XML_TRUE);
  XML_ParserFree(parser);
  return status == XML_STATUS_OK;
}

std::vector<OracleElement> LibxmlElements(const std::string& bytes) {
  const Tree tree = ReadTree(bytes);
  std::vector<OracleElement> found;
  if (!tree) return found;
  std::vector<const xmlNode*> elements;
  CollectElements(xmlDocGetRootElement(tree.get()), elements);
  for (const xmlNode* element : elements) {
    OracleElement& own = found.emplace_back();
    own.name = NameOf(element->name, element->ns);
    own.text = TakeText(xmlNodeGetContent(element));
    for (const xmlAttr* attribute = element->properties; attribute; attribute = attribute->next)
      own.attributes.emplace_back(
          NameOf(attribute->name, attribute->ns),
          TakeText(xmlNodeListGetString(tree.get(), attribute->children, 1)));
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
