#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "preview/commands.h"
#include "preview/element.h"
#include "preview/element_findings.h"
#include "preview/html.h"
#include "preview/pictures.h"

namespace sab::preview {

/// Levels of buttons or menus in each other that are drawn; a page deeper than browsers read is of
/// no use to anybody.
inline constexpr unsigned kMaxDepth = 24;

/// A user interface as one environment has it.
struct View {
  project::FileIndex ui = project::kNoFile;
  project::FileIndex environment = project::kNoFile;  ///< kNoFile for a user interface alone
};

/// What all drawn elements have: an identifier, a command, a caption, a place.
struct Item {
  xml::NodeIndex node = xml::kNoNode;
  std::string_view kind = {};  ///< "Button"
  std::string_view identify = {};
  std::string_view command = {};
  std::string_view text = {};
  std::string_view object = {};
  std::string_view menu = {};
  std::string_view option = {};
  std::int32_t app_mode = -1;
  bool is_copy = false;  ///< drawn once more, where something opens it
};

/// Pictures of several buttons beside each other, which take them in turn.
struct Strips {
  Picture small;
  Picture large;
  std::uint32_t next = 0;
};

/// Writes what is common to all elements of a view.
class Drawing {
 public:
  /// @param app_mode draws only what this mode shows; nothing for everything
  Drawing(const project::Project& project, const check::HostIds& host_ids,
          const ElementFindings& findings, Pictures& pictures,
          std::optional<std::int32_t> app_mode);

  /// Begins a view. @param number distinguishes its anchors from those of others
  void Begin(const View& view, unsigned number);

  Html& Out() { return html_; }
  const project::File& Ui() const { return *ui_; }
  const Commands& GetCommands() const { return *commands_; }
  Pictures& GetPictures() { return pictures_; }
  unsigned Number() const { return number_; }

  /// The sections of a name, which are parts of one whole.
  std::vector<xml::NodeIndex> Sections(std::string_view name) const;
  Item ItemOf(xml::NodeIndex node, std::string_view kind, const Values& values) const;
  /// Whether the chosen mode shows an element: it is for all modes, or has a bit of this one.
  bool IsShown(const Item& item) const { return IsShown(item.app_mode); }
  bool IsShown(std::int32_t item_mode) const {
    return !app_mode_ || item_mode == -1 || (item_mode & *app_mode_) != 0;
  }

  /// A menu or a toolbar by its identifier; kNoNode if the user interface has none.
  xml::NodeIndex Defined(formats::Subject subject, std::string_view identifier) const;
  /// Whether one more element may be drawn a second time. What opens each other could otherwise
  /// grow beyond all bounds.
  bool TakeCopy() { return copies_++ < kMaxCopies; }

  /// What a person reads on an element: its text, else what its command is called.
  std::string_view CaptionOf(const Item& item) const;

  // Parts of a tag. An element has a class of its severest finding, an anchor, and a description
  // that shows while it is pointed at or has the focus.
  void WriteFindingClass(const Item& item);
  void WriteAnchor(const Item& item);
  void WriteDescribedBy(const Item& item);
  /// Sign and number of the findings, then the description; in a button, after its caption.
  void WriteBadgeAndTip(const Item& item);
  /// The findings of some elements as a list of their own.
  void WriteFindings(const std::vector<xml::NodeIndex>& elements);

  void WriteIcon(const Item& item, bool is_large, Strips* strips);
  void WritePicture(const Picture& picture);

  /// "drawing.xml:12:3"
  void WritePlace(project::FileIndex file, xml::NodeIndex element);
  void WritePlace(xml::NodeIndex element) { WritePlace(view_.ui, element); }
  void WriteTooDeep(xml::NodeIndex element);

  /// Where an element was drawn first: "v0-12"; empty where it was not.
  std::string AnchorOf(project::FileIndex file, xml::NodeIndex element) const;
  std::size_t DrawnCount() const { return drawn_; }

 private:
  static constexpr unsigned kMaxCopies = 2000;

  void WriteTipHead(const Item& item);
  void WriteCommand(const Item& item);
  void WriteFact(std::string_view label, std::string_view value);

  const project::Project& project_;
  const check::HostIds& host_ids_;
  const ElementFindings& findings_;
  Pictures& pictures_;
  std::optional<std::int32_t> app_mode_;
  Html html_;
  View view_;
  unsigned number_ = 0;
  const project::File* ui_ = nullptr;
  std::optional<Commands> commands_;
  std::map<project::FileIndex, std::vector<unsigned>> drawn_in_;  // view + 1 by element
  std::size_t drawn_ = 0;
  std::unordered_map<std::string_view, xml::NodeIndex> menus_;
  std::unordered_map<std::string_view, xml::NodeIndex> toolbars_;
  unsigned copies_ = 0;
};

}  // namespace sab::preview
