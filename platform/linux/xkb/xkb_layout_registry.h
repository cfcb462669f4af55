// The names and languages of keyboard layouts, from the installed layout registry.
//
// Owned by the XKB input sources. Reading the registry takes several milliseconds and half a megabyte, so it
// is read when a layout is first asked for, answers everything asked in that go, and is released again; the
// answers are kept.
#pragma once

#include "platform/linux/xkb/xkb_groups.h"

#include <map>
#include <string>
#include <vector>

namespace hopsel {

struct XkbLayoutDescription {
    std::string name;                   ///< localized; empty if the registry does not know the layout
    std::vector<std::string> languages; ///< two letters where the language has such a code, else three
};

class XkbLayoutRegistry {
  public:
    /// One description for each layout, in their order.
    std::vector<XkbLayoutDescription> describe(const std::vector<XkbLayout>& layouts);

  private:
    void read(const std::vector<XkbLayout>& layouts);

    std::map<XkbLayout, XkbLayoutDescription> known_;
};

} // namespace hopsel
