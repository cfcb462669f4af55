#include "platform/macos/menu_bar/status_bar_item.h"

#include "platform/macos/base/text_values.h"

#import <AppKit/AppKit.h>

namespace hopsel {

namespace {

class SystemItem final : public StatusBarItem {
  public:
    explicit SystemItem(NSMenu* menu)
        : item_([NSStatusBar.systemStatusBar statusItemWithLength:NSVariableStatusItemLength]) {
        item_.menu = menu;
    }
    ~SystemItem() override {
        item_.menu = nil;
        [NSStatusBar.systemStatusBar removeStatusItem:item_];
    }
    SystemItem(const SystemItem&) = delete;
    SystemItem& operator=(const SystemItem&) = delete;

    // Each with a pool of its own: no event of the application need follow that would empty its pool.

    void showSymbol(const std::string& name, const std::string& description) override {
        @autoreleasepool {
            NSString* known = foundationText(name);
            show(known != nil ? [NSImage imageWithSystemSymbolName:known
                                          accessibilityDescription:foundationText(description)]
                              : nil);
        }
    }

    void showPicture(const TemplatePicture& picture) override {
        @autoreleasepool {
            const NSSize size = {picture.width, picture.height};
            NSImage* image = [[NSImage alloc] initWithSize:size];
            for (const std::string& png : picture.pngs) {
                NSData* data = [NSData dataWithBytes:png.data() length:png.size()];
                NSBitmapImageRep* pixels = [NSBitmapImageRep imageRepWithData:data];
                if (pixels == nil) continue;
                pixels.size = size; // the system chooses by the pixels that this leaves for a point
                [image addRepresentation:pixels];
            }
            show(image);
        }
    }

    void setAccessibilityLabel(const std::string& label) override {
        @autoreleasepool {
            item_.button.accessibilityLabel = foundationText(label); // nil: the system's own words
        }
    }

  private:
    void show(NSImage* image) {
        NSStatusBarButton* button = item_.button;
        if (button == nil) return;
        [image setTemplate:YES]; // the property's name is a word of C++
        button.image = image;
        button.imagePosition = NSImageOnly;
        button.title = @"";
    }

    NSStatusItem* item_;
};

} // namespace

std::unique_ptr<StatusBarItem> makeStatusBarItem(void* menu) {
    return std::make_unique<SystemItem>((__bridge NSMenu*)menu);
}

} // namespace hopsel
