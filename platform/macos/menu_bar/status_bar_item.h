// The one object of the system's menu bar, behind an interface that needs no Objective-C.
//
// Owned by the menu bar item. The menu outlives it.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace hopsel {

/// Drawn in black on nothing; the system gives it the ink of the bar.
struct TemplatePicture {
    double width; ///< points
    double height;
    std::vector<std::string> pngs; ///< the same picture for one, two... pixels a point
};

class StatusBarItem {
  public:
    virtual ~StatusBarItem() = default;

    /// `name`: of one of the system's symbol images. A name that the system does not know empties the item.
    virtual void showSymbol(const std::string& name, const std::string& description) = 0;
    virtual void showPicture(const TemplatePicture& picture) = 0;
    virtual void setAccessibilityLabel(const std::string& label) = 0;
};

/// In the system's bar, as wide as what it shows; gone from it with the object. `menu` is an NSMenu.
std::unique_ptr<StatusBarItem> makeStatusBarItem(void* menu);

} // namespace hopsel
