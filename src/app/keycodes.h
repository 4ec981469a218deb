#pragma once

// The character codes the key handlers of the text fields act on.
inline constexpr int KeyBackspace = 8;
inline constexpr int KeyEnter = 13;
