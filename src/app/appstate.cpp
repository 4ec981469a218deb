#include "app/appstate.h"

namespace {
AppState& instance() {
    static AppState state;
    return state;
}
} // namespace

AppState& App() {
    return instance();
}

void ResetAppState() {
    instance() = AppState{};
}
