#include "apps/dmc50panel/view.h"

#include "apps/dmc50panel/messagesview.h"

#include <algorithm>

namespace {

template <typename Shown>
std::unique_ptr<View> make(const Options& options) {
    return std::make_unique<Shown>(options);
}

} // namespace

const std::vector<ViewKind>& viewKinds() {
    static const std::vector<ViewKind> kinds = {
        {"messages", "the message panel with sample notices", make<MessagesView>},
    };
    return kinds;
}

std::unique_ptr<View> makeView(const Options& options) {
    const auto kind = std::find_if(viewKinds().begin(), viewKinds().end(),
                                   [&](const ViewKind& each) { return options.view == each.name; });
    return kind->make(options);
}
