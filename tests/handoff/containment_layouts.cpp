// SPDX-License-Identifier: Apache-2.0

#include "handoff/containment_layouts.hpp"

#include "handoff/layout_tables.hpp"

namespace kinovane::test {

const std::vector<Layout>& containmentLayouts() {
    static const std::vector<Layout> all = [] {
        std::vector<Layout> layouts;
        for (const std::vector<Layout>& part : {textLayouts(), fileLayouts(), linkLayouts(), rootLayouts()})
            layouts.insert(layouts.end(), part.begin(), part.end());
        return layouts;
    }();
    return all;
}

} // namespace kinovane::test
