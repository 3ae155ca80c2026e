#include "runtime/panel/panelpaths.h"

namespace {

PanelPaths& pathsInForce() {
    static PanelPaths* const paths = new PanelPaths; // never deleted, see panelPaths()
    return *paths;
}

} // namespace

const PanelPaths& panelPaths() {
    return pathsInForce();
}

void setPanelPaths(const PanelPaths& paths) {
    pathsInForce() = paths;
}
