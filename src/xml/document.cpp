#include "xml/document.h"

#include <utility>

#include "xml/characters.h"
#include "xml/text.h"

namespace sab::xml {
namespace {

std::string_view TrimmedStart(std::string_view text) {
  while (!text.empty() && Has(text.front(), kSpace)) text.remove_prefix(1);
  return text;
}

}  // namespace

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

void Document::AppendPiece(std::string_view piece, bool needs_decoding, std::u16string& out) const {
  if (needs_decoding) {
    AppendDecoded(piece, false, out);
  } else {
    AppendUtf16(piece, out);
  }
}

bool Document::HasBlankAfter(NodeIndex node) const {
  const NodeIndex next = NextSibling(node);
  if (next != kNoNode && TypeOf(next) == NodeType::kText) return false;
  return TypeOf(node) != NodeType::kText && Has(text_[EndOfMarkup(node)], kSpace);
}

bool Document::StartsWithBlank(NodeIndex element) const {
  if ((nodes_[element].flags & (kIsEmptyTag | kHasOnlyText)) != 0) return false;
  const NodeIndex child = FirstChild(element);
  if (child != kNoNode && TypeOf(child) == NodeType::kText) return false;
  return Has(text_[ContentStart(element)], kSpace);
}

void Document::AppendJoinedText(NodeIndex start, std::u16string& out) const {
  const std::size_t had = out.size();
  bool is_first = true;
  bool trims_end = false;
  std::size_t last_piece = had;
  const auto append = [&](std::string_view piece, bool needs_decoding, bool trims) {
    last_piece = out.size();
    AppendPiece(is_first && trims && !needs_decoding ? TrimmedStart(piece) : piece, needs_decoding,
                out);
    if (is_first && trims && needs_decoding) {
      std::size_t blanks = 0;
      while (had + blanks < out.size() && IsTrimmed(out[had + blanks])) ++blanks;
      out.erase(had, blanks);
    }
    is_first = false;
    trims_end = trims;
  };
  const Node& whole = nodes_[start];
  const bool is_container = whole.type == NodeType::kElement || whole.type == NodeType::kDocument;
  const NodeIndex end = is_container ? EndOf(start) : start + 1;
  // White space alone between tags is no node, but texts on both sides of it are kept apart by one
  // blank, as MSXML does.
  bool has_blank = false;
  NodeIndex last_text = kNoNode;
  for (NodeIndex i = start; i < end; ++i) {
    const Node& node = nodes_[i];
    if (i > start) {
      // What closed since the node before this one: that node, and its parents up to this one's.
      for (NodeIndex closed = i - 1; closed != node.parent; closed = nodes_[closed].parent) {
        has_blank = has_blank || HasBlankAfter(closed) ||
                    (IsElement(closed) && last_text < closed && StartsWithBlank(closed));
      }
      const bool is_text = node.type == NodeType::kText || node.type == NodeType::kCData ||
                           (node.flags & kHasOnlyText) != 0;
      if (is_text) {
        if (has_blank && out.size() > had) out.push_back(u' ');
        has_blank = false;
        last_text = i;
      }
    }
    const std::string_view text(text_ + node.start, node.end - node.start);
    const bool preserves = (node.flags & kPreservesSpace) != 0;
    const bool needs_decoding = (node.flags & kNeedsDecoding) != 0;
    if (node.type == NodeType::kText) {
      append(text, needs_decoding, !preserves);
    } else if (node.type == NodeType::kCData) {
      // Line ends are the only thing to decode: an & stands for itself there.
      for (std::size_t p = 0; p < text.size();) {
        const std::size_t cr = needs_decoding ? text.find('\r', p) : text.npos;
        append(text.substr(p, cr == text.npos ? cr : cr - p), false, false);
        if (cr == text.npos) break;
        out.push_back(u'\n');
        p = cr + (text.substr(cr).starts_with("\r\n") ? 2 : 1);
      }
      is_first = trims_end = false;
    } else if (node.type == NodeType::kElement && (node.flags & kHasOnlyText) != 0) {
      append(text.substr(node.name_length + std::size_t{2}), false, !preserves);
    } else if (!is_container) {
      append(text, false, false);
    }
  }
  if (trims_end) {
    while (out.size() > last_piece && IsTrimmed(out.back())) out.pop_back();
  }
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
