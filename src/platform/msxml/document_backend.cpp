#include "document_backend.h"

#include <vector>

#include "base/com_error.h"
#include "base/error_info.h"
#include "base/guid.h"
#include "base/result_words.h"
#include "platform/file.h"
#include "platform/file_name.h"
#include "xml/error.h"

namespace sab::backend {
namespace {

// The identifier of DOMDocument60, which the headers of mingw-w64 lack.
constexpr CLSID kDomDocument60 = GuidOf("88D96A05-F192-11D4-A65F-0040963251E5");

Text FromAscii(std::string_view ascii) { return Text(ascii.begin(), ascii.end()); }

std::string Trimmed(std::string text) {
  while (!text.empty() && static_cast<unsigned char>(text.back()) <= ' ') text.pop_back();
  return text;
}

ComPtr<IXMLDOMDocument> CreateDocument(HRESULT& result) {
  ComPtr<IXMLDOMDocument> document;
  ComPtr<IUnknown> created;
  constexpr DWORD kAnywhere =
      CLSCTX_INPROC_SERVER | CLSCTX_INPROC_HANDLER | CLSCTX_LOCAL_SERVER | CLSCTX_REMOTE_SERVER;
  result = CoCreateInstance(kDomDocument60, nullptr, kAnywhere, IID_IUnknown, created.PutVoid());
  if (SUCCEEDED(result)) result = OleRun(created.Get());
  if (SUCCEEDED(result)) result = created->QueryInterface(IID_IXMLDOMDocument, document.PutVoid());
  return document;
}

bool IsElement(IXMLDOMNode* node) {
  DOMNodeType type = NODE_INVALID;
  return SUCCEEDED(node->get_nodeType(&type)) && type == NODE_ELEMENT;
}

LoadFailure FailureOf(IXMLDOMDocument* document) {
  LoadFailure failure;
  ComPtr<IXMLDOMParseError> error;
  if (FAILED(document->get_parseError(error.Put())) || !error) return failure;
  LONG code = 0;
  LONG line = 0;
  LONG column = 0;
  Bstr reason;
  error->get_errorCode(&code);
  error->get_line(&line);
  error->get_linepos(&column);
  error->get_reason(reason.Put());
  failure.position = {static_cast<unsigned>(line), static_cast<unsigned>(column)};
  failure.reason = Trimmed(ToUtf8(reason.View())) + " (" + ResultDigits(code) + ")";
  return failure;
}

// Our own reader reports the place and the reason of what is not well-formed, and why a file cannot
// be read, where the DOM says little.
void Explain(TextView file, LoadFailure& failure) {
  std::string reason;
  std::optional<std::string> bytes = ReadFileBytes(file, reason);
  if (!bytes) {
    failure.reason = reason;
    return;
  }
  try {
    const xml::Document document(std::move(*bytes));
  } catch (const xml::Error& error) {
    failure.position = {error.Line(), error.Column()};
    failure.reason = error.what();
  }
}

[[noreturn]] void RaiseFailedCall(HRESULT result, std::string_view operation, TextView file) {
  std::string message = file.empty() ? std::string() : ToUtf8(file) + ": ";
  message += std::string(operation) + " failed";
  const std::string description = Trimmed(TakeErrorInfo());
  message += description.empty() ? " (" + ResultDigits(result) + ")" : ": " + description;
  throw ComError(result, message);
}

}  // namespace

// --- Element ---

void Element::CheckCall(HRESULT result, std::string_view operation) const {
  if (FAILED(result))
    RaiseFailedCall(result, operation, document_ ? document_->File() : TextView());
}

TextView Element::LocalName() const {
  if (local_name_.IsNull())
    CheckCall(node_->get_baseName(local_name_.Put()), "reading an element's name");
  return local_name_.View();
}

bool Element::HasLocalName(std::string_view name) const { return EqualsAscii(LocalName(), name); }

bool Element::HasNodeName(std::string_view name) const {
  Bstr own;
  CheckCall(node_->get_nodeName(own.Put()), "reading an element's name");
  return EqualsAscii(own.View(), name);
}

TextView Element::ReadLocalName(Text& scratch) const { return scratch.assign(LocalName()); }

TextView Element::ReadText(Text& scratch) const { return TextOf(node_, scratch); }

TextView Element::TextOf(const ComPtr<IXMLDOMNode>& node, Text& scratch) const {
  Bstr text;
  CheckCall(node->get_text(text.Put()), "reading a text");
  return scratch.assign(text.View());
}

ComPtr<IXMLDOMNode> Element::FirstNode() const {
  ComPtr<IXMLDOMNode> child;
  CheckCall(node_->get_firstChild(child.Put()), "reading child nodes");
  return child;
}

ComPtr<IXMLDOMNode> Element::NextNode(const ComPtr<IXMLDOMNode>& node) const {
  ComPtr<IXMLDOMNode> next;
  CheckCall(node->get_nextSibling(next.Put()), "reading child nodes");
  return next;
}

Element Element::FirstChild() const {
  ComPtr<IXMLDOMNode> child = FirstNode();
  while (child && !IsElement(child.Get())) child = NextNode(child);
  return Element(document_, std::move(child));
}

Element Element::FirstChildNamed(std::string_view name) const {
  ComPtr<IXMLDOMNode> found;
  CheckCall(node_->selectSingleNode(Bstr(FromAscii(name)).Get(), found.Put()),
            "selecting a child node");
  return Element(document_, std::move(found));
}

void Element::MoveToNextSibling() {
  local_name_ = Bstr();
  do {
    node_ = NextNode(node_);
  } while (node_ && !IsElement(node_.Get()));
}

xml::NodeIndex Element::PlaceInBytes() const {
  constexpr std::string_view kOperation = "finding an element in the file";
  // How many elements precede it, and before each of its ancestors, under the same parent.
  std::vector<unsigned> places;
  for (ComPtr<IXMLDOMNode> node = node_; node && IsElement(node.Get());) {
    places.push_back(0);
    ComPtr<IXMLDOMNode> sibling = node;
    for (;;) {
      ComPtr<IXMLDOMNode> previous;
      CheckCall(sibling->get_previousSibling(previous.Put()), kOperation);
      if (!previous) break;
      if (IsElement(previous.Get())) ++places.back();
      sibling = std::move(previous);
    }
    ComPtr<IXMLDOMNode> parent;
    CheckCall(node->get_parentNode(parent.Put()), kOperation);
    node = std::move(parent);
  }
  const xml::Document& bytes = document_->Bytes();
  xml::NodeIndex found = xml::kNoNode;
  for (auto place = places.rbegin(); place != places.rend(); ++place) {
    found = bytes.FirstChildElement(found);
    for (unsigned i = 0; i < *place && found != xml::kNoNode; ++i) found = bytes.NextElement(found);
    if (found == xml::kNoNode) break;
  }
  if (found == xml::kNoNode || !HasNodeName(bytes.NameOf(found)))
    CheckCall(E_FAIL,
              "finding an element again, because the file has changed since it "
              "was loaded,");
  return found;
}

AppendedElement Element::Append(std::string_view name, TextView text) {
  return AppendTo(document_->Editor(), PlaceInBytes(), name, text);
}

void Element::SetText(TextView text) { SetTextOf(document_->Editor(), PlaceInBytes(), text); }

void Element::Remove() { document_->Editor().Remove(PlaceInBytes()); }

// --- Nodes and Document ---

std::vector<Element> Nodes::First(std::span<const std::string_view> keys) const {
  std::vector<Element> elements;
  for (const std::string_view key : keys) {
    Text path = path_;
    path.push_back(L'/');
    AppendAscii(path, key);
    elements.push_back(document_->Select(path));
  }
  return elements;
}

std::vector<Element> Nodes::Children() const { return document_->SelectElements(path_ + L"/*"); }

void Document::CheckCall(HRESULT result, std::string_view operation) const {
  if (FAILED(result)) RaiseFailedCall(result, operation, file_);
}

void Document::Clear(TextView file) {
  editor_.reset();
  bytes_.reset();
  file_ = file;
  failure_ = {};
  is_loaded_ = is_new_ = false;
  HRESULT result = S_OK;
  document_ = CreateDocument(result);
  if (!document_)
    throw ComError(E_POINTER, ToUtf8(file) +
                                  ": MSXML 6, which reads XML files, cannot be created (" +
                                  ResultDigits(result) + ")");
}

bool Document::Load(TextView file, const FileLock*) {
  Clear(file);
  const char* const refusal = ReasonAgainstName(file);
  if (!refusal) {
    const Bstr name(file);
    VARIANT source;
    VariantInit(&source);
    V_VT(&source) = VT_BSTR;
    V_BSTR(&source) = name.Get();
    VARIANT_BOOL success = VARIANT_FALSE;
    CheckCall(document_->load(source, &success), "loading");
    is_loaded_ = success != VARIANT_FALSE;
  }
  if (is_loaded_) return true;
  if (refusal) {
    failure_.reason = refusal;
  } else {
    failure_ = FailureOf(document_.Get());
    Explain(file, failure_);
  }
  failure_.file = ToUtf8(file);
  failure_.is_missing = !FileExists(file);
  return false;
}

void Document::Create(std::string_view root_name) {
  Clear({});
  bytes_.emplace(BytesOfNewDocument(root_name));
  const Bstr xml(FromAscii("<" + std::string(root_name) + "/>"));
  VARIANT_BOOL success = VARIANT_FALSE;
  CheckCall(document_->loadXML(xml.Get(), &success), "starting a document");
  is_loaded_ = is_new_ = true;
}

Element Document::Root() {
  ComPtr<IXMLDOMElement> root;
  if (document_)
    CheckCall(document_->get_documentElement(root.Put()), "reading the document element");
  return Element(this, ComPtr<IXMLDOMNode>(root.Get()));
}

Element Document::Select(TextView path) {
  if (!document_) return Element();
  const Bstr own_path(path);
  const std::string operation = "selecting \"" + ToUtf8(path) + "\"";
  ComPtr<IXMLDOMNode> node;
  CheckCall(path.empty() ? E_FAIL : document_->selectSingleNode(own_path.Get(), node.Put()),
            operation);
  if (!node || IsElement(node.Get())) return Element(this, std::move(node));
  // The path leads to other nodes as well; the first element among them is meant.
  ComPtr<IXMLDOMNodeList> list;
  CheckCall(document_->selectNodes(own_path.Get(), list.Put()), operation);
  do {
    CheckCall(list->nextNode(node.Put()), operation);
  } while (node && !IsElement(node.Get()));
  return Element(this, std::move(node));
}

std::vector<Element> Document::SelectElements(TextView path) {
  const std::string operation = "selecting \"" + ToUtf8(path) + "\"";
  ComPtr<IXMLDOMNodeList> list;
  CheckCall(document_->selectNodes(Bstr(path).Get(), list.Put()), operation);
  std::vector<Element> elements;
  for (;;) {
    ComPtr<IXMLDOMNode> node;
    CheckCall(list->nextNode(node.Put()), operation);
    if (!node) return elements;
    if (IsElement(node.Get())) elements.emplace_back(this, std::move(node));
  }
}

Element Document::Select(std::string_view ascii_path) {
  return Select(TextView(FromAscii(ascii_path)));
}

const xml::Document& Document::Bytes() {
  if (bytes_) return *bytes_;
  std::string reason;
  auto bytes = ReadFileBytes(file_, reason);
  try {
    if (bytes) bytes_.emplace(*std::move(bytes));
  } catch (const xml::Error& error) {
    reason = error.what();
  }
  if (!bytes_) throw ComError(kDocumentNotLoaded, ToUtf8(file_) + " is left as it is: " + reason);
  return *bytes_;
}

xml::Editor& Document::Editor() {
  if (!editor_) editor_.emplace(Bytes());
  return *editor_;
}

void Document::Save(TextView file) {
  if (!is_loaded_) {
    RefuseToOverwrite(file, failure_);
    return;
  }
  const bool is_changed = is_new_ || (editor_ && !editor_->IsEmpty());
  if (is_changed || file != file_) {
    SaveEdits(Editor(), file);
  } else {
    CheckReplaceable(file);
  }
}

}  // namespace sab::backend
