#include "xml/reader.h"

#include <array>
#include <cstring>
#include <string_view>

#include "xml/attribute_reader.h"
#include "xml/characters.h"
#include "xml/error.h"

namespace sab::xml {
namespace {

class Reader : private AttributeReader {
 public:
  Reader(const char* text, std::size_t size) : AttributeReader(text, size) {
    // An element seldom takes fewer bytes. What is not needed of this is never touched.
    constexpr std::size_t kBytesPerNode = 32;
    nodes_.Reserve(64 + size / kBytesPerNode);
  }

  NodeArray Read() {
    nodes_.Append({0, 0, kNoNode, kNoNode, 0, 0, NodeType::kDocument, 0, 0});
    ReadDeclaration();
    ReadMisc();
    if (p_ == end_) Fail("the document has no element");
    if (*p_ != '<') Fail("text outside the document element");
    if (!Has(p_[1], kNameStart)) Fail("the document element is expected here");
    ReadElements();
    ReadMisc();
    if (p_ != end_) {
      Fail(*p_ == '<' ? "there is a second document element" : "text after the document element");
    }
    nodes_[0].end = Offset(end_);
    return std::move(nodes_);
  }

 private:
  // Makes a node the next child of the element that is open.
  NodeIndex Append(NodeType type, const char* start, const char* end, std::uint8_t flags = 0) {
    const NodeIndex index =
        nodes_.Append({Offset(start), Offset(end), open_, kNoNode, 0, 0, type, flags, 0});
    if (previous_ != kNoNode) nodes_[previous_].next = index;
    previous_ = index;
    return index;
  }

  // --- prolog ---

  // Comments and processing instructions before and after the document element.
  void ReadMisc() {
    for (;;) {
      SkipSpace();
      if (StartsWith("<!--")) {
        ReadComment();
      } else if (StartsWith("<?")) {
        ReadInstruction();
      } else if (StartsWith("<!DOCTYPE")) {
        Fail("a document type declaration is not accepted: remove it");
      } else {
        return;
      }
    }
  }

  void ReadComment() {
    const char* const start = p_;
    p_ += 4;
    for (;;) {
      while (Has(*p_, kPlainText) && *p_ != '-') ++p_;
      if (p_[0] == '-' && p_[1] == '-') {
        if (p_[2] != '>') Fail("-- inside a comment");
        Append(NodeType::kComment, start + 4, p_);
        p_ += 3;
        return;
      }
      if (p_ >= end_) FailAt(start, "the comment is not closed");
      ReadCharacter();
    }
  }

  void ReadInstruction() {
    const char* const start = p_;
    p_ += 2;
    const std::string_view target = ReadName("the target of a processing instruction");
    if (target.size() == 3 && (target[0] | 0x20) == 'x' && (target[1] | 0x20) == 'm' &&
        (target[2] | 0x20) == 'l') {
      FailAt(start, "an XML declaration may stand only at the very start");
    }
    if (colon_) FailAt(start, "a target may have no colon");
    if (!StartsWith("?>") && !SkipSpace()) Fail("a space is expected behind the target");
    const char* const data = p_;
    while (!StartsWith("?>")) {
      if (p_ >= end_) FailAt(start, "the processing instruction is not closed");
      ReadCharacter();
    }
    Append(NodeType::kInstruction, data, p_);
    p_ += 2;
  }

  // --- elements ---

  void ReadElements() {
    do {
      if (ReadPredictedTag()) continue;
      if (*p_ != '<') ReadText();
      switch (p_[1]) {
        case '/':
          ReadEndTag();
          break;
        case '!':
          if (StartsWith("<!--")) {
            ReadComment();
          } else if (StartsWith("<![CDATA[")) {
            ReadCData();
          } else {
            Fail("a declaration may not stand here");
          }
          break;
        case '?':
          ReadInstruction();
          break;
        default:
          ReadStartTag();
      }
    } while (open_ != kNoNode);
  }

  void ReadStartTag() {
    const char* const start = p_++;
    const auto indentation = space_end_ == start ? static_cast<std::size_t>(start - space_) : 0;
    NodeIndex& last = last_of_name_[HashOfName(p_)];
    std::string_view name = KnownName(nodes_[last]);
    if (name.empty()) {
      name = ReadName("an element's name");
      const Node& node = nodes_[last];
      predicted_ =
          node.name_length == name.size() && Matches(name.data(), NameOf(node), name.size())
              ? last + 1
              : kNoNode;
    } else {
      predicted_ = last + 1;
      colon_ = nullptr;
      p_ += name.size();
    }
    last = colon_ ? kNoNode : nodes_.Size();
    ReadElement(start, name,
                static_cast<std::uint16_t>(indentation <= UINT16_MAX ? indentation : 0));
  }

  // Files repeat themselves, so a name is compared as a whole with the last one that began alike
  // before looking at its bytes one by one. The hash is that of up to seven bytes before a >.
  static std::size_t HashOfName(const char* p) {
    constexpr std::uint64_t kEach = 0x0101010101010101;
    std::uint64_t word;
    std::memcpy(&word, p, 8);
    const std::uint64_t differs = word ^ (kEach * '>');
    const std::uint64_t ends = (differs - kEach) & ~differs & (kEach * 0x80);
    constexpr std::uint64_t kSpread = 0x9E3779B97F4A7C15;  // 2^64 divided by the golden ratio
    return static_cast<std::size_t>(((word & (ends ^ (ends - 1)) >> 8) * kSpread) >>
                                    (64 - kHashBits));
  }
  const char* NameOf(const Node& element) const { return text_ + element.start + 1; }
  // The name that is next if it is that of an element, which has no colon, and > follows.
  std::string_view KnownName(const Node& element) const {
    const std::size_t size = element.name_length;
    return size != 0 && Matches(p_, NameOf(element), size) && p_[size] == '>'
               ? std::string_view(p_, size)
               : std::string_view();
  }

  // An element is mostly followed by what followed the last one of its name, down to the
  // indentation. So the next tag is compared as a whole with the one that was there.
  bool ReadPredictedTag() {
    const Node& node = nodes_[predicted_];
    if (node.type != NodeType::kElement || node.prefix_length != 0) return false;
    const std::uint16_t indentation = node.indentation;
    // From the white space to what ends the name.
    const std::size_t size = indentation + std::size_t{node.name_length} + 2;
    if (!Matches(p_, text_ + node.start - indentation, size)) return false;
    if (indentation != 0 && (nodes_[open_].flags & kPreservesSpace) != 0) return false;
    const char* const start = p_ + indentation;
    const std::string_view name(start + 1, node.name_length);
    p_ += size - 1;
    colon_ = nullptr;
    ++predicted_;
    ReadElement(start, name, indentation);
    return true;
  }

  // From after the name.
  void ReadElement(const char* start, std::string_view name, std::uint16_t indentation) {
    const NodeIndex element = nodes_.Size();
    if (ReadOnlyText(start, name)) {
      nodes_[element].indentation = indentation;
      return;
    }
    const std::size_t prefix_length = PrefixOf(name);
    Append(NodeType::kElement, start, start, InheritedFlags());
    nodes_[element].name_length = static_cast<std::uint16_t>(name.size());
    nodes_[element].indentation = indentation;
    open_ = element;
    previous_ = kNoNode;
    ++depth_;
    if (*p_ != '>' && *p_ != '/')
      nodes_[element].flags = ReadAttributes(depth_, nodes_[element].flags);
    ResolveName(element, name.substr(0, prefix_length));
    if (*p_ == '/') {
      ++p_;
      if (*p_ != '>') Fail("> is expected behind /");
      ++p_;
      nodes_[element].flags |= kIsEmptyTag;
      Close(p_);
      return;
    }
    if (*p_ != '>') Fail("the tag is not closed: > is expected");
    ++p_;
  }

  std::uint8_t InheritedFlags() const { return nodes_[open_].flags & kPreservesSpace; }

  // The commonest element by far: <name>plain text</name>. It needs one node only, which is never
  // open.
  bool ReadOnlyText(const char* start, std::string_view name) {
    if (*p_ != '>' || colon_ || namespaces_.IsUsed()) return false;
    const char* const text = p_ + 1;
    const char* const stop = SkipLiteralText(text);
    if (stop == text || stop[0] != '<' || stop[1] != '/' || Has(*text, kSpace)) return false;
    if (!Matches(stop + 2, name.data(), name.size()) || stop[2 + name.size()] != '>') return false;
    const auto flags = static_cast<std::uint8_t>(InheritedFlags() | kHasOnlyText);
    const NodeIndex element = Append(NodeType::kElement, start, stop, flags);
    nodes_[element].name_length = static_cast<std::uint16_t>(name.size());
    p_ = stop + name.size() + 3;
    return true;
  }

  void Close(const char* end) {
    Node& element = nodes_[open_];
    element.end = Offset(end);
    previous_ = open_;
    open_ = element.parent;
    if (namespaces_.IsUsed()) namespaces_.Leave(depth_);
    --depth_;
  }

  void ReadEndTag() {
    const Node& element = nodes_[open_];
    const char* const start = p_;
    const char* const name = text_ + element.start + 1;
    if (!Matches(p_ + 2, name, element.name_length) ||
        Has(p_[2 + element.name_length], kNameByte)) {
      p_ += 2;
      const std::string_view found = ReadName("the name of the end tag");
      const Place place = PlaceOf(text_, element.start);
      FailAt(start, "</" + std::string(found) + "> does not close <" +
                        std::string(name, element.name_length) + "> of line " +
                        std::to_string(place.line));
    }
    p_ += 2 + element.name_length;
    SkipSpace();
    if (*p_ != '>') Fail("the end tag is not closed: > is expected");
    ++p_;
    Close(start);
  }

  void ResolveName(NodeIndex element, std::string_view prefix) {
    if (!prefix.empty()) {
      if (prefix == "xmlns" || !namespaces_.Find(prefix)) FailUndeclared(prefix);
      nodes_[element].prefix_length = static_cast<std::uint16_t>(prefix.size() + 1);
      nodes_[element].flags |= kInNamespace;
    } else if (namespaces_.HasDefault()) {
      nodes_[element].flags |= kInNamespace;
    }
  }

  // --- content ---

  void ReadText() {
    const char* const start = p_;
    // Space between tags is no node, unless it is to be kept.
    p_ = SkipWhiteSpace(p_);
    const bool preserves = (nodes_[open_].flags & kPreservesSpace) != 0;
    if (*p_ == '<' && p_ != start && !preserves) {
      space_ = start;
      space_end_ = p_;
      return;
    }
    std::uint8_t flags = nodes_[open_].flags & kPreservesSpace;
    if (std::memchr(start, '\r', static_cast<std::size_t>(p_ - start))) flags |= kNeedsDecoding;
    for (;;) {
      p_ = SkipLiteralText(p_);
      if (*p_ == '<') break;
      if (*p_ == '&') {
        flags |= kNeedsDecoding;
        ReadReference();
      } else if (*p_ == ']') {
        if (StartsWith("]]>")) Fail("]]> in a text: write ]]&gt;");
        ++p_;
      } else if (p_ >= end_) {
        const std::string name(text_ + nodes_[open_].start + 1, nodes_[open_].name_length);
        Fail("</" + name + "> is missing");
      } else {
        if (*p_ == '\r') flags |= kNeedsDecoding;
        ReadCharacter();
      }
    }
    Append(NodeType::kText, start, p_, flags);
  }

  void ReadCData() {
    const char* const start = p_;
    p_ += 9;
    const char* const text = p_;
    std::uint8_t flags = 0;
    for (;;) {
      p_ = SkipLiteralText(p_);
      if (p_[0] == ']' && p_[1] == ']' && p_[2] == '>') break;
      if (p_ >= end_) FailAt(start, "the CDATA section is not closed");
      if (*p_ == '\r') flags = kNeedsDecoding;
      ReadCharacter();
    }
    Append(NodeType::kCData, text, p_, flags);
    p_ += 3;
  }

  const char* space_ = nullptr;  // white space between two tags, the last that was read
  const char* space_end_ = nullptr;
  NodeArray nodes_;
  NodeIndex predicted_ = kNoNode;  // the element whose tag is expected to come again
  static constexpr int kHashBits = 6;
  std::array<NodeIndex, 1 << kHashBits> last_of_name_ = {};  // by a hash of the name
  NodeIndex open_ = kNoNode;      // the element whose content is being read
  NodeIndex previous_ = kNoNode;  // its last child so far
  std::uint32_t depth_ = 0;
};

}  // namespace

NodeArray Read(const char* text, std::size_t size) {
  if (size >= UINT32_MAX) throw Error("a document of over 4 GiB is not read");
  return Reader(text, size).Read();
}

Place PlaceOf(const char* text, std::size_t offset) {
  Place place{1, 1};
  for (std::size_t i = 0; i < offset; ++i) {
    if (text[i] == '\n' || (text[i] == '\r' && text[i + 1] != '\n')) {
      ++place.line;
      place.column = 1;
    } else if ((static_cast<unsigned char>(text[i]) & 0xC0U) != 0x80) {
      ++place.column;
    }
  }
  return place;
}

}  // namespace sab::xml
