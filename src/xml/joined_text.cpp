#include "xml/joined_text.h"

#include "xml/characters.h"
#include "xml/document.h"
#include "xml/text.h"

namespace sab::xml {
namespace {

std::string_view TrimmedStart(std::string_view text) {
  while (!text.empty() && Has(text.front(), kSpace)) text.remove_prefix(1);
  return text;
}

// Joins texts at the end of a string. White space at the ends of the whole is left out where the
// first or last text allows it.
template <class Unit>
class JoinedText {
 public:
  JoinedText(const Document& document, std::basic_string<Unit>& out)
      : document_(document),
        text_(document.TextBytes().data()),
        out_(out),
        start_(out.size()),
        last_piece_(out.size()) {}

  void Append(NodeIndex whole) {
    const NodeType type = document_.TypeOf(whole);
    const bool is_container = type == NodeType::kElement || type == NodeType::kDocument;
    const NodeIndex end = is_container ? document_.EndOf(whole) : whole + 1;
    for (NodeIndex i = whole; i < end; ++i) {
      if (i > whole) Separate(i);
      AppendNode(document_.At(i), is_container);
    }
    TrimEnd();
  }

 private:
  // White space alone between tags is no node, but texts on both sides of it are kept apart by one
  // blank, as MSXML does.
  void Separate(NodeIndex index) {
    const Node& node = document_.At(index);
    // What closed since the node before this one: that node, and its parents up to this one's.
    for (NodeIndex closed = index - 1; closed != node.parent; closed = document_.ParentOf(closed)) {
      has_blank_ = has_blank_ || HasBlankAfter(closed) ||
                   (document_.IsElement(closed) && last_text_ < closed && StartsWithBlank(closed));
    }
    const bool is_text = node.type == NodeType::kText || node.type == NodeType::kCData ||
                         (node.flags & kHasOnlyText) != 0;
    if (!is_text) return;
    if (has_blank_ && out_.size() > start_) out_.push_back(' ');
    has_blank_ = false;
    last_text_ = index;
  }

  void AppendNode(const Node& node, bool is_in_container) {
    const std::string_view text(text_ + node.start, node.end - node.start);
    const bool trims = (node.flags & kPreservesSpace) == 0;
    const bool needs_decoding = (node.flags & kNeedsDecoding) != 0;
    if (node.type == NodeType::kText) {
      AppendPiece(text, needs_decoding, trims);
    } else if (node.type == NodeType::kCData) {
      AppendSection(text, needs_decoding);
    } else if (node.type == NodeType::kElement && (node.flags & kHasOnlyText) != 0) {
      AppendPiece(text.substr(node.name_length + std::size_t{2}), false, trims);
    } else if (!is_in_container) {
      AppendPiece(text, false, false);
    }
  }

  void AppendPiece(std::string_view piece, bool needs_decoding, bool trims) {
    const bool trims_start = is_first_ && trims;
    last_piece_ = out_.size();
    if (needs_decoding) {
      AppendDecoded(piece, false, out_);
      if (trims_start) TrimStart();
    } else {
      AppendPlain(trims_start ? TrimmedStart(piece) : piece, out_);
    }
    is_first_ = false;
    trims_end_ = trims;
  }

  // Line ends are the only thing to decode in a CDATA section: an & is itself there.
  void AppendSection(std::string_view text, bool needs_decoding) {
    for (std::size_t p = 0; p < text.size();) {
      const std::size_t cr = needs_decoding ? text.find('\r', p) : text.npos;
      AppendPiece(text.substr(p, cr == text.npos ? cr : cr - p), false, false);
      if (cr == text.npos) break;
      out_.push_back('\n');
      p = cr + (text.substr(cr).starts_with("\r\n") ? 2 : 1);
    }
    is_first_ = trims_end_ = false;
  }

  void TrimStart() {
    std::size_t blanks = 0;
    while (start_ + blanks < out_.size() && IsTrimmed(static_cast<char32_t>(out_[start_ + blanks])))
      ++blanks;
    out_.erase(start_, blanks);
  }

  void TrimEnd() {
    if (!trims_end_) return;
    while (out_.size() > last_piece_ && IsTrimmed(static_cast<char32_t>(out_.back())))
      out_.pop_back();
  }

  // Whether white space that is no node follows a node, or is the first in an element.
  bool HasBlankAfter(NodeIndex node) const {
    const NodeIndex next = document_.NextSibling(node);
    if (next != kNoNode && document_.TypeOf(next) == NodeType::kText) return false;
    return document_.TypeOf(node) != NodeType::kText &&
           Has(text_[document_.EndOfMarkup(node)], kSpace);
  }
  bool StartsWithBlank(NodeIndex element) const {
    if ((document_.At(element).flags & (kIsEmptyTag | kHasOnlyText)) != 0) return false;
    const NodeIndex child = document_.FirstChild(element);
    if (child != kNoNode && document_.TypeOf(child) == NodeType::kText) return false;
    return Has(text_[document_.ContentStart(element)], kSpace);
  }

  const Document& document_;
  const char* const text_;
  std::basic_string<Unit>& out_;
  const std::size_t start_;
  std::size_t last_piece_;  // where the last text starts
  bool is_first_ = true;
  bool trims_end_ = false;
  bool has_blank_ = false;  // since the last text
  NodeIndex last_text_ = kNoNode;
};

}  // namespace

template <class Unit>
void AppendJoinedText(const Document& document, NodeIndex node, std::basic_string<Unit>& out) {
  JoinedText(document, out).Append(node);
}

template void AppendJoinedText(const Document& document, NodeIndex node, std::u16string& out);
template void AppendJoinedText(const Document& document, NodeIndex node, std::wstring& out);
template void AppendJoinedText(const Document& document, NodeIndex node, std::string& out);

}  // namespace sab::xml
