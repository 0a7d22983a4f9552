#pragma once

#include <string_view>

#import <Foundation/Foundation.h>

namespace quiverly {

// The same text for Foundation; empty when the bytes are not UTF-8.
inline NSString* foundationText(std::string_view text) {
    NSString* const converted = [[NSString alloc] initWithBytes:text.data()
                                                         length:text.size()
                                                       encoding:NSUTF8StringEncoding];
    return converted != nil ? converted : @"";
}

} // namespace quiverly
