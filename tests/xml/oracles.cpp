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

bool ExpatAccepts(const std::string& bytes) {
  XML_Parser parser = XML_ParserCreateNS(nullptr, '|');
  const bool accepted =
      XML_Parse(parser, bytes.data(), static_cast<int>(bytes.size()), XML_TRUE) == XML_STATUS_OK;
  XML_ParserFree(parser);
  return accepted;
}

bool LibxmlAccepts(const std::string& bytes) { return static_cast<bool>(ReadTree(bytes)); }

std::vector<std::string> LibxmlTexts(const std::string& bytes) {
  const Tree tree = ReadTree(bytes);
  std::vector<std::string> texts;
  if (!tree) return texts;
  std::vector<const xmlNode*> elements;
  CollectElements(xmlDocGetRootElement(tree.get()), elements);
  for (const xmlNode* element : elements) {
    std::string text = reinterpret_cast<const char*>(element->name);
    text += '=';
    AppendText(element, text);
    texts.push_back(std::move(text));
  }
  return texts;
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
