#pragma once

namespace ostrelle::app {

// Registers the application's bundled files (":/..."), once. They live in a static library,
// whose registration the linker would otherwise leave out.
void loadResources();

}  // namespace ostrelle::app
