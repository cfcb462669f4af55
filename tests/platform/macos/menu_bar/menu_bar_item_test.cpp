// What the item of the Mac's menu bar is told, a line each.
#include "platform/macos/menu_bar/menu_bar_item.h"

#include <QImage>
#include <gmock/gmock.h>

namespace hopsel {
namespace {

class FakeStatusBarItem final : public StatusBarItem {
  public:
    explicit FakeStatusBarItem(std::vector<std::string>& told) : told_(told) {}
    void showSymbol(const std::string& name, const std::string& description) override {
        told_.push_back("symbol " + name + ", " + description);
    }
    void showPicture(const TemplatePicture& picture) override {
        std::string line = "picture " + std::to_string(static_cast<int>(picture.width)) + ":";
        for (const std::string& png : picture.pngs)
            line += " " + std::to_string(QImage::fromData(QByteArray::fromStdString(png), "PNG").width());
        told_.push_back(line);
    }
    void setAccessibilityLabel(const std::string& label) override { told_.push_back(label); }

  private:
    std::vector<std::string>& told_;
};

TEST(MenuBarItem, ShowsSymbolsOfTheSystemAndBadgesAsWideAsTheirLabels) {
    std::vector<std::string> told;
    MenuBarItem item(std::make_unique<FakeStatusBarItem>(told));
    item.show({"keyboard", std::nullopt});
    item.show({"keyboard", std::nullopt});
    item.show({"keyboard", StatusBadge{"A", "한", true}});
    item.show({"keyboard", StatusBadge::single("한")});
    item.setName("Hopsel, Korean");
    EXPECT_THAT(told, testing::ElementsAre("symbol keyboard, Hopsel", "picture 40: 40 80",
                                           "picture 22: 22 44", "Hopsel, Korean"));
}

} // namespace
} // namespace hopsel
