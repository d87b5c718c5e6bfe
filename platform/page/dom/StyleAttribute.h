#pragma once

#include "platform/page/dom/Node.h"

#include <string>
#include <string_view>

namespace tessaly::page {

/// The value of `property` in the element's `style`, in small letters without blanks around it;
/// empty without one. The last declaration counts.
std::u16string styleProperty(const Node& element, std::u16string_view property);

/// Takes `property` out of the element's `style`, and the attribute with its last declaration.
void dropStyleProperty(Node& element, std::u16string_view property);

} // namespace tessaly::page
