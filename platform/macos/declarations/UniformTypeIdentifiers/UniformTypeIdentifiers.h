// Types of files, for Objective-C++.
#pragma once

#include <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@interface UTType : NSObject
@end

extern "C" {
extern UTType* const UTTypePlainText;
}

NS_ASSUME_NONNULL_END
