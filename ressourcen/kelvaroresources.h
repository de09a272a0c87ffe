#ifndef KELVARO_RESOURCES_H
#define KELVARO_RESOURCES_H

namespace kelvaro {

// True when this build compiled the dark style sheet in as ":/qdarkstyle/style.qss". The
// package is optional at build time; without it the program runs unstyled.
bool hasStyleSheet();

} // namespace kelvaro

#endif // KELVARO_RESOURCES_H
