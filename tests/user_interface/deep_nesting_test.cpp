// A million levels of nesting on a small stack: read, walked and released.

#include <gtest/gtest.h>
#include <pthread.h>

#include "config/temporary_folder.h"
#include "server/created_object.h"

namespace sab::testing {
namespace {

constexpr int kLevels = 1000000;

std::string Nested(const std::string& before, const std::string& element,
                   const std::string& after) {
  std::string text = before;
  for (int i = 0; i < kLevels; ++i) text += "<" + element + ">";
  for (int i = 0; i < kLevels; ++i) text += "</" + element + ">";
  return text + after;
}

struct Work {
  Text path;
  int buttons = 0;
  int popups = 0;
};

void* ReadAndWalk(void* argument) {
  auto& work = *static_cast<Work*>(argument);
  CoInitialize(nullptr);
  {
    const auto parser = Created<IVeUiParser>(CLSID_VeUiParser);
    EXPECT_EQ(S_OK, parser->put_ConfigurationPath(Bstr(work.path).Get()));
    EXPECT_EQ(S_OK, parser->GenerateUI()) << TakeErrorDescription();
    ComPtr<IVePrsUI> ui;
    EXPECT_EQ(S_OK, parser->get_UI(ui.Put()));
    ComPtr<IVePrsRibbonButtonColl> buttons;
    EXPECT_EQ(S_OK, ui->get_CaptionCustomButtons(buttons.Put()));
    for (ComPtr<IVePrsRibbonButton> button;;) {
      EXPECT_EQ(S_OK, buttons->GetHead(button.Put()));
      if (!button) break;
      ++work.buttons;
      EXPECT_EQ(S_OK, button->get_GroupButtons(buttons.Put()));
    }
    ComPtr<IVePrsMenuItemColl> items;
    EXPECT_EQ(S_OK, ui->get_ContextMenus(items.Put()));
    for (ComPtr<IVePrsMenuItem> item;;) {
      EXPECT_EQ(S_OK, items->GetHead(item.Put()));
      if (!item) break;
      ++work.popups;
      EXPECT_EQ(S_OK, item->get_MenuItems(items.Put()));
    }
  }
  CoUninitialize();
  return nullptr;
}

TEST(DeepNesting, NeedsLittleStack) {
  TemporaryFolder folder;
  folder.Write("deep.xml",
               "<UI>" +
                   Nested("<CaptionCustomButtons>", "RibbonButton", "</CaptionCustomButtons>") +
                   Nested("<ContextMenu>", "Popup", "</ContextMenu>") + "</UI>");
  Work work{folder.Name("deep.xml")};
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  ASSERT_EQ(0, pthread_attr_setstacksize(&attributes, std::size_t{256} * 1024));
  pthread_t thread;
  ASSERT_EQ(0, pthread_create(&thread, &attributes, ReadAndWalk, &work));
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
  EXPECT_EQ(kLevels, work.buttons);
  EXPECT_EQ(kLevels, work.popups);
}

}  // namespace
}  // namespace sab::testing
