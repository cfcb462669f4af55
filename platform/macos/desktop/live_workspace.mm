#include "platform/macos/desktop/live_workspace.h"

#include "platform/macos/base/activation.h"
#include "platform/macos/base/text_values.h"

#import <AppKit/AppKit.h>
#import <ServiceManagement/ServiceManagement.h>
#import <UniformTypeIdentifiers/UniformTypeIdentifiers.h>

namespace hopsel {

namespace {

NSURL* urlOf(const std::filesystem::path& file) {
    NSString* path = foundationText(file.string());
    return path != nil ? [NSURL fileURLWithPath:path] : nil;
}

} // namespace

void LiveWorkspace::open(const std::string& address) {
    NSString* text = foundationText(address);
    NSURL* url = text != nil ? [NSURL URLWithString:text] : nil;
    if (url != nil) [NSWorkspace.sharedWorkspace openURL:url];
}

void LiveWorkspace::openLoginItems() { [SMAppService openSystemSettingsLoginItems]; }

std::optional<std::filesystem::path> LiveWorkspace::askForFile(const std::string& suggestedName) {
    NSSavePanel* panel = [NSSavePanel savePanel];
    if (NSString* name = foundationText(suggestedName)) panel.nameFieldStringValue = name;
    panel.allowedContentTypes = @[ UTTypePlainText ];
    panel.canCreateDirectories = YES;
    NSURL* downloads = [NSFileManager.defaultManager URLsForDirectory:NSDownloadsDirectory
                                                            inDomains:NSUserDomainMask]
                           .firstObject;
    if (downloads != nil) panel.directoryURL = downloads;
    activation::comeToFront();
    if ([panel runModal] != NSModalResponseOK) return std::nullopt;
    const char* chosen = panel.URL.fileSystemRepresentation; // null without a location
    if (chosen == nullptr) return std::nullopt;
    return std::filesystem::path(chosen);
}

bool LiveWorkspace::write(const std::filesystem::path& file, const std::string& contents) {
    NSURL* url = urlOf(file);
    NSData* data = [NSData dataWithBytes:contents.data() length:contents.size()];
    return url != nil && [data writeToURL:url options:NSDataWritingAtomic error:nil];
}

void LiveWorkspace::reveal(const std::filesystem::path& file) {
    if (NSURL* url = urlOf(file)) [NSWorkspace.sharedWorkspace activateFileViewerSelectingURLs:@[ url ]];
}

void LiveWorkspace::copyText(const std::string& text) {
    NSString* string = foundationText(text);
    if (string == nil) return;
    [NSPasteboard.generalPasteboard clearContents];
    [NSPasteboard.generalPasteboard setString:string forType:NSPasteboardTypeString];
}

} // namespace hopsel
