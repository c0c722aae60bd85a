#pragma once

/// What the program settles with Qt before its first window. GUI thread.
namespace startup {

/// Chooses Qt's options for this process (see Platform::setForOurselves) and closes the program's
/// folder as a place for plugins of any kind: others may be able to write there. The folders that
/// the user names in QT_PLUGIN_PATH stay, the program's own excepted. Call once, before the
/// application object exists and before anything asks Qt for its library paths.
void prepare();

/// Lets a screen reader that already runs see the program, also where the address of its bus is
/// not on the X root window. Call once, after the application object was made and before the first
/// window; without a screen reader nothing happens that the first window would not do.
void joinScreenReader();

} // namespace startup
