#include "check/catalogue.h"

#include "check/text_rules.h"

namespace sab::check {
namespace {

using project::File;
using xml::kNoNode;
using xml::NodeIndex;

class Catalogue {
 public:
  Catalogue(Reporter& reporter, project::FileIndex index)
      : reporter_(reporter),
        index_(index),
        file_(reporter.GetProject().At(index)),
        xml_(file_.Xml()) {}

  void Check() {
    for (NodeIndex standard = xml_.FirstChildElement(xml_.Root()); standard != kNoNode;
         standard = xml_.NextElement(standard)) {
      if (file_.RuleIdOf(standard) == project::kNoRule) continue;
      if (!HasKnownChild(standard)) {
        ReportStray(standard, "a standard without attributes and symbols");
        continue;
      }
      const NodeIndex symbols = file_.ChildNamed(standard, "StandardSymbols");
      if (symbols == kNoNode) continue;
      for (NodeIndex symbol = xml_.FirstChildElement(symbols); symbol != kNoNode;
           symbol = xml_.NextElement(symbol)) {
        if (file_.RuleIdOf(symbol) != project::kNoRule) CheckSymbol(symbol);
      }
    }
  }

 private:
  bool HasKnownChild(NodeIndex parent) const {
    for (NodeIndex child = xml_.FirstChildElement(parent); child != kNoNode;
         child = xml_.NextElement(child)) {
      const project::Placement placement = file_.PlacementOf(child);
      if (file_.RuleIdOf(child) != project::kNoRule &&
          placement != project::Placement::kMisplaced) {
        return true;
      }
    }
    return false;
  }

  void ReportStray(NodeIndex node, const std::string& what) {
    reporter_.Add(Mistake::kStandardStrayChild, index_, file_.TagSpan(node),
                  {Tag(xml_.NameOf(node)) + " counts as " + what + ": remove it, or fill it in"});
  }

  void CheckSymbol(NodeIndex symbol) {
    if (!HasKnownChild(symbol)) {
      ReportStray(symbol, "a symbol without a number and revisions");
      return;
    }
    const NodeIndex id = file_.ChildNamed(symbol, "Identify");
    if (id == kNoNode) {
      reporter_.Add(Mistake::kStandardSymbolId, index_, file_.TagSpan(symbol),
                    {"the symbol has no " + Tag("Identify") + ": give it its number"});
      return;
    }
    const std::string_view text = file_.TextOf(id);
    const formats::Rule number = formats::Int32("Identify", "");
    if (text.empty() || !AgainstWhole(number, text)) return;
    reporter_.Add(Mistake::kStandardSymbolId, index_, file_.ValueSpan(id),
                  {"the identifier of a symbol is a number, not " + Quoted(text)});
  }

  Reporter& reporter_;
  const project::FileIndex index_;
  const File& file_;
  const xml::Document& xml_;
};

}  // namespace

void CheckCatalogue(Reporter& reporter, project::FileIndex file) {
  Catalogue(reporter, file).Check();
}

}  // namespace sab::check
