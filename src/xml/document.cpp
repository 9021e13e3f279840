#include "xml/document.h"

#include <utility>

#include "xml/characters.h"
#include "xml/text.h"

namespace sab::xml {

Document::Document(std::string bytes)
    : bytes_(std::move(bytes)), size_(bytes_.size()), encoding_(bytes_) {
  if (encoding_.IsUtf8()) {
    bytes_.reserve(size_ + kPadding);  // exactly, where appending would double it
    bytes_.append(kPadding, '\0');
    text_ = bytes_.data() + encoding_.BomLength();
    nodes_ = Read(text_, size_ - encoding_.BomLength());
  } else {
    decoded_ = encoding_.Decode(bytes_);
    const std::size_t length = decoded_.size();
    decoded_.append(kPadding, '\0');
    text_ = decoded_.data();
    nodes_ = Read(text_, length);
  }
  root_ = FirstChildElement(kNoNode);
}

NodeIndex Document::EndOf(NodeIndex node) const {
  for (; node != kNoNode; node = nodes_[node].parent) {
    if (nodes_[node].next != kNoNode) return nodes_[node].next;
  }
  return nodes_.Size();
}

std::optional<std::u16string> Document::AttributeOf(NodeIndex element,
                                                    std::string_view name) const {
  const Node& node = nodes_[element];
  const char* p = text_ + node.start + 1 + node.name_length;
  for (;;) {
    while (Has(*p, kSpace)) ++p;
    if (*p == '>' || *p == '/') return std::nullopt;
    const char* const own_name = p;
    while (!Has(*p, kSpace) && *p != '=') ++p;
    const std::string_view found(own_name, static_cast<std::size_t>(p - own_name));
    while (*p != '"' && *p != '\'') ++p;
    const char quote = *p++;
    const char* const value = p;
    while (*p != quote) ++p;
    if (found == name) {
      std::u16string text;
      AppendDecoded({value, static_cast<std::size_t>(p - value)}, true, text);
      return text;
    }
    ++p;
  }
}

std::size_t Document::ContentStart(NodeIndex element) const {
  const Node& node = nodes_[element];
  const char* p = text_ + node.start;
  while (*p != '>') {
    if (*p == '"' || *p == '\'') {
      const char quote = *p++;
      while (*p != quote) ++p;
    }
    ++p;
  }
  return static_cast<std::size_t>(p + 1 - text_);
}

std::size_t Document::EndOfMarkup(NodeIndex node) const {
  const Node& found = nodes_[node];
  switch (found.type) {
    case NodeType::kComment:
    case NodeType::kCData:
      return found.end + std::size_t{3};
    case NodeType::kInstruction:
      return found.end + std::size_t{2};
    case NodeType::kElement:
      break;
    default:
      return found.end;
  }
  if ((found.flags & kIsEmptyTag) != 0) return found.end;
  const char* p = text_ + found.end;
  while (*p != '>') ++p;
  return static_cast<std::size_t>(p + 1 - text_);
}

}  // namespace sab::xml
